#include "bankfiles/csvimporter.h"

#include <QFile>
#include <QStringDecoder>

#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cmath>
#include <memory>
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
// Julian calendar before 1582), which is why the "yy" patterns rarely win.
//
// ICU formats change their calendar while parsing, so every thread has its own
// set. The set follows the process time zone: it is made again when TZ changes.
class BankDateFormats
{
public:
    static BankDateFormats &current()
    {
        thread_local std::unique_ptr<BankDateFormats> formats;
        const QByteArray zone = qgetenv("TZ");
        if (!formats || formats->m_zone != zone)
            formats.reset(new BankDateFormats(zone));
        return *formats;
    }

    std::optional<Instant> parse(const QString &text) const
    {
        // In strict parsing every literal "/", "-" and "," of a pattern must appear
        // as that very character, so a text without one cannot match; the check
        // spares ICU most of the patterns it would reject anyway.
        const bool slash = text.contains(u'/'), dash = text.contains(u'-'), comma = text.contains(u',');
        const icu::UnicodeString icuText(false, reinterpret_cast<const char16_t *>(text.utf16()), int32_t(text.size()));
        for (size_t i = 0; i < m_formats.size(); ++i) {
            const Needs needs = m_needs[i];
            if ((needs.slash && !slash) || (needs.dash && !dash) || (needs.comma && !comma))
                continue;
            if (!m_formats[i])
                continue;
            icu::ParsePosition position(0);
            const UDate when = m_formats[i]->parse(icuText, position);
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
    // The literal characters a pattern needs to find in a text.
    struct Needs
    {
        bool slash, dash, comma;
    };

    explicit BankDateFormats(QByteArray zone)
        : m_zone(std::move(zone))
    {
        const icu::Locale posix("en_US_POSIX");
        for (size_t i = 0; i < m_formats.size(); ++i) {
            const std::u16string_view pattern(CSVImporter::dateFormats[i]);
            m_needs[i] = {pattern.find(u'/') != pattern.npos, pattern.find(u'-') != pattern.npos,
                          pattern.find(u',') != pattern.npos};
            UErrorCode status = U_ZERO_ERROR;
            auto format =
                std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(CSVImporter::dateFormats[i]), posix, status);
            if (U_FAILURE(status))
                continue;
            format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
            format->setLenient(false);
            m_formats[i] = std::move(format);
        }
    }

    QByteArray m_zone;
    std::array<std::unique_ptr<icu::SimpleDateFormat>, CSVImporter::dateFormats.size()> m_formats;
    std::array<Needs, CSVImporter::dateFormats.size()> m_needs{};
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
    return fromUtf8(bytes);
}

std::optional<CSVImporter> CSVImporter::fromUtf8(const QByteArray &bytes)
{
    // Without ConvertInitialBom the decoder drops a leading byte-order mark.
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return fromText(text);
}

std::optional<CSVImporter> CSVImporter::fromText(const QString &text)
{
    QList<QStringList> kept = parse(text);
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
    importer.m_rows = kept.sliced(header + 1);
    importer.m_mapping = guess(importer.m_headers);
    return importer;
}

QList<QStringList> CSVImporter::parse(const QString &text)
{
    QList<QStringList> rows;
    QStringList row;
    QString cell;
    bool quoted = false;
    const QChar *p = text.constData();
    const qsizetype n = text.size();

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
        switch (c) {
        case u'"':
            quoted = true;
            ++i;
            break;
        case u',':
            endCell();
            ++i;
            break;
        case u'\r':
        case u'\n':
            endCell();
            rows.append(std::move(row));
            row = QStringList();
            i += lineEndLength(i);
            break;
        default: {
            qsizetype j = i + 1;
            while (j < n && p[j] != u'"' && p[j] != u',' && p[j] != u'\r' && p[j] != u'\n')
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
    return lower.contains(QLatin1String("date")) || lower == QLatin1String("posted");
}

CSVImporter::Mapping CSVImporter::guess(const QStringList &headers)
{
    QStringList lower;
    for (const QString &h : headers)
        lower.append(h.toLower());

    // The leftmost header holding any of the keywords; their order gives no priority.
    auto find = [&](std::initializer_list<const char *> keys) -> std::optional<int> {
        for (qsizetype i = 0; i < lower.size(); ++i)
            for (const char *key : keys)
                if (lower[i].contains(QLatin1String(key)))
                    return int(i);
        return std::nullopt;
    };

    Mapping m;
    m.date = find({"posting date", "transaction date", "date", "posted"});
    m.description = find({"description", "payee", "merchant", "name", "memo", "details"});
    // "Amount" itself beats an earlier "Amount (USD)" or "Amount in foreign currency".
    const qsizetype exact = lower.indexOf(QLatin1String("amount"));
    m.amount = exact >= 0 ? std::optional<int>(int(exact)) : find({"amount"});
    m.debit = find({"debit", "withdrawal", "money out"});
    m.credit = find({"credit", "deposit", "money in"});
    m.category = find({"category"});
    return m;
}

std::optional<Instant> CSVImporter::date(const QString &text)
{
    const QString trimmed = CSVImporter::trimmedCell(text);
    if (trimmed.isEmpty())
        return std::nullopt;
    if (const auto when = BankDateFormats::current().parse(trimmed))
        return when;
    return internetDateTime(trimmed);
}

std::optional<Instant> CSVImporter::DateCache::operator()(const QString &text)
{
    const auto found = m_known.constFind(text);
    if (found != m_known.constEnd())
        return *found;
    const std::optional<Instant> when = date(text);
    m_known.insert(text, when);
    return when;
}
