// The year's report for the accountant: its figures against a count of our own over a
// generated book, the years offered, and the CSV written from them.
// Suites whose name ends in "Calendar" also run in Berlin time.
#include "storetesting.h"

#include "store/reports.h"

#include <QDateTime>

#include <map>
#include <random>
#include <set>

namespace {

using Sums = std::map<QString, Decimal>;

Sums asMap(const CategoryTotals &rows)
{
    Sums sums;
    for (const auto &[name, amount] : rows)
        EXPECT_TRUE(sums.emplace(name, amount).second) << "twice: " << name.toStdString();
    return sums;
}

bool largestFirst(const CategoryTotals &rows)
{
    return std::is_sorted(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
}

// Lines over three calendar years and their edges, of every kind, some not cleared.
std::vector<Transaction> generatedLines(const QUuid &account)
{
    std::mt19937 random(21);
    const std::vector<QString> payees{"Label A", "Label B", "Venue", "", "Client, Inc.", "Shop"};
    const std::vector<QString> categories{"Royalties", "Gigs & bookings", "Taxes", "Groceries", "", "Rent"};
    const QDateTime first = local(2023, 12, 31, 23).toLocal();
    std::vector<Transaction> lines;
    for (int i = 0; i < 3000; ++i) {
        Transaction t;
        t.accountID = account;
        t.date = Instant::fromDateTime(first.addSecs(std::int64_t(random() % (400u * 86400u))));
        const int cents = int(random() % 200001) - 100000;
        t.amount = d(QString::number(cents / 100.0, 'f', 2).toLatin1().constData());
        t.payee = payees[random() % payees.size()];
        t.category = categories[random() % categories.size()];
        t.cleared = random() % 4 != 0;
        t.kind = random() % 7 == 0 ? TxKind::transfer : cents > 0 ? TxKind::deposit : TxKind::expense;
        lines.push_back(t);
    }
    // The last second of a year and the first of the next.
    lines.push_back({.date = local(2024, 12, 31, 23, 59, 59), .accountID = account, .amount = d("7"), .payee = "Edge"});
    lines.push_back({.date = local(2025, 1, 1), .accountID = account, .amount = d("-3"), .payee = "Edge"});
    return lines;
}

} // namespace

TEST(YearReportCalendar, FiguresMatchACountOfEveryLineOfTheYear)
{
    const std::vector<Transaction> lines = generatedLines(newId());
    std::set<int, std::greater<>> years;
    for (const Transaction &t : lines)
        years.insert(t.date.toLocal().date().year());
    EXPECT_EQ(Reports::yearsWithLines(lines), std::vector<int>(years.begin(), years.end()));
    EXPECT_EQ(Reports::yearsWithLines({}), std::vector<int>());

    for (int year : {2023, 2024, 2025}) {
        Sums income, spending, payers, royalties;
        Decimal in, out, transfersIn, transfersOut, monthIn[12], monthOut[12];
        int transfers = 0;
        std::vector<const Transaction *> pending;
        for (const Transaction &t : lines) {
            const QDate day = t.date.toLocal().date();
            if (day.year() != year)
                continue;
            if (t.kind == TxKind::transfer) {
                ++transfers;
                (t.amount.isNegative() ? transfersOut : transfersIn) +=
                    t.amount.isNegative() ? t.amount.negated() : t.amount;
                continue;
            }
            if (!t.cleared)
                pending.push_back(&t);
            if (t.amount.signum() > 0) {
                in += t.amount;
                income[t.category] += t.amount;
                payers[t.payee] += t.amount;
                if (t.category == "Royalties")
                    royalties[t.payee] += t.amount;
                monthIn[day.month() - 1] += t.amount;
            } else if (t.amount.isNegative()) {
                out += t.amount.negated();
                spending[t.category] += t.amount.negated();
                monthOut[day.month() - 1] += t.amount.negated();
            }
        }

        const YearReport report = Reports::yearReport(lines, year);
        SCOPED_TRACE(year);
        EXPECT_EQ(std::tuple(report.income, report.spending, report.net()), std::tuple(in, out, in - out));
        EXPECT_EQ(asMap(report.incomeByCategory), income);
        EXPECT_EQ(asMap(report.spendingByCategory), spending);
        EXPECT_EQ(asMap(report.incomeByPayer), payers);
        EXPECT_EQ(asMap(report.royaltiesByPayer), royalties);
        EXPECT_TRUE(largestFirst(report.incomeByPayer) && largestFirst(report.royaltiesByPayer) &&
                    largestFirst(report.spendingByCategory));
        EXPECT_EQ(report.paidInTaxes, spending.count("Taxes") ? spending["Taxes"] : Decimal());
        EXPECT_EQ(std::tuple(report.transferLines, report.transfersIn, report.transfersOut),
                  std::tuple(transfers, transfersIn, transfersOut));
        ASSERT_EQ(report.months.size(), 12u);
        for (int m = 0; m < 12; ++m) {
            EXPECT_EQ(report.months[size_t(m)].month, local(year, m + 1, 1));
            EXPECT_EQ(std::tuple(report.months[size_t(m)].in, report.months[size_t(m)].out),
                      std::tuple(monthIn[m], monthOut[m]));
        }
        ASSERT_EQ(report.pending.size(), pending.size());
        EXPECT_TRUE(std::is_sorted(report.pending.begin(), report.pending.end(),
                                   [](const PendingLine &a, const PendingLine &b) { return a.date < b.date; }));
        Decimal pendingSum, expectedPendingSum;
        for (size_t i = 0; i < pending.size(); ++i) {
            pendingSum += report.pending[i].amount;
            expectedPendingSum += pending[i]->amount;
        }
        EXPECT_EQ(pendingSum, expectedPendingSum);
    }
    EXPECT_EQ(Reports::yearReport(lines, 2030).income, Decimal());
}

TEST(YearReport, CsvHoldsEveryFigureWithCellsQuotedWhereNeeded)
{
    const QUuid account = newId();
    const std::vector<Transaction> lines{
        {.date = local(2025, 3, 4, 9),
         .accountID = account,
         .amount = d("1200.5"),
         .payee = "Label \"A\", Ltd",
         .category = "Royalties",
         .cleared = true,
         .kind = TxKind::deposit},
        {.date = local(2025, 4, 15, 9),
         .accountID = account,
         .amount = d("-300"),
         .payee = "Tax office",
         .category = "Taxes",
         .cleared = false},
        {.date = local(2025, 4, 16, 9),
         .accountID = account,
         .amount = d("-50"),
         .category = "Transfer",
         .cleared = true,
         .kind = TxKind::transfer},
    };
    const QList<QByteArray> rows = Reports::yearCsv(Reports::yearReport(lines, 2025)).split('\n');
    const QList<QByteArray> expectedStart{
        "Section,Date,Name,Amount",
        "Total,2025,Income,1200.5",
        "Total,2025,Spending,300",
        "Total,2025,Net,900.5",
        "Total,2025,Paid to the tax office (Taxes),300",
        "Transfers left out,2025,In,0",
        "Transfers left out,2025,Out,50",
        "Income by category,2025,Royalties,1200.5",
        "Spending by category,2025,Taxes,300",
        "Income by payer,2025,\"Label \"\"A\"\", Ltd\",1200.5",
        "Royalties by payer,2025,\"Label \"\"A\"\", Ltd\",1200.5",
        "Income by month,2025-01,,0",
    };
    ASSERT_GT(rows.size(), expectedStart.size());
    EXPECT_EQ(rows.mid(0, expectedStart.size()), expectedStart);
    EXPECT_TRUE(rows.contains("Spending by month,2025-04,,300"));
    EXPECT_EQ(rows.end()[-2], "Pending,2025-04-15,Tax office · Taxes,-300");
}

// The lines of Dec 31 and Jan 1 fall in their own local years; "Refunds", transfers
// and a category the user left out do not count, one the user added does.
TEST(SetAsideCalendar, CountsTheYearsIncomeByCategoryAndWhatWasPaid)
{
    const QUuid account = newId();
    const auto tx = [&](Instant when, const char *amount, const char *category, TxKind kind = TxKind::deposit) {
        return Transaction{.date = when, .accountID = account, .amount = d(amount), .category = category, .kind = kind};
    };
    std::vector<Category> categories = Category::defaults();
    std::ranges::find(categories, "Paycheck", &Category::name)->setAside = false;
    categories.push_back({"Grants", true, std::nullopt, std::nullopt});
    categories.push_back({"Refunds", true, std::nullopt, true}); // the first of a name decides
    const std::vector<Transaction> lines{
        tx(local(2024, 12, 31, 23, 59, 59), "1000", "Royalties"),
        tx(local(2025, 1, 1), "333.33", "Gigs & bookings"),
        tx(local(2025, 3, 1), "500", "Grants"),
        tx(local(2025, 3, 2), "80", "Refunds"),
        tx(local(2025, 3, 3), "2000", "Paycheck"),
        tx(local(2025, 3, 4), "700", "Transfer", TxKind::transfer),
        tx(local(2025, 3, 5), "40", "Not listed"),
        tx(local(2025, 4, 15), "-100", "Taxes", TxKind::expense),
        tx(local(2025, 4, 16), "-9", "Groceries", TxKind::expense),
        tx(local(2025, 12, 31, 23, 59, 59), "-50.5", "Taxes", TxKind::expense),
        tx(local(2026, 1, 1), "-400", "Taxes", TxKind::expense),
    };
    const ClosedRange year2025 = Calendar::yearRange(local(2025, 6, 1));

    const SetAside y = Reports::setAside(lines, categories, d("25"), year2025);
    EXPECT_EQ(y.countedIncome, d("873.33"));
    EXPECT_EQ(y.due, d("218.33")); // 218.3325 to the cent
    EXPECT_EQ(y.paid, d("150.5"));
    EXPECT_EQ(y.stillToPut(), d("67.83"));
    EXPECT_EQ(y.overpaid(), Decimal());

    const SetAside next = Reports::setAside(lines, categories, d("25"), Calendar::yearRange(local(2026, 6, 1)));
    EXPECT_EQ(next.due, Decimal());
    EXPECT_EQ(next.stillToPut(), Decimal());
    EXPECT_EQ(next.overpaid(), d("400"));

    const SetAside off = Reports::setAside(lines, categories, std::nullopt, year2025);
    EXPECT_EQ(off.due, Decimal());
    EXPECT_EQ(off.overpaid(), d("150.5"));

    // The year's report carries the same figures, its CSV a row each.
    Book book{.transactions = lines, .categories = categories};
    EXPECT_FALSE(Reports::yearReport(book, 2025).setAside);
    book.setAsidePercent = d("25");
    const QByteArray csv = Reports::yearCsv(Reports::yearReport(book, 2025));
    EXPECT_TRUE(csv.contains("Set aside for taxes,2025,Percent of counted income,25\n"
                             "Set aside for taxes,2025,Counted income,873.33\n"
                             "Set aside for taxes,2025,To set aside,218.33\n"
                             "Set aside for taxes,2025,Paid to the tax office,150.5\n"
                             "Set aside for taxes,2025,Still to put aside,67.83\n"
                             "Set aside for taxes,2025,Overpaid,0\n"))
        << csv.toStdString();
}

TEST(SetAside, PercentTypedIsANumberFrom0To100)
{
    EXPECT_EQ(Reports::readSetAsidePercent(" 27.5 %").percent, d("27.5"));
    EXPECT_EQ(Reports::readSetAsidePercent("100").percent, d("100"));
    for (const char *off : {"", "0", "0%"}) {
        const SetAsidePercentInput input = Reports::readSetAsidePercent(off);
        EXPECT_EQ(input.percent, std::nullopt) << off;
        EXPECT_EQ(input.error, "") << off;
    }
    for (const char *bad : {"abc", "150", "-3", "100.01", "1,5"})
        EXPECT_EQ(Reports::readSetAsidePercent(bad).error, "The percent to set aside is a number from 0 to 100.")
            << bad;
}
