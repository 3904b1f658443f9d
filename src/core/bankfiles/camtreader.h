#pragma once

#include "bankfiles/statement.h"

#include <QByteArray>

// ISO 20022 bank-to-customer statements (CAMT.053, versions .001.02 to .001.08), the
// account statement European banks hand out as XML.
namespace CamtReader {

// Whether the bytes are XML whose root is in a namespace
// "urn:iso:std:iso:20022:tech:xsd:camt.053.001.NN".
bool looksLike(const QByteArray &bytes);

// The booked entries of the file's statements of its first account, in file order: the
// amount signed by its credit or debit mark, the booking day as written, the counterparty
// (else the remittance text, else the entry's or transaction's additional information) as
// payee and the bank's reference of the entry. Pending entries are left out; damaged XML
// is an `error` and gives no lines.
Statement read(const QByteArray &bytes);

} // namespace CamtReader
