#pragma once

#include "model/decimal.h"
#include "model/instant.h"
#include "model/records.h"

#include <QString>
#include <QUuid>

#include <cstdint>
#include <functional>
#include <vector>

struct Statement;

// What every bank import shares, whatever the file's format: the fingerprint that
// recognises a line imported before, the one conversion of a file's lines into new
// transactions, and the sign flip of the import screen.
namespace BankImport {

// What a conversion made of a file's lines.
struct Conversion
{
    std::vector<Transaction> newTransactions; // the lines to add, in file order
    int skipped = 0;                          // lines already in the account
    int bad = 0;                              // lines without a usable date or amount
};

// One line of a bank file on its way into the Book.
struct Incoming
{
    Instant date;
    Decimal amount; // signed as the file states it, never zero
    QString payee;  // never empty
    QString category; // the file's own category, empty when it has none
    // The bank's own id of the line; when present it alone is the fingerprint.
    QString reference;
    // The payee an earlier Coinhall read for this line, when it differs.
    QString formerPayee;
};

// Names the category of a new line that is to be added.
using CategoryOf = std::function<QString(const Incoming &line)>;

// Turns `lines` into new transactions of `account`, against the lines already in the
// Book (`existing`). A line is already in when a line of the account has its
// fingerprint (or that of its former payee); lines are counted, not collapsed: a file
// that holds one line k times adds it as many times as the account has it fewer than
// k times, so two coffees of one day are two lines and a second import adds nothing.
Conversion convert(const std::vector<Incoming> &lines, int bad, const QUuid &account,
                   const std::vector<Transaction> &existing, const CategoryOf &categoryOf);
// The same for a statement read from an OFX, QIF or CAMT.053 file: each line dated at
// the start of its day by the local clock, as the Book keeps days; a category the
// file names is the Book's category of that name when there is one, else the line
// is categorised as any imported line is (AutoCategory::Guesser over `existing`).
Conversion convert(const Statement &statement, const QUuid &account, const std::vector<Transaction> &existing);

// The whole days since 1970-01-01 00:00 UTC, truncated toward zero (so half a day
// before 1970 is day 0, not -1).
std::int64_t dayNumber(Instant date);

// The text that is fingerprinted: "<ACCOUNT-UUID>|<day number>|<amount>|<payee in
// lower case>", the amount in its canonical text ("-12.5", "1200").
QString fingerprintText(const QUuid &account, Instant date, const Decimal &amount, const QString &payee);

// The fingerprint of a bank line: SHA-256 of fingerprintText() as UTF-8, in 64
// lower-case hexadecimal digits. Kept as the line's importHash.
QString importHash(const QUuid &account, Instant date, const Decimal &amount, const QString &payee);
// The fingerprint of a line the bank gave an id of its own: SHA-256 of
// "<ACCOUNT-UUID>|ref|<reference>".
QString importHash(const QUuid &account, const QString &reference);

// Negates every amount and sets each kind again by the new sign (deposit above
// zero, else expense), for card files that show spending as money in. The
// fingerprints stay those of the amounts as the file gave them.
void flipSigns(std::vector<Transaction> &lines);

} // namespace BankImport
