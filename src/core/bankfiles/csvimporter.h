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
// lines") and name their columns as they please, in their own language, so the header
// row is found as the first row with a date-like title, and the columns are guessed
// from their titles. How the file is written (its encoding, the character between
// cells, a decimal comma, day-first dates) is found from the file itself: the
// Reading. The import screen may correct the guess through setMapping() and the
// reading by reading the bytes again with overrides.
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
        // A column saying whether the amount beside it is money out or in ("Af"/"Bij",
        // "D"/"C", "S"/"H"): it gives an unsigned amount its sign.
        std::optional<int> marker;
        friend bool operator==(const Mapping &, const Mapping &) = default;
    };

    // How the file is read. As found, every field is set (encoding only for bytes);
    // as overrides, a set field is taken as it is and the others are found again.
    struct Reading
    {
        // "UTF-8", "UTF-16LE", "UTF-16BE", "Windows-1252"; an override may name any
        // encoding ICU knows ("ISO-8859-15").
        std::optional<QString> encoding;
        // ',', ';' or a tab.
        std::optional<QChar> separator;
        // Amounts written "-1.234,56" or "1 234,56" rather than "-1,234.56".
        std::optional<bool> decimalComma;
        // Dates such as "02/01/2026" are the 2nd of January, not the 1st of February.
        std::optional<bool> dayFirst;
        friend bool operator==(const Reading &, const Reading &) = default;
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
    // The day-first forms of European banks, tried after dateFormats. "yy" reads a
    // year of two digits in ICU's window and one of four as written, so "d.M.yy" reads
    // dd.MM.yyyy, d.M.yyyy and dd.MM.yy alike; a year must have two or four digits.
    static constexpr std::array<const char16_t *, 3> europeanDateFormats{u"d.M.yy", u"d-M-yy", u"yyyyMMdd"};
    // The patterns tried instead of dateFormats when the date column is day first.
    static constexpr std::array<const char16_t *, 5> dayFirstDateFormats{u"d/M/yy", u"yyyy-MM-dd", u"MMM d, yyyy",
                                                                         u"yyyy/MM/dd", u"d-M-yy"};

    // Reads a file, its reading found from its bytes (fromBytes); nothing when it
    // cannot be read or holds no non-blank row.
    static std::optional<CSVImporter> fromFile(const QString &path);
    // Reads bytes in the encoding of their byte-order mark, else UTF-8 when they are
    // valid UTF-8 without zero bytes, else as ICU's charset detection finds them among
    // UTF-16 and Windows-1252; `overrides` replace what would be found. Nothing when
    // UTF-8 is asked for and the bytes are no UTF-8, when ICU knows no encoding of the
    // name asked for, or when they hold no non-blank row.
    static std::optional<CSVImporter> fromBytes(const QByteArray &bytes, const Reading &overrides = {});
    // The same as UTF-8 (a leading byte-order mark is skipped).
    static std::optional<CSVImporter> fromUtf8(const QByteArray &bytes);
    // The same from text already decoded; the reading has no encoding.
    static std::optional<CSVImporter> fromText(const QString &text, const Reading &overrides = {});

    // How the file was read, every field set (the encoding only when read from bytes).
    const Reading &reading() const { return m_reading; }
    // The reading as the preview names it: "Windows-1252 · separated by ; · decimal
    // comma", with "· dates day first" when they are.
    QString readingText() const;
    // No date of the date column tells month-first from day-first, and some read
    // differently each way ("03/04/2024"): month first was taken, and the user may
    // want to say otherwise.
    bool datesAmbiguous() const;

    // The header row's cells, trimmed of spaces and tabs.
    const QStringList &headers() const { return m_headers; }
    // The data rows below the header, cells untrimmed; rows may be shorter or longer
    // than the header.
    const QList<QStringList> &rows() const { return m_rows; }
    // The current column mapping: the guess until setMapping() changes it.
    const Mapping &mapping() const { return m_mapping; }
    // Corrects the guess, as the import screen's column pickers do; the decimal comma
    // and day-first reading are found again for the new columns unless overridden.
    void setMapping(const Mapping &mapping);

    // Turns the rows into new transactions for `account`, counting off lines already
    // in it (BankImport::convert); rows without a usable date or amount, and opening or
    // closing balances, count as bad. `categorize` names the category when the file has
    // none (AutoCategory::Guesser over the Book is the usual one; empty means
    // AutoCategory::guess with no history). Changes nothing.
    Conversion transactions(const QUuid &account, const std::vector<Transaction> &existing,
                            const Categorizer &categorize) const;
    // What an import brings in, as the import screen previews it and the import command
    // adds it: transactions() against every line of the Book, categories guessed from
    // those lines (AutoCategory::Guesser), then every sign flipped when `flip` is set.
    Conversion preview(const QUuid &account, const std::vector<Transaction> &book, bool flip) const;

    // Splits CSV text into rows of cells between `separator`s: quotes may open anywhere
    // in a cell, doubled quotes stand for one, CR LF and lone CR end lines like LF, and
    // an unclosed quote takes the rest of the text into its cell.
    static QList<QStringList> parse(const QString &text, QChar separator = u',');
    // A cell without the spaces and tabs around it (line breaks stay).
    static QString trimmedCell(const QString &cell);
    // True for a cell that titles a date column: it contains "date", "datum", "fecha"
    // or "buchungstag", is "posted", or its first word is "data".
    static bool isDateHeader(const QString &cell);
    // Guesses each column from the header titles independently. Of several titles
    // for the description, the one with the earliest keyword wins ("Description"
    // before "Payee", "Name", "Memo", "Details"), not the leftmost.
    static Mapping guess(const QStringList &headers);
    // Reads one date cell at local midnight, or nothing: the patterns of
    // dateFormats (dayFirstDateFormats when `dayFirst`) in order, then those of
    // europeanDateFormats, then an internet date-time such as 2024-03-05T14:30:00Z.
    static std::optional<Instant> date(const QString &text, bool dayFirst = false);
    // Reads one amount cell as Money::parse does, with a decimal comma and "." or
    // blank thousands separators when `decimalComma` ("-1.234,56", "1 234,56").
    static std::optional<Decimal> amount(const QString &text, bool decimalComma);

    // Reads many date cells with the same results as date(), reading each distinct
    // text only once (bank files repeat their dates a lot).
    class DateCache
    {
    public:
        explicit DateCache(bool dayFirst = false)
            : m_dayFirst(dayFirst)
        {}
        // The same as CSVImporter::date(text, dayFirst).
        std::optional<Instant> operator()(const QString &text);

    private:
        bool m_dayFirst;
        QHash<QString, std::optional<Instant>> m_known;
    };

private:
    CSVImporter() = default;
    // Finds the decimal comma and day-first reading for the current columns, unless
    // overridden.
    void findNumberAndDateReading();
    // +1 for a marker of money in ("Bij", "C", "H"), -1 for one of money out ("Af",
    // "D", "S"), 0 for a cell that is neither.
    static int markerSign(const QString &cell);
    // Whether a description of the row is an opening or closing balance ("Saldo
    // Anterior", "SALDO FINALE", "Closing balance"), which is no line.
    bool isBalanceRow(const QStringList &row) const;

    QStringList m_headers;
    QList<QStringList> m_rows;
    Mapping m_mapping;
    Reading m_reading;
    Reading m_overrides;
    // Every column whose title names a description, best first: a row whose
    // description cell is empty takes the next of them that has text.
    std::vector<int> m_descriptions;
    // The description column an earlier Coinhall chose (the leftmost title with a
    // description keyword), whose text a line imported then has as its payee.
    std::optional<int> m_formerDescription;
};
