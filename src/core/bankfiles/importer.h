#pragma once

#include "model/decimal.h"
#include "model/instant.h"
#include "model/records.h"

#include <QString>
#include <QUuid>

#include <cstdint>
#include <vector>

// The pieces of a bank import around CSVImporter::transactions(): the fingerprint
// that recognises a line imported before, and the sign flip of the import screen.
namespace BankImport {

// The whole days since 1970-01-01 00:00 UTC, truncated toward zero (so half a day
// before 1970 is day 0, not -1).
std::int64_t dayNumber(Instant date);

// The text that is fingerprinted: "<ACCOUNT-UUID>|<day number>|<amount>|<payee in
// lower case>", the amount in its canonical text ("-12.5", "1200").
QString fingerprintText(const QUuid &account, Instant date, const Decimal &amount, const QString &payee);

// The fingerprint of a bank line: SHA-256 of fingerprintText() as UTF-8, in 64
// lower-case hexadecimal digits. Kept as the line's importHash.
QString importHash(const QUuid &account, Instant date, const Decimal &amount, const QString &payee);

// Negates every amount and sets each kind again by the new sign (deposit above
// zero, else expense), for card files that show spending as money in. The
// fingerprints stay those of the amounts as the file gave them.
void flipSigns(std::vector<Transaction> &lines);

} // namespace BankImport
