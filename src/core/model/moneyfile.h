#pragma once

#include "model/records.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <atomic>
#include <optional>
#include <string_view>

// The money file: the whole Book as UTF-8 JSON, pretty-printed with the keys of
// every object in alphabetical order (so the same Book always gives the same
// bytes), dates as ISO 8601 UTC text in whole seconds, amounts as exact JSON
// numbers, ids as upper-case UUID text, optional fields left out when empty.
namespace MoneyFile {

// The `version` this program writes. A file with a higher one comes from a newer
// Coinhall: it is read, never rewritten. Version 2 added bills on set dates of the
// year; a version 1 file reads the same and is written back as version 2.
inline constexpr int version = 2;

// The whole file for a Book.
QByteArray encode(const Book &book);

// The outcome of reading a money file: a Book, or the first problem found with its
// place, for example `transactions[41].kind: unknown value "gift"`.
struct Decoded
{
    std::optional<Book> book;
    QString error;
    // Amounts written with more significant digits than a Decimal keeps, which were
    // rounded to 38 digits, and the place of the first ("transactions[0].amount").
    int roundedAmounts = 0;
    QString firstRounded;
};

// Strict: every required key present and of the right type, every enumeration text
// known. Unknown keys are ignored; any other problem fails the whole Book.
Decoded decode(std::string_view json);

// Decodes the whole of an open file, mapped into memory rather than copied, so a large
// file is neither read twice nor held twice. `progress`, when given, counts the bytes
// read so far, for another thread to show.
Decoded decodeFile(QFile &file, std::atomic<qint64> *progress = nullptr);

} // namespace MoneyFile
