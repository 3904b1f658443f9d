// The Reports screen and the month calendar on a large Book: the five report periods
// (income, spending and both by category) over 1,000,000 lines, and the bills of a
// month's calendar and of the dashboard's two weeks among 500 bills.
#include "store/reports.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int lineCount = 1000000;
constexpr int billCount = 500;
const Instant benchNow = Instant::fromSecs(1749988800); // 2025-06-15T12:00:00Z

// A Store whose Book is filled in memory: a million lines are not written to disk first.
class BenchStore : public Store
{
public:
    using Store::Store;
    void fill(Book book)
    {
        mutableBook() = std::move(book);
        sortNewestFirst(0); // as a read Book is, so the screens' slices by date apply
    }
};

Book generatedBook()
{
    Book book;
    for (const char *name : {"Main checking", "Savings", "Visa", "Studio"})
        book.accounts.push_back({newId(), QString::fromLatin1(name), AccountKind::checking, Decimal(1000), false});
    // Category texts shared by many lines, as the money file reads them.
    std::vector<QString> income, spending;
    for (const Category &c : book.categories)
        (c.income ? income : spending).push_back(c.name);

    // One line every 126 seconds: four years back from now, a few dated ahead.
    book.transactions.reserve(lineCount);
    for (int i = 0; i < lineCount; ++i) {
        Transaction t;
        t.date = benchNow.addSecs(86400 * 20 - std::int64_t(i) * 126);
        t.accountID = book.accounts[size_t(i % 4)].id;
        const std::string cents = std::to_string(10 + i % 90);
        if (i % 40 == 0) {
            t.kind = TxKind::transfer;
            t.category = QStringLiteral("Transfer");
            t.amount = *Decimal::fromString(std::string(i % 80 ? "-" : "") + "250." + cents);
        } else if (i % 6 == 0) {
            t.kind = TxKind::deposit;
            t.category = income[size_t(i % income.size())];
            t.amount = *Decimal::fromString(std::to_string(i % 4000 + 1) + "." + cents);
        } else {
            t.category = spending[size_t(i % (spending.size() - 1))];
            t.amount = *Decimal::fromString("-" + std::to_string(i % 900 + 1) + "." + cents);
        }
        t.payee = QStringLiteral("Payee");
        book.transactions.push_back(std::move(t));
    }

    // Bills of every schedule, due from a month ago to two months ahead.
    const std::vector<Repeat> schedules = allCases<Repeat>();
    for (int i = 0; i < billCount; ++i) {
        Bill b;
        b.name = QStringLiteral("Bill %1").arg(i);
        b.amount = Decimal(10 + i);
        b.due = benchNow.addSecs(86400 * std::int64_t((i * 37) % 90 - 30) - 3 * 3600);
        b.repeats = schedules[size_t(i % schedules.size())];
        book.bills.push_back(std::move(b));
    }
    return book;
}

BenchStore &store()
{
    static QTemporaryDir temp;
    static BenchStore *shared = [] {
        auto *s = new BenchStore(StoreOptions{temp.path(), {}});
        s->fill(generatedBook());
        s->setClock([] { return benchNow; });
        return s;
    }();
    return *shared;
}

void reportPeriods(benchmark::State &state)
{
    const Store &s = store();
    for (auto _ : state) {
        for (ReportPeriod period : allCases<ReportPeriod>()) {
            const ClosedRange range = periodRange(period, s.now());
            benchmark::DoNotOptimize(Reports::periodReport(s.linesWithin(range), s.book().categories, period, s.now()));
        }
    }
}
BENCHMARK(reportPeriods)->Unit(benchmark::kMillisecond)->UseRealTime();

// The worst single period: every line of the Book inside the range.
void everyLine(benchmark::State &state)
{
    const Store &s = store();
    const ClosedRange all{Instant::distantPast(), Instant::distantFuture()};
    for (auto _ : state) {
        benchmark::DoNotOptimize(Reports::income(s.book().transactions, all));
        benchmark::DoNotOptimize(Reports::spending(s.book().transactions, all));
        benchmark::DoNotOptimize(Reports::incomeByCategory(s.book().transactions, all));
        benchmark::DoNotOptimize(Reports::spendingByCategory(s.book().transactions, all));
    }
}
BENCHMARK(everyLine)->Unit(benchmark::kMillisecond)->UseRealTime();

void dashboardMonthly(benchmark::State &state)
{
    const Store &s = store();
    for (auto _ : state)
        benchmark::DoNotOptimize(Reports::monthly(s.linesWithin(Reports::lastMonths(s.now(), 6)), s.now(), 6));
}
BENCHMARK(dashboardMonthly)->Unit(benchmark::kMillisecond)->UseRealTime();

void upcomingBills(benchmark::State &state)
{
    const Store &s = store();
    for (auto _ : state)
        benchmark::DoNotOptimize(s.upcomingBills(14));
}
BENCHMARK(upcomingBills)->Unit(benchmark::kMillisecond)->UseRealTime();

// What the calendar asks for one month: every active bill's due dates in it.
void monthCalendarDueDates(benchmark::State &state)
{
    const Store &s = store();
    const ClosedRange month = Calendar::monthRange(s.now());
    for (auto _ : state) {
        size_t dates = 0;
        for (const Bill &bill : s.activeBills())
            dates += s.dueDates(bill, month).size();
        benchmark::DoNotOptimize(dates);
    }
}
BENCHMARK(monthCalendarDueDates)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    qputenv("XDG_CONFIG_HOME", QByteArray("/tmp/coinhall-bench-config"));
    if (qEnvironmentVariableIsEmpty("TZ"))
        qputenv("TZ", "America/New_York");
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
