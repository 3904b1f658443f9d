#pragma once

#include "model/records.h"

#include <QByteArray>

// The CSV export, for spreadsheets and accountants.
namespace CSVExport {

// Every transaction, oldest first, as CSV with the header
// "Date,Account,Payee,Category,Amount,Type,Cleared,Note": the UTC calendar date, the
// account's name, exact amounts, the kind's stored text, "yes" or "no".
QByteArray text(const Book &book);

} // namespace CSVExport
