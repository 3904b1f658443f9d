#pragma once

#include "model/records.h"

#include <QByteArray>

#include <vector>

// The Book's lines oldest first, equal dates in the Book's order: pointers into the
// Book, for the exports, which write what they are given without copying it.
std::vector<const Transaction *> linesOldestFirst(const Book &book);

// The CSV export, for spreadsheets and accountants.
namespace CSVExport {

// Every transaction, oldest first, as CSV with the header
// "Date,Account,Payee,Category,Amount,Type,Cleared,Note": the UTC calendar date, the
// account's name, exact amounts, the kind's stored text, "yes" or "no".
QByteArray text(const Book &book);

} // namespace CSVExport
