// Store.add into a Book of 100,000 lines, the save included: what a user waits for
// after pressing Return in the transaction editor; and the undo and redo of that add
// and of a deletion, each saved as the change itself is.
#include "model/moneyfile.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <memory>
#include <tuple>

namespace {

Book generatedBook(int lines)
{
    Book book;
    for (const char *name : {"Main checking", "Savings", "Visa", "Studio"})
        book.accounts.push_back({newId(), QString::fromLatin1(name), AccountKind::checking, Decimal(1000), false});
    const QStringList payees = {QStringLiteral("Corner Grocery"), QStringLiteral("Bandcamp"),
                                QStringLiteral("Hosting Co"),     QStringLiteral("Coffee Bar"),
                                QStringLiteral("Landlord"),       QStringLiteral("Music Store")};
    const Instant start = Instant::fromSecs(1735689600); // 2025-01-01
    book.transactions.reserve(size_t(lines));
    for (int i = 0; i < lines; ++i) {
        Transaction t;
        t.date = start.addSecs(-std::int64_t(i) * 3600);
        t.accountID = book.accounts[size_t(i % 4)].id;
        t.amount = *Decimal::fromString(std::to_string(-(i % 9000) - 1) + "." + std::to_string(10 + i % 90));
        t.payee = payees[i % payees.size()];
        t.category = book.categories[size_t(8 + i % 17)].name;
        t.cleared = i % 3 != 0;
        book.transactions.push_back(std::move(t));
    }
    return book;
}

// A Store on a money file of `lines` generated lines, in a folder of its own.
struct BenchStore
{
    explicit BenchStore(int lines)
    {
        QFile file(temp.path() + QStringLiteral("/coinhall.json"));
        file.open(QIODevice::WriteOnly);
        file.write(MoneyFile::encode(generatedBook(lines)));
        file.close();
        store = std::make_unique<Store>(StoreOptions{temp.path()});
    }
    // A line among the newest ones, as a user adds them.
    Transaction newLine()
    {
        Transaction t;
        t.date = Instant::fromSecs(1735689600 - 1800 - 3600 * (added++ % 1000));
        t.accountID = store->book().accounts[0].id;
        t.amount = Decimal(-12);
        t.payee = QStringLiteral("Corner Grocery");
        t.category = QStringLiteral("Groceries");
        return t;
    }

    QTemporaryDir temp;
    std::unique_ptr<Store> store;
    int added = 0;
};

void storeAdd(benchmark::State &state)
{
    BenchStore bench(int(state.range(0)));
    for (auto _ : state)
        std::ignore = bench.store->add(bench.newLine());
    state.counters["lines"] = double(bench.store->book().transactions.size());
}
BENCHMARK(storeAdd)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

// Undo (0) or redo (1) of an add, or of the deletion of the oldest line (2, 3): the
// change itself is made untimed before each.
void storeUndoRedo(benchmark::State &state)
{
    BenchStore bench(int(state.range(0)));
    Store &store = *bench.store;
    const bool redo = state.range(1) % 2 == 1;
    const bool deletion = state.range(1) >= 2;
    for (auto _ : state) {
        state.PauseTiming();
        std::ignore = deletion ? store.deleteTransaction(store.book().transactions.back()) : store.add(bench.newLine());
        if (redo)
            store.undo();
        state.ResumeTiming();
        if (!(redo ? store.redo() : store.undo()))
            state.SkipWithError("nothing to undo or redo");
    }
}
BENCHMARK(storeUndoRedo)
    ->ArgNames({"lines", "what"})
    ->Args({100000, 0})
    ->Args({100000, 1})
    ->Args({100000, 2})
    ->Args({100000, 3})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(20);

} // namespace

int main(int argc, char **argv)
{
    qputenv("XDG_CONFIG_HOME", QByteArray("/tmp/coinhall-bench-config"));
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
