// The report queries: income, spending and their split by category. They run over
// every line of the Book on each redraw, so they stay on integers: dates are compared
// as instants (never turned into local time), and categories are grouped by where
// their text is stored before the text itself.
#include "store/reports.h"

#include <QDate>
#include <QDateTime>
#include <QHash>

#include <algorithm>
#include <utility>

namespace {

enum class Side { in, out };

// Whether a line is income (or spending) inside the range; transfers are neither.
inline bool counts(const Transaction &t, const ClosedRange &range, Side side)
{
    if (t.date < range.lower || range.upper < t.date || t.kind == TxKind::transfer)
        return false;
    return side == Side::in ? t.amount.signum() > 0 : t.amount.isNegative();
}

Decimal total(std::span<const Transaction> lines, const ClosedRange &range, Side side)
{
    DecimalSum sum;
    for (const Transaction &t : lines)
        if (counts(t, range, side))
            sum.add(t.amount);
    return side == Side::in ? sum.total() : sum.total().negated();
}

// Sums per exact category text.
//
// The money file reads each distinct text once and shares it, so most lines' texts
// sit at a handful of addresses: a line is looked up by the address (and length) of
// its text, quick to hash, and only a new address costs a lookup by the text.
class Groups
{
public:
    DecimalSum &operator[](const QString &name)
    {
        const std::pair<const void *, qsizetype> place(name.constData(), name.size());
        auto known = m_byPlace.constFind(place);
        if (known == m_byPlace.cend()) {
            auto named = m_byText.constFind(name);
            if (named == m_byText.cend()) {
                named = m_byText.insert(name, int(m_rows.size()));
                m_rows.emplace_back(name, Decimal());
                m_sums.emplace_back();
            }
            known = m_byPlace.insert(place, *named);
        }
        return m_sums[size_t(*known)];
    }

    // The groups, largest sum first.
    CategoryTotals take(Side side)
    {
        for (size_t i = 0; i < m_rows.size(); ++i)
            m_rows[i].second = side == Side::in ? m_sums[i].total() : m_sums[i].total().negated();
        std::sort(m_rows.begin(), m_rows.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
        return std::move(m_rows);
    }

private:
    QHash<std::pair<const void *, qsizetype>, int> m_byPlace;
    QHash<QString, int> m_byText;
    CategoryTotals m_rows;
    std::vector<DecimalSum> m_sums; // one per row
};

CategoryTotals byCategory(std::span<const Transaction> lines, const ClosedRange &range, Side side)
{
    Groups groups;
    for (const Transaction &t : lines)
        if (counts(t, range, side))
            groups[t.category].add(t.amount);
    return groups.take(side);
}

} // namespace

namespace Reports {

Decimal income(std::span<const Transaction> lines, const ClosedRange &range)
{
    return total(lines, range, Side::in);
}

Decimal spending(std::span<const Transaction> lines, const ClosedRange &range)
{
    return total(lines, range, Side::out);
}

CategoryTotals incomeByCategory(std::span<const Transaction> lines, const ClosedRange &range)
{
    return byCategory(lines, range, Side::in);
}

CategoryTotals spendingByCategory(std::span<const Transaction> lines, const ClosedRange &range)
{
    return byCategory(lines, range, Side::out);
}

ClosedRange lastMonths(Instant now, int months)
{
    Q_ASSERT(months >= 1);
    return {Calendar::monthRange(Calendar::addMonths(now, 1 - months)).lower, Calendar::monthRange(now).upper};
}

std::vector<MonthFlow> monthly(std::span<const Transaction> lines, Instant now, int months)
{
    Q_ASSERT(months >= 0);
    std::vector<MonthFlow> flows;
    std::vector<ClosedRange> ranges;
    for (int back = months - 1; back >= 0; --back) {
        ranges.push_back(Calendar::monthRange(Calendar::addMonths(now, -back)));
        flows.push_back({ranges.back().lower, {}, {}});
    }
    if (ranges.empty())
        return flows;
    // One pass for all the months: the chart follows every change of a large Book.
    const ClosedRange all{ranges.front().lower, ranges.back().upper};
    for (const Transaction &t : lines) {
        const bool in = counts(t, all, Side::in);
        if (!in && !counts(t, all, Side::out))
            continue;
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            if (ranges[i].lower <= t.date && t.date <= ranges[i].upper) {
                (in ? flows[i].in : flows[i].out) += in ? t.amount : t.amount.negated();
                break;
            }
        }
    }
    return flows;
}

PeriodReport periodReport(std::span<const Transaction> lines, const std::vector<Category> &categories,
                          ReportPeriod period, Instant now)
{
    PeriodReport report;
    report.period = period;
    report.range = periodRange(period, now);
    report.income = income(lines, report.range);
    report.spending = spending(lines, report.range);
    const CategoryTotals incomeRows = incomeByCategory(lines, report.range);
    report.royaltyShare = royaltyShare(incomeRows, report.income);
    // The first category of a name decides its budget.
    std::vector<std::pair<QString, Decimal>> budgets;
    for (const Category &c : categories)
        if (c.budget && std::none_of(budgets.begin(), budgets.end(), [&c](const auto &b) { return b.first == c.name; }))
            budgets.emplace_back(c.name, *c.budget);
    const int months = budgetMonths(period);
    report.incomeLines = categoryLines(incomeRows, report.income, {}, months);
    report.spendingLines = categoryLines(spendingByCategory(lines, report.range), report.spending, budgets, months);
    return report;
}

namespace {

// A CSV cell: in double quotes when it holds a comma, a quote or a line break, each
// quote inside doubled.
QByteArray csvCell(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    if (!bytes.contains(',') && !bytes.contains('"') && !bytes.contains('\n') && !bytes.contains('\r'))
        return bytes;
    bytes.replace('"', "\"\"");
    return '"' + bytes + '"';
}

} // namespace

std::vector<int> yearsWithLines(std::span<const Transaction> lines)
{
    // Turning a date into local time is the costly part, so a line is first tried
    // against the years already found: a Book's lines come in runs of one year.
    std::vector<std::pair<ClosedRange, int>> found;
    std::size_t last = 0;
    for (const Transaction &t : lines) {
        if (last < found.size() && found[last].first.contains(t.date))
            continue;
        const auto known =
            std::find_if(found.begin(), found.end(), [&t](const auto &year) { return year.first.contains(t.date); });
        if (known != found.end()) {
            last = std::size_t(known - found.begin());
            continue;
        }
        found.emplace_back(Calendar::yearRange(t.date), t.date.toLocal().date().year());
        last = found.size() - 1;
    }
    std::vector<int> years;
    for (const auto &year : found)
        years.push_back(year.second);
    std::sort(years.begin(), years.end(), std::greater<>());
    return years;
}

YearReport yearReport(std::span<const Transaction> lines, int year)
{
    YearReport report;
    report.year = year;
    const Instant midYear = Instant::fromDateTime(QDate(year, 7, 1).startOfDay());
    report.range = Calendar::yearRange(midYear);
    report.income = income(lines, report.range);
    report.spending = spending(lines, report.range);
    report.incomeByCategory = incomeByCategory(lines, report.range);
    report.spendingByCategory = spendingByCategory(lines, report.range);
    for (const auto &[name, amount] : report.spendingByCategory)
        if (name == QLatin1String("Taxes"))
            report.paidInTaxes = amount;

    Groups payers, royalties;
    DecimalSum in, out;
    for (const Transaction &t : lines) {
        if (!report.range.contains(t.date))
            continue;
        if (t.kind == TxKind::transfer) {
            ++report.transferLines;
            (t.amount.isNegative() ? out : in).add(t.amount);
            continue;
        }
        if (!t.cleared)
            report.pending.push_back({t.date, t.payee, t.category, t.amount});
        if (t.amount.signum() > 0) {
            payers[t.payee].add(t.amount);
            if (t.category == QLatin1String("Royalties"))
                royalties[t.payee].add(t.amount);
        }
    }
    report.incomeByPayer = payers.take(Side::in);
    report.royaltiesByPayer = royalties.take(Side::in);
    report.transfersIn = in.total();
    report.transfersOut = out.total().negated();
    std::stable_sort(report.pending.begin(), report.pending.end(),
                     [](const PendingLine &a, const PendingLine &b) { return a.date < b.date; });
    report.months = monthly(lines, Instant::fromDateTime(QDate(year, 12, 1).startOfDay()), 12);
    return report;
}

YearReport yearReport(const Book &book, int year)
{
    YearReport report = yearReport(book.transactions, year);
    if (book.setAsidePercent)
        report.setAside = setAside(book.transactions, book.categories, book.setAsidePercent, report.range);
    return report;
}

QByteArray yearCsv(const YearReport &report)
{
    QByteArray csv = "Section,Date,Name,Amount\n";
    auto row = [&csv](const char *section, const QString &date, const QString &name, const Decimal &amount) {
        csv += section;
        csv += ',' + csvCell(date) + ',' + csvCell(name) + ',' + amount.toString().toUtf8() + '\n';
    };
    const QString year = QString::number(report.year);
    row("Total", year, QStringLiteral("Income"), report.income);
    row("Total", year, QStringLiteral("Spending"), report.spending);
    row("Total", year, QStringLiteral("Net"), report.net());
    row("Total", year, QStringLiteral("Paid to the tax office (Taxes)"), report.paidInTaxes);
    if (const std::optional<SetAside> &s = report.setAside) {
        row("Set aside for taxes", year, QStringLiteral("Percent of counted income"), s->percent);
        row("Set aside for taxes", year, QStringLiteral("Counted income"), s->countedIncome);
        row("Set aside for taxes", year, QStringLiteral("To set aside"), s->due);
        row("Set aside for taxes", year, QStringLiteral("Paid to the tax office"), s->paid);
        row("Set aside for taxes", year, QStringLiteral("Still to put aside"), s->stillToPut());
        row("Set aside for taxes", year, QStringLiteral("Overpaid"), s->overpaid());
    }
    row("Transfers left out", year, QStringLiteral("In"), report.transfersIn);
    row("Transfers left out", year, QStringLiteral("Out"), report.transfersOut);
    for (const auto &[name, amount] : report.incomeByCategory)
        row("Income by category", year, name, amount);
    for (const auto &[name, amount] : report.spendingByCategory)
        row("Spending by category", year, name, amount);
    for (const auto &[name, amount] : report.incomeByPayer)
        row("Income by payer", year, name, amount);
    for (const auto &[name, amount] : report.royaltiesByPayer)
        row("Royalties by payer", year, name, amount);
    for (const MonthFlow &month : report.months) {
        const QString when = month.month.toLocal().date().toString(QStringLiteral("yyyy-MM"));
        row("Income by month", when, {}, month.in);
        row("Spending by month", when, {}, month.out);
    }
    for (const PendingLine &line : report.pending) {
        const QString name = line.category.isEmpty() ? line.payee : line.payee + QStringLiteral(" · ") + line.category;
        row("Pending", line.date.toLocal().date().toString(Qt::ISODate), name, line.amount);
    }
    return csv;
}

SetAside setAside(std::span<const Transaction> lines, const std::vector<Category> &categories,
                  const std::optional<Decimal> &percent, const ClosedRange &range)
{
    QHash<QString, bool> counted;
    for (const Category &c : categories)
        if (!counted.contains(c.name)) // the first of a name decides, as for budgets
            counted.insert(c.name, c.countsForSetAside());
    SetAside figures;
    figures.percent = percent.value_or(Decimal());
    DecimalSum in, paid;
    for (const Transaction &t : lines) {
        if (counts(t, range, Side::in)) {
            const auto known = counted.constFind(t.category);
            if (known != counted.cend() ? *known : Category::countsByDefault(t.category, true))
                in.add(t.amount);
        } else if (counts(t, range, Side::out) && t.category == QLatin1String("Taxes")) {
            paid.add(t.amount);
        }
    }
    figures.countedIncome = in.total();
    figures.paid = paid.total().negated();
    figures.due = (figures.countedIncome * figures.percent / Decimal(100)).rounded2();
    return figures;
}

SetAsidePercentInput readSetAsidePercent(const QString &typed)
{
    QString text = typed.trimmed();
    if (text.endsWith(QLatin1Char('%')))
        text.chop(1);
    text = text.trimmed();
    if (text.isEmpty())
        return {};
    const std::optional<Decimal> value = Decimal::fromString(text);
    if (!value || value->isNegative() || Decimal(100) < *value)
        return {std::nullopt, QStringLiteral("The percent to set aside is a number from 0 to 100.")};
    if (value->isZero())
        return {};
    return {value, {}};
}

} // namespace Reports
