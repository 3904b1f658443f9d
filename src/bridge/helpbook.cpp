#include "helpbook.h"

#include "help/helptexts.h"

#include <QVariantMap>

HelpBook::HelpBook(QObject *parent)
    : QObject(parent)
{}

QVariantList HelpBook::chapters() const
{
    QVariantList list;
    for (const HelpChapter &chapter : helpChapters())
        list.append(QVariantMap{{QStringLiteral("title"), chapter.title},
                                {QStringLiteral("symbol"), chapter.symbol},
                                {QStringLiteral("text"), chapter.text}});
    return list;
}

QString HelpBook::company() const
{
    return QFSCredit::company();
}

QString HelpBook::fullName() const
{
    return QFSCredit::fullName();
}

QString HelpBook::aboutLine() const
{
    return QFSCredit::aboutLine();
}

QUrl HelpBook::website() const
{
    return QFSCredit::website();
}

QString HelpBook::websiteText() const
{
    QString host = QFSCredit::website().host();
    if (host.startsWith(QLatin1String("www.")))
        host.remove(0, 4);
    return host;
}

QString HelpBook::appName() const
{
    return AppInfo::displayName();
}
