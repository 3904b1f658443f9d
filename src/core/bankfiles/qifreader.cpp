#include "bankfiles/qifreader.h"

#include "model/money.h"

#include <QStringList>

namespace QifReader {
namespace {

// Each line without its end, whether the file ends lines with CR LF, LF or CR.
std::vector<QStringView> linesOf(const QString &text)
{
    std::vector<QStringView> lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\n' && text[i] != u'\r')
            continue;
        lines.push_back(QStringView(text).sliced(start, i - start));
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        lines.push_back(QStringView(text).sliced(start));
    return lines;
}

// The first meaningful line opens a section or an account list.
bool isHeader(QStringView line)
{
    for (const char16_t *header : {u"!type:", u"!account", u"!option", u"!clear"}) {
        if (line.startsWith(header, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

enum class Section { none, accounts, bank, other };

Section sectionOf(QStringView type)
{
    const QString name = type.trimmed().toString().toLower();
    for (const char16_t *kept : {u"bank", u"ccard", u"cash", u"oth a", u"oth l"}) {
        if (name == QStringView(kept))
            return Section::bank;
    }
    return Section::other; // investments, lists of categories, classes, tags, securities...
}

// One record of a bank section as written, up to its "^".
struct Record
{
    QString account; // the name of the last !Account block before it
    QString date, total, u, payee, memo, category;
    QStringList splits; // the split amounts ("$" lines)
    bool empty = true;
};

// A date's three numbers. QIF writers use "M/D'YY" (the apostrophe marks years from
// 2000), "M/D/YY", "MM/DD/YYYY", "D/M/YYYY", "M-D-YY", with or without leading zeros
// and padded with spaces ("6/ 1/94"); a few write "YYYY-MM-DD".
struct DateParts
{
    int first = 0;
    int second = 0;
    int year = 0;
    bool yearFirst = false; // then first is the month and second the day
};

std::optional<DateParts> datePartsOf(QStringView text)
{
    int value[3] = {0, 0, 0};
    int digits[3] = {0, 0, 0};
    int part = 0;
    bool apostrophe = false;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u' ')
            continue;
        if (u >= u'0' && u <= u'9') {
            if (++digits[part] > 4)
                return std::nullopt;
            value[part] = value[part] * 10 + (u - u'0');
        } else if ((u == u'/' || u == u'-' || u == u'.' || u == u'\'') && part < 2 && digits[part] > 0) {
            if (u == u'\'' && part != 1)
                return std::nullopt;
            apostrophe = apostrophe || u == u'\'';
            ++part;
        } else {
            return std::nullopt;
        }
    }
    if (part != 2 || digits[2] == 0)
        return std::nullopt;
    if (digits[0] == 4 && !apostrophe && digits[1] <= 2 && digits[2] <= 2)
        return DateParts{value[1], value[2], value[0], true};
    if (digits[0] > 2 || digits[1] > 2 || digits[2] == 3)
        return std::nullopt;
    int year = value[2];
    // Two-digit years: after an apostrophe they are 2000 and later (Quicken's own mark);
    // plain ones follow POSIX strptime's %y, 69-99 for 1969-1999 and 00-68 for 2000-2068.
    if (digits[2] <= 2)
        year += apostrophe || year < 69 ? 2000 : 1900;
    return DateParts{value[0], value[1], year, false};
}

QDate dateOf(const DateParts &p, bool dayFirst)
{
    if (p.yearFirst || !dayFirst)
        return QDate(p.year, p.first, p.second);
    return QDate(p.year, p.second, p.first);
}

// An amount with "," between thousands ("-1,000.00"), or, as some European programs
// write, a decimal comma ("-1.234,56", "12,5"); a lone comma before three digits
// ("1,000") is a thousands separator.
std::optional<Decimal> amountOf(QString text)
{
    text.remove(u' ');
    const qsizetype comma = text.lastIndexOf(u',');
    const qsizetype point = text.lastIndexOf(u'.');
    const qsizetype afterComma = text.size() - comma - 1;
    if (comma > point && (point >= 0 || (text.count(u',') == 1 && afterComma != 3))) {
        text.remove(u'.');
        text[text.lastIndexOf(u',')] = u'.';
    }
    return Money::parse(text);
}

} // namespace

bool looksLike(const QByteArray &bytes)
{
    const QString text = decodedText(bytes.left(4096));
    for (QStringView line : linesOf(text)) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        return isHeader(line);
    }
    return false;
}

Statement read(const QByteArray &bytes, std::optional<bool> dayFirst)
{
    Statement out;
    out.format = QStringLiteral("QIF");

    std::vector<Record> records;
    Section section = Section::none;
    bool anyBankSection = false;
    QString account;
    Record record;
    auto finish = [&] {
        if (section == Section::bank && !record.empty) {
            record.account = account;
            records.push_back(std::move(record));
        }
        record = Record();
    };

    const QString text = decodedText(bytes);
    for (QStringView line : linesOf(text)) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'!')) {
            finish();
            if (line.startsWith(u"!type:", Qt::CaseInsensitive)) {
                section = sectionOf(line.sliced(6));
                anyBankSection = anyBankSection || section == Section::bank;
            } else if (line.startsWith(u"!account", Qt::CaseInsensitive)) {
                section = Section::accounts;
            } else if (!line.startsWith(u"!option", Qt::CaseInsensitive) &&
                       !line.startsWith(u"!clear", Qt::CaseInsensitive)) {
                section = Section::other;
            }
            continue;
        }
        if (line.startsWith(u'^')) {
            finish();
            continue;
        }
        const char16_t code = line.front().unicode();
        const QString value = line.sliced(1).trimmed().toString();
        if (section == Section::accounts && code == u'N')
            account = value;
        if (section != Section::bank)
            continue;
        record.empty = false;
        switch (code) {
        case u'D':
            // A date inside a split belongs to no one; the record's own comes first.
            if (record.date.isEmpty())
                record.date = value;
            break;
        case u'T':
            record.total = value;
            break;
        case u'U':
            record.u = value;
            break;
        case u'P':
            record.payee = value;
            break;
        case u'M':
            record.memo = value;
            break;
        case u'L':
            record.category = value;
            break;
        case u'$':
            record.splits.append(value);
            break;
        default: // number, cleared flag, address, split categories and memos...
            break;
        }
    }
    finish();

    if (!anyBankSection) {
        out.error = QStringLiteral("it holds no bank, cash or card transactions");
        return out;
    }
    // A Statement is one account: the first one with lines; other accounts' lines are left out.
    if (!records.empty())
        out.account = records.front().account;
    std::erase_if(records, [&](const Record &r) { return r.account != out.account; });

    // One order of day and month for the whole file: a first number above 12 can only
    // be a day, a second number above 12 only a day after the month.
    std::vector<std::optional<DateParts>> dates;
    dates.reserve(records.size());
    int dayFirstOnly = 0, monthFirstOnly = 0;
    bool eitherWay = false;
    for (const Record &r : records) {
        dates.push_back(datePartsOf(r.date));
        const std::optional<DateParts> &p = dates.back();
        if (!p || p->yearFirst)
            continue;
        dayFirstOnly += p->first > 12;
        monthFirstOnly += p->second > 12;
        eitherWay = eitherWay || p->first != p->second;
    }
    const bool readDayFirst = dayFirst.value_or(dayFirstOnly > monthFirstOnly);
    out.datesAmbiguous = !dayFirst && dayFirstOnly == 0 && monthFirstOnly == 0 && eitherWay;

    for (size_t i = 0; i < records.size(); ++i) {
        const Record &r = records[i];
        // "[Account]" names the other side of a transfer, not a category; "/class" follows
        // the category.
        QString category = r.category.section(u'/', 0, 0).trimmed();
        QString otherAccount;
        const bool transfer = r.category.startsWith(u'[') && r.category.contains(u']');
        if (transfer) {
            otherAccount = r.category.mid(1, r.category.indexOf(u']') - 1).trimmed();
            category.clear();
        }
        // Quicken starts an account's export with its opening balance, a transfer from
        // itself: a balance, not a line.
        if (transfer && r.payee.compare(u"Opening Balance", Qt::CaseInsensitive) == 0)
            continue;

        std::optional<Decimal> amount = amountOf(r.total.isEmpty() ? r.u : r.total);
        if (!amount && r.total.isEmpty() && r.u.isEmpty() && !r.splits.isEmpty()) {
            amount = Decimal();
            for (const QString &split : r.splits) {
                const std::optional<Decimal> part = amountOf(split);
                amount = part ? std::optional(*amount + *part) : std::nullopt;
                if (!amount)
                    break;
            }
        }
        const QDate day = dates[i] ? dateOf(*dates[i], readDayFirst) : QDate();
        if (!amount || !day.isValid()) {
            ++out.bad;
            continue;
        }

        QString payee = r.payee;
        for (const QString &fallback : {r.memo, category, otherAccount, QStringLiteral("Imported")}) {
            if (payee.isEmpty())
                payee = fallback;
        }
        out.lines.push_back({day, *amount, payee, category, {}, {}});
    }
    return out;
}

} // namespace QifReader
