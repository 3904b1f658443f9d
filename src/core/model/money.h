#pragma once

#include "model/decimal.h"
#include "model/instant.h"

#include <QString>

#include <optional>

// Shared operations on amounts of money as the user types and reads them.
namespace Money {

// The currency of every amount shown; the Store sets it from the Book when it opens.
QString code();
void setCode(const QString &isoCode);

// The amount as currency text in the user's locale ("$1,234.50", "-$45.10").
// Falls back to the plain decimal text when the formatter gives nothing.
QString s(const Decimal &amount);
// "+" before s() for amounts above zero; otherwise exactly s().
QString signed_(const Decimal &amount);
// What the user typed into an amount field, or nothing. Accepts "(45.10)",
// "45.10-", "-45.10", "$1,234.50", "1 234"; refuses an exponent ("1e5"). Never rounds.
std::optional<Decimal> parse(const QString &text);
// An amount as it is put into a field for editing: at least two decimals ("72.00",
// "16.5" as "16.50", "12.345" kept whole), no symbol, no grouping.
QString editText(const Decimal &amount);

} // namespace Money

// Shared date texts, in the user's locale and time zone.
QString chDate(const Instant &when);  // medium date: "Mar 4, 2025"
QString chShort(const Instant &when); // "MMM d": "Mar 4"
QString chMonth(const Instant &when); // "MMMM yyyy": "March 2025"
