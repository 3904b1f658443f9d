#include "bankfiles/statement.h"

#include <QStringDecoder>

QString decodedText(const QByteArray &bytes)
{
    if (const std::optional<QStringConverter::Encoding> marked = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*marked);
        return decoder(bytes);
    }
    QStringDecoder utf8(QStringConverter::Utf8);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    QStringDecoder windows("windows-1252");
    return windows.isValid() ? QString(windows(bytes)) : QString::fromLatin1(bytes);
}
