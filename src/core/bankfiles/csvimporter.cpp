#include "bankfiles/csvimporter.h"

#include "model/money.h"

#include <QFile>
#include <QStringDecoder>

#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <bitset>
#include <cmath>
#include <memory>
#include <span>
#include <string_view>

namespace {

// Spaces (any Unicode space separator) and tabs: the blanks trimmed from cells.
// Line breaks are not blanks.
bool isBlank(QChar c)
{
    if (c.unicode() < 0x80)
        return c.unicode() == u' ' || c.unicode() == u'\t';
    return c.category() == QChar::Separator_Space;
}

bool isBlankRow(const QStringList &row)
{
    for (const QString &cell : row)
        for (QChar c : cell)
            if (!isBlank(c))
                return false;
    return true;
}

// The bank-date patterns, parsed by ICU exactly as the platform's date formatter
// does: en_US_POSIX, strict (no lenient guessing, so "02/30/2024" and a local
// midnight skipped by a clock change are no dates), the whole text consumed, and
// ICU's own two-digit-year window for "yy" (from 80 years ago to 20 years on). A
// two-digit year under "yyyy" is read literally (24 is the year 24, in ICU's
// Julian calendar before 1582), which is why the "yy" patterns rarely win; the
// day-first and European patterns have "yy" only, and take a year of two or four
// digits.
//
// ICU formats change their calendar while parsing, so every thread has its own
// sets (month first, day first). A set follows the process time zone: it is made
// again when TZ changes.
class BankDateFormats
{
public:
    static BankDateFormats &current(bool dayFirst)
    {
        thread_local std::unique_ptr<BankDateFormats> formats[2];
        std::unique_ptr<BankDateFormats> &set = formats[dayFirst ? 1 : 0];
        const QByteArray zone = qgetenv("TZ");
        if (!set || set->m_zone != zone)
            set.reset(new BankDateFormats(zone, dayFirst));
        return *set;
    }

    std::optional<Instant> parse(const QString &text) const
    {
        // In strict parsing every literal "/", "-", "," and "." of a pattern must appear
        // as that very character, so a text without one cannot match; the check
        // spares ICU most of the patterns it would reject anyway.
        const Needs has{
            text.contains(u'/'), text.contains(u'-'), text.contains(u','), text.contains(u'.'), false, false};
        qsizetype trailingDigits = 0;
        while (trailingDigits < text.size() && text[text.size() - 1 - trailingDigits].isDigit())
            ++trailingDigits;
        const bool eightDigits = trailingDigits == 8 && text.size() == 8;
        const icu::UnicodeString icuText(false, reinterpret_cast<const char16_t *>(text.utf16()), int32_t(text.size()));
        for (const Pattern &pattern : m_patterns) {
            const Needs needs = pattern.needs;
            if ((needs.slash && !has.slash) || (needs.dash && !has.dash) || (needs.comma && !has.comma) ||
                (needs.dot && !has.dot) || (needs.eightDigits && !eightDigits) ||
                (needs.shortYear && trailingDigits != 2 && trailingDigits != 4))
                continue;
            icu::ParsePosition position(0);
            const UDate when = pattern.format->parse(icuText, position);
            if (position.getErrorIndex() < 0 && position.getIndex() == icuText.length() && position.getIndex() > 0) {
                // A year past 9999 ("01/01/20000") could never be saved and read back.
                const Instant read = Instant::fromMSecs(static_cast<std::int64_t>(std::llround(when)));
                if (read.inIsoRange())
                    return read;
            }
        }
        return std::nullopt;
    }

private:
    // What a text must have for a pattern to match: the literal characters, eight
    // digits alone ("yyyyMMdd"), a year of two or four digits at its end.
    struct Needs
    {
        bool slash, dash, comma, dot, eightDigits, shortYear;
    };
    struct Pattern
    {
        std::unique_ptr<icu::SimpleDateFormat> format;
        Needs needs;
    };

    BankDateFormats(QByteArray zone, bool dayFirst)
        : m_zone(std::move(zone))
    {
        if (dayFirst)
            add(CSVImporter::dayFirstDateFormats, true);
        else
            add(CSVImporter::dateFormats, false);
        add(CSVImporter::europeanDateFormats, true);
    }

    void add(std::span<const char16_t *const> patterns, bool yearOfTwoOrFour)
    {
        const icu::Locale posix("en_US_POSIX");
        for (const char16_t *text : patterns) {
            const std::u16string_view pattern(text);
            const bool digitsOnly = pattern.find_first_of(u"/-,. ") == pattern.npos;
            const Needs needs{pattern.find(u'/') != pattern.npos,
                              pattern.find(u'-') != pattern.npos,
                              pattern.find(u',') != pattern.npos,
                              pattern.find(u'.') != pattern.npos,
                              digitsOnly,
                              yearOfTwoOrFour && !digitsOnly && pattern.ends_with(u"yy") &&
                                  !pattern.ends_with(u"yyyy")};
            UErrorCode status = U_ZERO_ERROR;
            auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(text), posix, status);
            if (U_FAILURE(status))
                continue;
            format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
            format->setLenient(false);
            m_patterns.push_back({std::move(format), needs});
        }
    }

    QByteArray m_zone;
    std::vector<Pattern> m_patterns;
};

// The internet date-time form, "2024-03-05T14:30:00Z" or with "+hh:mm", whole
// seconds only (fractions are not part of the default form).
std::optional<Instant> internetDateTime(const QString &text)
{
    if (text.size() < 20 || text.size() > 25 || text[19] == u'.')
        return std::nullopt;
    for (QChar c : text)
        if (c.unicode() >= 0x80)
            return std::nullopt;
    const QByteArray latin1 = text.toLatin1();
    return Instant::fromIso(std::string_view(latin1.constData(), size_t(latin1.size())));
}

// The name the preview shows for an encoding asked by any of its usual names.
QString encodingName(const QString &asked)
{
    QString key = asked.toLower();
    key.remove(u'-').remove(u'_').remove(u' ');
    if (key == u"utf8")
        return QStringLiteral("UTF-8");
    if (key == u"utf16le")
        return QStringLiteral("UTF-16LE");
    if (key == u"utf16be")
        return QStringLiteral("UTF-16BE");
    if (key == u"windows1252" || key == u"cp1252")
        return QStringLiteral("Windows-1252");
    if (key == u"iso88591" || key == u"latin1")
        return QStringLiteral("ISO-8859-1");
    return asked;
}

// The bytes as text in `encoding` (a name from encodingName, or any ICU knows), a
// byte-order mark dropped; nothing for bytes that are no UTF-8 when that is asked, or
// an encoding ICU does not know. Other encodings replace what they cannot read.
std::optional<QString> decoded(const QByteArray &bytes, const QString &encoding)
{
    const auto plain = encoding == u"UTF-8"      ? std::optional(QStringDecoder::Utf8)
                       : encoding == u"UTF-16LE" ? std::optional(QStringDecoder::Utf16LE)
                       : encoding == u"UTF-16BE" ? std::optional(QStringDecoder::Utf16BE)
                                                 : std::nullopt;
    if (plain) {
        // Without ConvertInitialBom the decoder drops a leading byte-order mark.
        QStringDecoder decoder(*plain);
        QString text = decoder.decode(bytes);
        if (decoder.hasError() && *plain == QStringDecoder::Utf8)
            return std::nullopt;
        return text;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open(encoding.toLatin1().constData(), &status), &ucnv_close);
    if (U_FAILURE(status))
        return std::nullopt;
    const auto size = int32_t(std::min<qsizetype>(bytes.size(), INT32_MAX / 2));
    int32_t length = ucnv_toUChars(converter.get(), nullptr, 0, bytes.constData(), size, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status))
        return std::nullopt;
    status = U_ZERO_ERROR;
    QString text(length, Qt::Uninitialized);
    length = ucnv_toUChars(converter.get(), reinterpret_cast<UChar *>(text.data()), length, bytes.constData(), size,
                           &status);
    if (U_FAILURE(status))
        return std::nullopt;
    text.truncate(length);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return text;
}

// The encoding of bytes nobody named: the byte-order mark's, else UTF-8 when they are
// valid UTF-8 (`utf8` holds them decoded) without zero bytes, else UTF-16 when ICU's
// detection is fairly sure of it (text in UTF-16 without a mark), else Windows-1252,
// which reads any bytes and is what Western European banks write (a superset of
// ISO-8859-1 in every printable character).
QString foundEncoding(const QByteArray &bytes, std::optional<QString> &utf8)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QStringLiteral("UTF-8");
    if (bytes.startsWith("\xFF\xFE"))
        return QStringLiteral("UTF-16LE");
    if (bytes.startsWith("\xFE\xFF"))
        return QStringLiteral("UTF-16BE");
    if (!bytes.contains('\0') && (utf8 = decoded(bytes, QStringLiteral("UTF-8"))))
        return QStringLiteral("UTF-8");

    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status), &ucsdet_close);
    ucsdet_setText(detector.get(), bytes.constData(), int32_t(std::min<qsizetype>(bytes.size(), 65536)), &status);
    int32_t count = 0;
    const UCharsetMatch **matches = ucsdet_detectAll(detector.get(), &count, &status);
    for (int32_t i = 0; U_SUCCESS(status) && i < count; ++i) {
        const std::string_view name = ucsdet_getName(matches[i], &status);
        // ICU lists both UTF-16s at 10 for any text; real UTF-16 scores far higher.
        if ((name == "UTF-16LE" || name == "UTF-16BE") && ucsdet_getConfidence(matches[i], &status) >= 50)
            return QString::fromLatin1(name.data(), qsizetype(name.size()));
    }
    return QStringLiteral("Windows-1252");
}

// The separator of the file's first rows (up to 100 lines): of ',', ';' and tab, the
// one that gives the most rows of one cell count of 2 or more, quoted cells kept whole;
// on a tie, the one that gives more cells ("-1,25" in a file separated by ';' makes two
// cells of every row by the comma too). A file of one column is separated by ','.
QChar foundSeparator(const QString &text)
{
    qsizetype end = 0;
    for (int lines = 0; end < text.size() && end < 65536 && lines < 100; ++end)
        if (text[end] == u'\n' || (text[end] == u'\r' && (end + 1 == text.size() || text[end + 1] != u'\n')))
            ++lines;
    const QString head = text.first(end);
    QChar best = u',';
    std::pair<int, qsizetype> bestScore{0, 0};
    for (const QChar separator : {QChar(u','), QChar(u';'), QChar(u'\t')}) {
        QList<QStringList> rows = CSVImporter::parse(head, separator);
        if (end < text.size() && !rows.isEmpty())
            rows.removeLast(); // perhaps cut short
        QHash<qsizetype, int> rowsOfSize;
        std::pair<int, qsizetype> score{0, 0};
        for (const QStringList &row : rows)
            if (row.size() >= 2 && !isBlankRow(row))
                score = std::max(score, {++rowsOfSize[row.size()], row.size()});
        if (score > bestScore) {
            best = separator;
            bestScore = score;
        }
    }
    return best;
}

// The titles in lower case.
QStringList lowerTitles(const QStringList &headers)
{
    QStringList lower;
    lower.reserve(headers.size());
    for (const QString &h : headers)
        lower.append(h.toLower());
    return lower;
}

// The leftmost title holding any of the keywords; their order gives no priority.
std::optional<int> leftmost(const QStringList &lower, std::initializer_list<std::u16string_view> keys)
{
    for (qsizetype i = 0; i < lower.size(); ++i)
        for (const std::u16string_view key : keys)
            if (lower[i].contains(QStringView(key)))
                return int(i);
    return std::nullopt;
}

// The description keywords, best first. English banks name the merchant in
// "Description"; German and Dutch ones put a reference or purpose there
// ("Verwendungszweck", "Omschrijving") and the other party in a column of its own,
// which is the better payee, so those come first in their language.
// clang-format off
constexpr std::u16string_view descriptionKeys[] = {
    u"description", u"payee", u"merchant", u"name", u"memo", u"details",
    u"begünstigter", u"beguenstigter", u"zahlungspflichtiger", u"auftraggeber", u"empfänger", u"empfaenger",
    u"verwendungszweck", u"buchungstext",                                   // German
    u"libellé", u"libelle", u"bénéficiaire",                                // French
    u"concepto", u"descripción", u"descripcion",                            // Spanish
    u"descrizione", u"causale",                                             // Italian
    u"tegenrekeninghouder", u"naam", u"omschrijving", u"mededelingen",      // Dutch
    u"histórico", u"historico", u"descrição", u"descricao",                 // Portuguese
    u"text", u"beschreibung"};
// clang-format on

// A title of an account number or bank code beside a name ("Auftraggeber IBAN/Kto.Nr."):
// never the payee.
bool titlesAccountNumber(const QString &lower)
{
    for (const QStringView word : QStringView(lower).tokenize(u' ', Qt::SkipEmptyParts))
        for (const QStringView part : word.tokenize(u'/', Qt::SkipEmptyParts))
            if (part == u"iban" || part == u"bic" || part == u"blz" || part.startsWith(u"kto"))
                return true;
    return false;
}

// Every title naming a description, by keyword order, each once.
std::vector<int> descriptionColumns(const QStringList &lower)
{
    std::vector<int> columns;
    for (const std::u16string_view key : descriptionKeys)
        for (qsizetype i = 0; i < lower.size(); ++i)
            if (lower[i].contains(QStringView(key)) && !titlesAccountNumber(lower[i]) &&
                std::find(columns.begin(), columns.end(), int(i)) == columns.end())
                columns.push_back(int(i));
    return columns;
}

// Whether `word` is one of `words`.
bool among(const QString &word, std::span<const std::u16string_view> words)
{
    const std::u16string_view text(reinterpret_cast<const char16_t *>(word.utf16()), size_t(word.size()));
    return std::find(words.begin(), words.end(), text) != words.end();
}

// A column of debit/credit markers, by its title: letters alone, in lower case.
bool titlesMarker(const QString &lower)
{
    static constexpr std::u16string_view titles[] = {
        u"afbij", u"bijaf", u"creditdebet", u"debetcredit", u"creditdebit", u"debitcredit", u"dc",
        u"cd",    u"sh",    u"hs",          u"sollhaben",   u"habensoll",   u"drcr",        u"crdr"};
    QString letters;
    for (const QChar c : lower)
        if (c.isLetter())
            letters.append(c);
    return among(letters, titles);
}

// A description that is an opening or closing balance, not a line: its letters alone,
// in lower case ("SALDO INIZIALE", "|SALDO FINALE", "S A L D O", "Closing balance").
bool isBalanceText(QStringView cell)
{
    // Sorted, for the binary search; none longer than 21 letters.
    // clang-format off
    static constexpr std::u16string_view balances[] = {
        u"altersaldo", u"anciensolde", u"anfangssaldo", u"balance", u"balancebroughtforward",
        u"balancecarriedforward", u"balanceforward", u"beginningbalance", u"beginsaldo", u"closingbalance",
        u"eindsaldo", u"endingbalance", u"endsaldo", u"neuersaldo", u"newbalance", u"nouveausolde",
        u"openingbalance", u"previousbalance", u"saldo", u"saldoanterior", u"saldoatual", u"saldocontabile",
        u"saldofinal", u"saldofinale", u"saldoinicial", u"saldoiniziale", u"saldoprecedente", u"saldovortrag",
        u"schlusssaldo", u"solde", u"soldefinal", u"soldeinitial", u"startingbalance"};
    // clang-format on
    static_assert(std::is_sorted(std::begin(balances), std::end(balances)));
    constexpr size_t longest = 21;
    // The first two letters of every phrase: nearly every payee parts from them, and the
    // rest from the first four of some phrase.
    static const std::bitset<26 * 26> starts = [] {
        std::bitset<26 * 26> bits;
        for (const std::u16string_view phrase : balances)
            bits.set(size_t(phrase[0] - u'a') * 26 + size_t(phrase[1] - u'a'));
        return bits;
    }();
    if (cell.size() > 48)
        return false;
    char16_t letters[longest];
    size_t n = 0;
    for (const QChar c : cell) {
        const char16_t u = c.unicode() | 0x20;
        if (c.unicode() >= 0x80) {
            if (c.isLetter())
                return false; // every phrase is in plain letters
            continue;
        }
        if (u < u'a' || u > u'z')
            continue;
        if (n == longest)
            return false;
        letters[n++] = u;
        if (n == 2 && !starts.test(size_t(letters[0] - u'a') * 26 + size_t(letters[1] - u'a')))
            return false;
        if (n == 4) {
            const std::u16string_view start(letters, n);
            const auto *next = std::lower_bound(std::begin(balances), std::end(balances), start);
            if (next == std::end(balances) || !next->starts_with(start))
                return false;
        }
    }
    return std::binary_search(std::begin(balances), std::end(balances), std::u16string_view(letters, n));
}

bool isDigit(QChar c)
{
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

// A blank between groups of thousands: a space, a no-break space, a narrow no-break
// space or a thin space.
bool isGroupBlank(QChar c)
{
    return c == u' ' || c == QChar(0xA0) || c == QChar(0x202F) || c == QChar(0x2009);
}

// From the first digit to the last: the number, without sign, brackets or symbol.
std::pair<qsizetype, qsizetype> digitSpan(QStringView cell)
{
    qsizetype begin = 0, end = cell.size();
    while (begin < end && !isDigit(cell[begin]))
        ++begin;
    while (end > begin && !isDigit(cell[end - 1]))
        --end;
    return {begin, end};
}

// Which way of writing numbers a cell shows: a decimal point ("12.50", "1,234.50",
// "1,234,567"), a decimal comma ("12,50", "1.234,50", "1.234.567"), or either ("1,250",
// "1.250", "1250", "1 250").
enum class NumberStyle { either, point, comma };

NumberStyle numberStyle(QStringView cell)
{
    const auto [begin, end] = digitSpan(cell);
    int points = 0, commas = 0;
    qsizetype lastPoint = -1, lastComma = -1;
    for (qsizetype i = begin; i < end; ++i) {
        if (cell[i] == u'.') {
            ++points;
            lastPoint = i;
        } else if (cell[i] == u',') {
            ++commas;
            lastComma = i;
        }
    }
    if (points > 0 && commas > 0)
        return lastComma > lastPoint ? NumberStyle::comma : NumberStyle::point;
    if (commas > 1)
        return NumberStyle::point;
    if (points > 1)
        return NumberStyle::comma;
    if (commas == 1 && end - lastComma - 1 != 3)
        return NumberStyle::comma;
    if (points == 1 && end - lastPoint - 1 != 3)
        return NumberStyle::point;
    return NumberStyle::either;
}

// An amount written with a decimal comma, as Money::parse reads its text with the
// thousands separators ("." or blanks, every group of three digits after the first)
// dropped and the comma made a point; nothing when the groups are not of three.
std::optional<Decimal> commaAmount(const QString &text)
{
    const QStringView cell(text);
    const auto [begin, end] = digitSpan(cell);
    QString number;
    number.reserve(text.size());
    number.append(cell.first(begin));
    int group = 0;             // digits since the last separator
    std::optional<QChar> kind; // the thousands separator, once one is seen
    bool fraction = false;
    for (qsizetype i = begin; i < end; ++i) {
        const QChar c = cell[i];
        if (isDigit(c)) {
            number.append(c);
            ++group;
        } else if (fraction) {
            return std::nullopt;
        } else if (c == u',') {
            if (kind && group != 3)
                return std::nullopt;
            number.append(u'.');
            fraction = true;
        } else if (c == u'.' || isGroupBlank(c)) {
            const QChar thisKind = c == u'.' ? c : QChar(u' ');
            if (group < 1 || group > 3 || (kind && (group != 3 || *kind != thisKind)))
                return std::nullopt;
            kind = thisKind;
            group = 0;
        } else {
            return std::nullopt;
        }
    }
    if (kind && !fraction && group != 3)
        return std::nullopt;
    number.append(cell.sliced(end));
    return Money::parse(number);
}

// The first two numbers of a date cell written "n/n/…", "n-n-…" or "n.n.…", each of one
// or two digits; nothing for other cells ("2024-03-05", "Mar 5, 2024", "20240305").
std::optional<std::pair<int, int>> leadingNumbers(QStringView cell)
{
    const auto number = [&](qsizetype &i) {
        int value = 0, digits = 0;
        while (i < cell.size() && isDigit(cell[i]) && digits < 3) {
            value = value * 10 + (cell[i].unicode() - u'0');
            ++digits;
            ++i;
        }
        return digits >= 1 && digits <= 2 ? value : -1;
    };
    qsizetype i = 0;
    while (i < cell.size() && isBlank(cell[i]))
        ++i;
    const int first = number(i);
    if (first < 0 || i >= cell.size())
        return std::nullopt;
    const QChar separator = cell[i++];
    if (separator != u'/' && separator != u'-' && separator != u'.')
        return std::nullopt;
    const int second = number(i);
    if (second < 0 || i >= cell.size() || cell[i] != separator)
        return std::nullopt;
    return std::pair(first, second);
}

// What the dates of a column say about their order: some can only be day first (a
// first number above 12), some only month first (a second number above 12, not
// dotted), some read as two different days either way.
struct DateOrder
{
    bool dayFirstOnly = false, monthFirstOnly = false, either = false;
};

// Looks at the dates in `column` until one can only be day first; with `dayFirstOnly`
// alone wanted, only at those that may be.
DateOrder dateOrder(const QList<QStringList> &rows, std::optional<int> column, bool dayFirstOnly)
{
    DateOrder order;
    if (!column || *column < 0)
        return order;
    for (const QStringList &row : rows) {
        if (*column >= row.size())
            continue;
        const QString &cell = row[*column];
        // A first number above 12 starts with 1, 2 or 3.
        if (dayFirstOnly && !cell.isEmpty() &&
            (cell[0] == u'0' || (cell[0] == u'1' && cell.size() > 1 && cell[1] <= u'2')))
            continue;
        const auto numbers = leadingNumbers(cell);
        if (!numbers)
            continue;
        const auto [first, second] = *numbers;
        if (first > 12 && second <= 12) {
            if (CSVImporter::date(cell, true)) {
                order.dayFirstOnly = true;
                return order;
            }
        } else if (second > 12 && first <= 12) {
            order.monthFirstOnly = order.monthFirstOnly || !cell.contains(u'.');
        } else if (first != second && first >= 1 && second >= 1 && !order.either && !cell.contains(u'.')) {
            order.either = CSVImporter::date(cell, false) && CSVImporter::date(cell, true);
        }
    }
    return order;
}

// Whether the amounts in `columns` are written with a decimal comma: some cell can only
// be read so, and none only with a decimal point.
bool usesDecimalComma(const QList<QStringList> &rows, std::initializer_list<std::optional<int>> columns)
{
    bool comma = false;
    for (const QStringList &row : rows)
        for (const std::optional<int> &column : columns) {
            if (!column || *column < 0 || *column >= row.size())
                continue;
            switch (numberStyle(row[*column])) {
            case NumberStyle::point:
                return false;
            case NumberStyle::comma:
                comma = true;
                break;
            case NumberStyle::either:
                break;
            }
        }
    return comma;
}

} // namespace

QString CSVImporter::trimmedCell(const QString &text)
{
    qsizetype begin = 0, end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    if (begin == 0 && end == text.size())
        return text;
    return text.mid(begin, end - begin);
}

std::optional<CSVImporter> CSVImporter::fromFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return fromBytes(bytes);
}

std::optional<CSVImporter> CSVImporter::fromBytes(const QByteArray &bytes, const Reading &overrides)
{
    std::optional<QString> text;
    const QString encoding = overrides.encoding ? encodingName(*overrides.encoding) : foundEncoding(bytes, text);
    if (!text)
        text = decoded(bytes, encoding);
    if (!text)
        return std::nullopt;
    std::optional<CSVImporter> importer = fromText(*text, overrides);
    if (importer)
        importer->m_reading.encoding = encoding;
    return importer;
}

std::optional<CSVImporter> CSVImporter::fromUtf8(const QByteArray &bytes)
{
    return fromBytes(bytes, {.encoding = QStringLiteral("UTF-8")});
}

std::optional<CSVImporter> CSVImporter::fromText(const QString &text, const Reading &overrides)
{
    // A quote or a line break cannot separate cells.
    const bool usable = overrides.separator && *overrides.separator != u'"' && *overrides.separator != u'\r' &&
                        *overrides.separator != u'\n';
    const QChar separator = usable ? *overrides.separator : foundSeparator(text);
    QList<QStringList> kept = parse(text, separator);
    kept.removeIf(isBlankRow);
    if (kept.isEmpty())
        return std::nullopt;

    // The header is the first row with a date-like title; the rows above it are the
    // bank's info lines. Without one, the first row has to do.
    qsizetype header = 0;
    for (qsizetype i = 0; i < kept.size(); ++i) {
        const QStringList &row = kept[i];
        if (std::any_of(row.begin(), row.end(), isDateHeader)) {
            header = i;
            break;
        }
    }

    CSVImporter importer;
    for (const QString &cell : kept[header])
        importer.m_headers.append(CSVImporter::trimmedCell(cell));
    kept.remove(0, header + 1);
    importer.m_rows = std::move(kept);
    importer.m_mapping = guess(importer.m_headers);
    const QStringList lower = lowerTitles(importer.m_headers);
    importer.m_descriptions = descriptionColumns(lower);
    importer.m_formerDescription =
        leftmost(lower, {u"description", u"payee", u"merchant", u"name", u"memo", u"details"});
    importer.m_overrides = overrides;
    importer.m_overrides.encoding.reset();
    importer.m_reading.separator = separator;
    importer.findNumberAndDateReading();
    return importer;
}

void CSVImporter::setMapping(const Mapping &mapping)
{
    m_mapping = mapping;
    findNumberAndDateReading();
}

void CSVImporter::findNumberAndDateReading()
{
    m_reading.decimalComma = m_overrides.decimalComma.has_value()
                                 ? *m_overrides.decimalComma
                                 : usesDecimalComma(m_rows, {m_mapping.amount, m_mapping.debit, m_mapping.credit});
    m_reading.dayFirst =
        m_overrides.dayFirst.has_value() ? *m_overrides.dayFirst : dateOrder(m_rows, m_mapping.date, true).dayFirstOnly;
}

QString CSVImporter::readingText() const
{
    QStringList parts;
    if (m_reading.encoding)
        parts << *m_reading.encoding;
    const QChar separator = m_reading.separator.value_or(u',');
    parts << (separator == u'\t' ? QStringLiteral("separated by tabs") : QStringLiteral("separated by ") + separator);
    parts << (m_reading.decimalComma.value_or(false) ? QStringLiteral("decimal comma")
                                                     : QStringLiteral("decimal point"));
    if (m_reading.dayFirst.value_or(false))
        parts << QStringLiteral("dates day first");
    return parts.join(QStringLiteral(" · "));
}

int CSVImporter::markerSign(const QString &cell)
{
    static constexpr std::u16string_view out[] = {u"af",   u"d",     u"debit",  u"debet",  u"dr",       u"db",    u"s",
                                                  u"soll", u"débit", u"débito", u"debito", u"addebito", u"cargo", u"-"};
    static constexpr std::u16string_view in[] = {u"bij",    u"c",       u"credit",  u"cr",        u"h",     u"haben",
                                                 u"crédit", u"crédito", u"credito", u"accredito", u"abono", u"+"};
    const QString word = trimmedCell(cell).toLower();
    return among(word, in) ? 1 : among(word, out) ? -1 : 0;
}

bool CSVImporter::isBalanceRow(const QStringList &row) const
{
    return std::any_of(m_descriptions.begin(), m_descriptions.end(),
                       [&](int column) { return column < row.size() && isBalanceText(row[column]); });
}

bool CSVImporter::datesAmbiguous() const
{
    const DateOrder order = dateOrder(m_rows, m_mapping.date, false);
    return order.either && !order.dayFirstOnly && !order.monthFirstOnly;
}

QList<QStringList> CSVImporter::parse(const QString &text, QChar separator)
{
    QList<QStringList> rows;
    QStringList row;
    QString cell;
    bool quoted = false;
    const QChar *p = text.constData();
    const qsizetype n = text.size();
    // A quote or a line break cannot separate cells; they mean the usual comma.
    const char16_t sep = separator == u'"' || separator == u'\r' || separator == u'\n' ? u',' : separator.unicode();

    // A CR, alone or before an LF, counts as one LF: the same as folding the line
    // ends first, without copying the text.
    auto lineEndLength = [&](qsizetype i) { return p[i] == u'\r' && i + 1 < n && p[i + 1] == u'\n' ? 2 : 1; };
    auto endCell = [&] {
        row.append(std::move(cell));
        cell = QString();
    };

    qsizetype i = 0;
    while (i < n) {
        const char16_t c = p[i].unicode();
        if (quoted) {
            if (c == u'"') {
                if (i + 1 < n && p[i + 1] == u'"') {
                    cell.append(u'"');
                    i += 2;
                } else {
                    quoted = false;
                    ++i;
                }
            } else if (c == u'\r') {
                cell.append(u'\n');
                i += lineEndLength(i);
            } else {
                qsizetype j = i + 1;
                while (j < n && p[j] != u'"' && p[j] != u'\r')
                    ++j;
                cell.append(p + i, j - i);
                i = j;
            }
            continue;
        }
        if (c == sep) {
            endCell();
            ++i;
            continue;
        }
        switch (c) {
        case u'"':
            quoted = true;
            ++i;
            break;
        case u'\r':
        case u'\n': {
            endCell();
            // Rows of a table are alike: room for as many cells as the last spares the
            // list's growing one cell at a time.
            const qsizetype width = row.size();
            rows.append(std::move(row));
            row = QStringList();
            row.reserve(width);
            i += lineEndLength(i);
            break;
        }
        default: {
            qsizetype j = i + 1;
            while (j < n && p[j] != u'"' && p[j] != sep && p[j] != u'\r' && p[j] != u'\n')
                ++j;
            cell.append(p + i, j - i);
            i = j;
        }
        }
    }
    if (!cell.isEmpty() || !row.isEmpty()) {
        endCell();
        rows.append(std::move(row));
    }
    return rows;
}

bool CSVImporter::isDateHeader(const QString &cell)
{
    const QString lower = cell.toLower();
    return lower.contains(QLatin1String("date")) || lower == QLatin1String("posted") ||
           lower.contains(QLatin1String("datum")) || lower.contains(QLatin1String("fecha")) ||
           lower.contains(QLatin1String("buchungstag")) || lower == QLatin1String("data") ||
           lower.startsWith(QLatin1String("data "));
}

CSVImporter::Mapping CSVImporter::guess(const QStringList &headers)
{
    const QStringList lower = lowerTitles(headers);
    // The first keyword that a title is, else the first that a title holds (the leftmost
    // such title): "Amount" beats an earlier "Amount (USD)", "Betrag" an earlier
    // "Lastschrift Ursprungsbetrag", and "Importe (EUR)" an earlier "Fecha valor".
    auto best = [&](std::initializer_list<std::u16string_view> keys) -> std::optional<int> {
        for (const std::u16string_view key : keys)
            if (const qsizetype exact = lower.indexOf(QStringView(key)); exact >= 0)
                return int(exact);
        for (const std::u16string_view key : keys)
            if (const auto column = leftmost(lower, {key}))
                return column;
        return std::nullopt;
    };

    Mapping m;
    for (qsizetype i = 0; i < headers.size() && !m.date; ++i)
        if (lower[i].contains(u"date") || lower[i].contains(u"posted") || isDateHeader(lower[i]))
            m.date = int(i);
    const std::vector<int> descriptions = descriptionColumns(lower);
    if (!descriptions.empty())
        m.description = descriptions.front();
    m.amount = best({u"amount", u"betrag", u"bedrag", u"montant", u"importe", u"importo", u"valor"});
    m.debit = leftmost(lower, {u"debit", u"withdrawal", u"money out", u"soll", u"débit", u"addebit", u"cargo"});
    m.credit = leftmost(lower, {u"credit", u"deposit", u"money in", u"haben", u"crédit", u"accredit", u"abono"});
    m.category = leftmost(lower, {u"category", u"kategorie", u"catégorie", u"categoria", u"categoría", u"categorie"});
    for (qsizetype i = 0; i < lower.size() && !m.marker; ++i)
        if (titlesMarker(lower[i]))
            m.marker = int(i);
    return m;
}

std::optional<Instant> CSVImporter::date(const QString &text, bool dayFirst)
{
    const QString trimmed = CSVImporter::trimmedCell(text);
    if (trimmed.isEmpty())
        return std::nullopt;
    if (const auto when = BankDateFormats::current(dayFirst).parse(trimmed))
        return when;
    return internetDateTime(trimmed);
}

std::optional<Decimal> CSVImporter::amount(const QString &text, bool decimalComma)
{
    if (decimalComma)
        return commaAmount(text);
    if (const std::optional<Decimal> value = Money::parse(text))
        return value;
    // No-break and thin spaces between thousands, which Money::parse, reading what
    // people type, does not know.
    if (!std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0x7F && isGroupBlank(c); }))
        return std::nullopt;
    QString plain = text;
    plain.removeIf([](QChar c) { return c.unicode() > 0x7F && isGroupBlank(c); });
    return Money::parse(plain);
}

std::optional<Instant> CSVImporter::DateCache::operator()(const QString &text)
{
    const auto found = m_known.constFind(text);
    if (found != m_known.constEnd())
        return *found;
    const std::optional<Instant> when = date(text, m_dayFirst);
    m_known.insert(text, when);
    return when;
}
