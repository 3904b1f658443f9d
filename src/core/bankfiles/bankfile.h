#pragma once

#include "bankfiles/csvimporter.h"
#include "bankfiles/importer.h"
#include "bankfiles/statement.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

// A bank download of any format Coinhall reads, found from its content, never from
// its name: CSV (with its column guess, which the import screen may correct),
// OFX/QFX, QIF or CAMT.053. The import screen and `coinhall import` both go through
// it, so every format gets the same preview, duplicate rules and categories.
class BankFile
{
public:
    // Reads the file at `path`; error() says why it cannot be imported.
    static BankFile fromFile(const QString &path);
    // The same from bytes already read.
    static BankFile fromBytes(const QByteArray &bytes);

    // Why the file cannot be imported, in plain words, for "Coinhall can't read <file
    // name>: <error>."; empty when it can.
    QString error() const { return m_error; }
    // "CSV", "OFX", "QFX", "QIF" or "CAMT.053"; empty when error() is set.
    QString format() const;
    // What the preview shows about the file beside its lines: the format, the file's own
    // account and currency when it names them ("OFX · account 1234 · USD").
    QString summary() const;
    // The CSV reading and its columns; null for the other formats.
    CSVImporter *csv() { return m_csv ? &*m_csv : nullptr; }
    const CSVImporter *csv() const { return m_csv ? &*m_csv : nullptr; }
    // What an OFX, QIF or CAMT.053 file says; empty for a CSV, whose lines come from csv().
    const Statement &statement() const { return m_statement; }
    // Whether every date of the file reads as well month first as day first; the
    // reading took month first until setDayFirst() says otherwise.
    bool datesAmbiguous() const;
    void setDayFirst(bool dayFirst);
    // Reads a CSV again with the encoding, separator and number style the user chose
    // over those found (each unset one found again); the date order stays as
    // setDayFirst() left it. Columns the user chose are kept while the separator is.
    void setReading(const CSVImporter::Reading &chosen);
    // Why the file's lines cannot go into books kept in `bookCurrency`, naming both;
    // empty when they can (the file names no currency, or the same).
    QString refusal(const QString &bookCurrency) const;
    // What an import brings into `account` against the Book's lines, categories guessed
    // from them, every sign flipped when `flip` is set.
    BankImport::Conversion preview(const QUuid &account, const std::vector<Transaction> &book, bool flip) const;

private:
    BankFile() = default;
    void read();
    void readAgain(const CSVImporter::Reading &chosen);

    QByteArray m_bytes;
    std::optional<CSVImporter> m_csv;
    Statement m_statement;
    CSVImporter::Reading m_chosen; // what the user said over what the file shows
    QString m_error;
};
