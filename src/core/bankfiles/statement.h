#pragma once

#include "model/decimal.h"

#include <QDate>
#include <QString>

#include <vector>

// What a bank file says, whatever its format, before it becomes lines of the Book:
// each statement line as the bank wrote it. The readers of OFX/QFX, QIF and CAMT.053
// make one; BankImport::convert() turns it into transactions of an account with the
// same duplicate and category rules as every import.
struct StatementLine
{
    QDate day;        // the bank's calendar day, as written in the file (no time zone applied)
    Decimal amount;   // signed as the file states it: money into the account above zero
    QString payee;    // the file's description of the line; never empty once read
    QString category; // the file's own category (QIF's L), empty when it names none
    // The bank's own identifier of the line (OFX FITID, CAMT entry reference), empty
    // when the file gives none. When present it alone makes the line's fingerprint.
    QString reference;
    // The payee an earlier Coinhall read for this line from the same file, when it
    // differs: a line imported under it counts as already in.
    QString formerPayee;
    friend bool operator==(const StatementLine &, const StatementLine &) = default;
};

struct Statement
{
    // The format as the import preview names it: "OFX", "QFX", "QIF", "CAMT.053", "CSV".
    QString format;
    // The file's own name of the account (an account number, a QIF account name),
    // for the preview; empty when the file names none.
    QString account;
    // The ISO 4217 code the file states for its amounts; empty when it states none.
    QString currency;
    std::vector<StatementLine> lines;
    // Lines of the file that could not be read (no date, no amount), left out.
    int bad = 0;
    // Every date of the file reads as well month first as day first (QIF, CSV): the
    // reader took month first, and the preview asks the user which it is.
    bool datesAmbiguous = false;
    // Why the file cannot be imported at all, in plain words for "Coinhall can't read
    // <file name>: <error>."; empty when it can.
    QString error;
};

// A download's text: in the encoding its byte-order mark names, else UTF-8 when the
// bytes are, else Windows-1252, which older Windows programs and most SGML OFX wrote.
QString decodedText(const QByteArray &bytes);
