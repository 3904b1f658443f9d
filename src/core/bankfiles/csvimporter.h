#pragma once

#include "bankfiles/importer.h"
#include "model/decimal.h"
#include "model/instant.h"
#include "model/records.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <array>
#include <functional>
#include <optional>
#include <vector>

// A bank's activity download, read into a header row and data rows, with a guess
// of which column holds what.
//
// Banks put account numbers, date ranges and balances above the table ("info
// lines") and name their columns as they please, so the header row is found as
// the first row with a date-like title, and the columns are guessed from their
// titles. The import screen may correct the guess through setMapping().
class CSVImporter
{
public:
    // Which column is which: zero-based positions into headers() and each row;
    // absent means the file has no such column.
    struct Mapping
    {
        std::optional<int> date;
        std::optional<int> description;
        std::optional<int> amount;
        std::optional<int> debit;
        std::optional<int> credit;
        std::optional<int> category;
        friend bool operator==(const Mapping &, const Mapping &) = default;
    };

    // What a conversion made of the rows.
    using Conversion = BankImport::Conversion;

    // Answers the category of a new line from its payee and amount (as in the file).
    using Categorizer = std::function<QString(const QString &payee, const Decimal &amount)>;

    // The date patterns tried in this order; month-first before day-first, and
    // four-digit years before two-digit ones.
    static constexpr std::array<const char16_t *, 9> dateFormats{
        u"MM/dd/yyyy", u"M/d/yyyy",    u"MM/dd/yy",   u"M/d/yy",     u"yyyy-MM-dd",
        u"dd/MM/yyyy", u"MMM d, yyyy", u"yyyy/MM/dd", u"MM-dd-yyyy",
    };

    // Reads a file as UTF-8; nothing when it cannot be read or decoded, or holds no
    // non-blank row.
    static std::optional<CSVImporter> fromFile(const QString &path);
    // The same from bytes already read (a leading UTF-8 byte-order mark is skipped).
    static std::optional<CSVImporter> fromUtf8(const QByteArray &bytes);
    // The same from text already decoded.
    static std::optional<CSVImporter> fromText(const QString &text);

    // The header row's cells, trimmed of spaces and tabs.
    const QStringList &headers() const { return m_headers; }
    // The data rows below the header, cells untrimmed; rows may be shorter or longer
    // than the header.
    const QList<QStringList> &rows() const { return m_rows; }
    // The current column mapping: the guess until setMapping() changes it.
    const Mapping &mapping() const { return m_mapping; }
    // Corrects the guess, as the import screen's column pickers do.
    void setMapping(const Mapping &mapping) { m_mapping = mapping; }

    // Turns the rows into new transactions for `account`, skipping lines whose
    // fingerprint is among `existing` or earlier in the file; `categorize` names the
    // category when the file has none (AutoCategory::Guesser over the Book is the
    // usual one; empty means AutoCategory::guess with no history). Changes nothing.
    Conversion transactions(const QUuid &account, const std::vector<Transaction> &existing,
                            const Categorizer &categorize) const;
    // What an import brings in, as the import screen previews it and the import command
    // adds it: transactions() against every line of the Book, categories guessed from
    // those lines (AutoCategory::Guesser), then every sign flipped when `flip` is set.
    Conversion preview(const QUuid &account, const std::vector<Transaction> &book, bool flip) const;

    // Splits CSV text into rows of cells: quotes may open anywhere in a cell,
    // doubled quotes stand for one, CR LF and lone CR end lines like LF, and an
    // unclosed quote takes the rest of the text into its cell.
    static QList<QStringList> parse(const QString &text);
    // A cell without the spaces and tabs around it (line breaks stay).
    static QString trimmedCell(const QString &cell);
    // True for a cell that titles a date column: it contains "date" or is "posted".
    static bool isDateHeader(const QString &cell);
    // Guesses each column from the header titles independently.
    static Mapping guess(const QStringList &headers);
    // Reads one date cell at local midnight, or nothing: the patterns of
    // dateFormats in order, then an internet date-time such as 2024-03-05T14:30:00Z.
    static std::optional<Instant> date(const QString &text);

    // Reads many date cells with the same results as date(), reading each distinct
    // text only once (bank files repeat their dates a lot).
    class DateCache
    {
    public:
        // The same as CSVImporter::date(text).
        std::optional<Instant> operator()(const QString &text);

    private:
        QHash<QString, std::optional<Instant>> m_known;
    };

private:
    CSVImporter() = default;

    QStringList m_headers;
    QList<QStringList> m_rows;
    Mapping m_mapping;
};
