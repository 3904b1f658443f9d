#pragma once

#include "bankfiles/statement.h"

#include <QByteArray>

#include <optional>

// Quicken Interchange Format: the bank, cash and card sections of a QIF export.
namespace QifReader {

// Whether the bytes are a QIF file: a "!Type:", "!Account" or "!Option" line first, after
// an optional byte-order mark, blank lines and "#" comments.
bool looksLike(const QByteArray &bytes);

// The lines of the file's bank, cash, credit card and other asset or liability sections;
// lists (categories, classes, tags, securities, memorized lines) and investment sections
// are passed over. Text is UTF-8 (with or without a byte-order mark, or UTF-16 with one),
// else Windows-1252. `dayFirst` reads every date day first (true) or month first (false);
// absent, the whole file decides, month first when it cannot (`datesAmbiguous`).
Statement read(const QByteArray &bytes, std::optional<bool> dayFirst = std::nullopt);

} // namespace QifReader
