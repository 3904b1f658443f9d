#pragma once

// Readable failure messages for Qt values in GoogleTest assertions.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *os)
{
    *os << '"' << bytes.left(2000).toStdString() << (bytes.size() > 2000 ? "\"..." : "\"");
}

inline void PrintTo(const QStringList &list, std::ostream *os)
{
    *os << '[' << list.join(QStringLiteral(", ")).toStdString() << ']';
}

inline void PrintTo(const QUuid &id, std::ostream *os)
{
    *os << id.toString(QUuid::WithoutBraces).toStdString();
}
