#pragma once

#include "model/records.h"

#include <QByteArray>

// The Book as a plain-text accounting journal, the format `ledger` and `hledger` read.
namespace LedgerExport {

// Every transaction, oldest first, as one journal entry: a line's account is
// "Assets:<account>" and its category "Income:<category>" when the line brings money
// in, else "Expenses:<category>", so the journal's per-category totals are those of
// the Reports screen. Both sides of a transfer make one entry with two asset postings.
// A cleared line is marked "*"; the accounts' opening balances come first, as one entry
// against "Equity:Opening Balances". Amounts are the exact decimals, at least two places,
// followed by the Book's currency code. Calendar days are local, as the window shows them.
QByteArray journal(const Book &book);

// A name as a journal account name segment: blanks of any kind (line breaks, tabs,
// runs of spaces) become one space and the ends are trimmed, so it never holds the
// two spaces that end an account name; ";" becomes "," and ":" becomes "∶" (U+2236),
// so a name starts no comment and no sub-account. `empty` stands in for no name.
QString accountSegment(const QString &name, const QString &empty);

} // namespace LedgerExport
