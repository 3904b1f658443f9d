// The register's list over a Book of 100,000 lines: what one keystroke in the search
// field, or one click on a filter, costs before the list can redraw.
#include "transactionlistmodel.h"

#include "platform/notifier.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <tuple>

namespace {

class SilentNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

Book generatedBook(int lines)
{
    Book book;
    for (const char *name : {"Main checking", "Savings", "Visa", "Studio"})
        book.accounts.push_back({newId(), QString::fromLatin1(name), AccountKind::checking, Decimal(1000), false});
    const QStringList payees = {QStringLiteral("Corner Grocery"),     QStringLiteral("Bandcamp"),
                                QStringLiteral("Hosting Co"),         QStringLiteral("Coffee Bar"),
                                QStringLiteral("Landlord"),           QStringLiteral("Music Store"),
                                QStringLiteral("City Power & Light"), QStringLiteral("Gas Station 24")};
    const QStringList notes = {QString(), QString(), QStringLiteral("strings and picks"), QStringLiteral("monthly"),
                               QStringLiteral("for the studio")};
    const Instant start = Instant::now();
    book.transactions.reserve(size_t(lines));
    for (int i = 0; i < lines; ++i) {
        Transaction t;
        t.date = start.addSecs(-std::int64_t(i) * 1800); // about 5.7 years of lines
        t.accountID = book.accounts[size_t(i % 4)].id;
        const bool in = i % 7 == 0;
        t.amount = *Decimal::fromString(std::string(in ? "" : "-") + std::to_string(i % 9000 + 1) + "." +
                                        std::to_string(10 + i % 90));
        t.payee = payees[i % payees.size()] + (i % 3 == 0 ? QStringLiteral(" #%1").arg(i % 500) : QString());
        t.category = book.categories[size_t(in ? i % 8 : 8 + i % 17)].name;
        t.note = notes[i % notes.size()];
        t.cleared = i % 3 != 0;
        t.kind = in ? TxKind::deposit : TxKind::expense;
        book.transactions.push_back(std::move(t));
    }
    return book;
}

// One Store with a large Book for all benchmarks, made (and its file written) once.
Store &bigStore()
{
    static QTemporaryDir dir;
    static Store *store = [] {
        auto *made = new Store(StoreOptions{dir.path(), nullptr, std::make_shared<SilentNotifier>()});
        std::ignore = made->setBook(generatedBook(100000));
        return made;
    }();
    return *store;
}

// A keystroke that starts a new search: every line is looked at.
void searchKeystroke(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    model.setSearch(QStringLiteral("x")); // the search keys are made once, here
    const QString texts[] = {QStringLiteral("rent"), QStringLiteral("cof"), QStringLiteral("studio"),
                             QStringLiteral("zz")};
    int i = 0;
    for (auto _ : state) {
        model.setSearch(texts[i++ % 4]);
        benchmark::DoNotOptimize(model.count());
    }
    state.counters["lines"] = double(bigStore().book().transactions.size());
}
BENCHMARK(searchKeystroke)->Unit(benchmark::kMillisecond)->UseRealTime();

// Typing "corner" one letter at a time, then clearing the field: per keystroke.
void typingASearch(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    model.setSearch(QStringLiteral("x"));
    const QString word = QStringLiteral("corner");
    for (auto _ : state) {
        for (int n = 1; n <= word.size(); ++n)
            model.setSearch(word.left(n));
        model.setSearch(QString());
        benchmark::DoNotOptimize(model.count());
    }
    state.SetItemsProcessed(state.iterations() * (word.size() + 1));
}
BENCHMARK(typingASearch)->Unit(benchmark::kMillisecond)->UseRealTime();

// A click on the flow picker or the month toggle, no search.
void filterChange(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    int i = 0;
    for (auto _ : state) {
        model.setFlow(TransactionListModel::Flow(i % 3));
        model.setMonthOnly(i % 2 == 1);
        ++i;
        benchmark::DoNotOptimize(model.count());
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(filterChange)->Unit(benchmark::kMillisecond)->UseRealTime();

// A flow change while a search is typed: every line is looked at again.
void filterChangeWhileSearching(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    model.setSearch(QStringLiteral("studio"));
    int i = 0;
    for (auto _ : state) {
        model.setFlow(TransactionListModel::Flow(++i % 3));
        benchmark::DoNotOptimize(model.count());
    }
}
BENCHMARK(filterChangeWhileSearching)->Unit(benchmark::kMillisecond)->UseRealTime();

// The first keystroke after the Book changed (or the screen opened): the search keys
// of every line are made, then looked through.
void firstKeystrokeAfterABookChange(benchmark::State &state)
{
    TransactionListModel model;
    for (auto _ : state) {
        state.PauseTiming();
        model.setSearch(QString());
        model.setStore(nullptr);
        model.setStore(&bigStore());
        state.ResumeTiming();
        model.setSearch(QStringLiteral("rent"));
        benchmark::DoNotOptimize(model.count());
    }
}
BENCHMARK(firstKeystrokeAfterABookChange)->Unit(benchmark::kMillisecond)->UseRealTime();

// What the list does on every change of the Book with no search: copy the lines, filter.
void bookChange(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    for (auto _ : state) {
        Q_EMIT bigStore().bookChanged();
        benchmark::DoNotOptimize(model.count());
    }
}
BENCHMARK(bookChange)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same while a search is typed: the search keys are made again too. (The change
// itself, and its save, are the Store's and measured by store_bench.)
void bookChangeWhileSearching(benchmark::State &state)
{
    TransactionListModel model;
    model.setStore(&bigStore());
    model.setSearch(QStringLiteral("studio"));
    for (auto _ : state) {
        Q_EMIT bigStore().bookChanged();
        benchmark::DoNotOptimize(model.count());
    }
}
BENCHMARK(bookChangeWhileSearching)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    qputenv("XDG_CONFIG_HOME", QByteArray("/tmp/coinhall-bench-config"));
    qputenv("TZ", "America/New_York");
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
