// Store.add into a Book of 100,000 lines, the save included: what a user waits for
// after pressing Return in the transaction editor.
#include "model/moneyfile.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
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

void storeAdd(benchmark::State &state)
{
    QTemporaryDir temp;
    QFile file(temp.path() + QStringLiteral("/coinhall.json"));
    file.open(QIODevice::WriteOnly);
    file.write(MoneyFile::encode(generatedBook(int(state.range(0)))));
    file.close();
    Store store({temp.path()});
    const Account account = store.book().accounts[0];
    int i = 0;
    for (auto _ : state) {
        Transaction t;
        t.date = Instant::fromSecs(1735689600 - 1800 - 3600 * (i++ % 1000)); // lands among the newest lines
        t.accountID = account.id;
        t.amount = Decimal(-12);
        t.payee = QStringLiteral("Corner Grocery");
        t.category = QStringLiteral("Groceries");
        std::ignore = store.add(t);
    }
    state.counters["lines"] = double(store.book().transactions.size());
}
BENCHMARK(storeAdd)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

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
