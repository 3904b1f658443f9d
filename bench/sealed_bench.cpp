// Encrypted books beside plain ones at 100,000 lines: opening (the Store made on the
// money file, the passphrase given) and saving (Store::save, the atomic write included).
// The key derivation is timed on its own, since it is the one cost meant to be felt.
#include "model/moneyfile.h"
#include "store/sealedfile.h"
#include "store/store.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

const char passphrase[] = "tuba solo at the harbour";

std::shared_ptr<const Sealed::Secret> secret()
{
    return std::make_shared<const Sealed::Secret>(passphrase, sizeof passphrase - 1);
}

// The generated book of bench/genbook.cpp, as bench/compare.sh writes it.
QByteArray book100k()
{
    QFile file(QStringLiteral("/tmp/bench-data/book-100000.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A folder holding the book, encrypted (with the key cost the owner's books get) or not.
struct Books
{
    explicit Books(bool sealed)
    {
        QFile file(temp.path() + QStringLiteral("/coinhall.json"));
        file.open(QIODevice::WriteOnly);
        file.write(book100k());
        file.close();
        if (sealed) {
            Store store(StoreOptions{temp.path()});
            (void)store.encryptWith(*secret());
        }
        Store today(options(sealed)); // the day's backup made, outside the timing
    }
    StoreOptions options(bool sealed) const
    {
        StoreOptions o{temp.path()};
        if (sealed)
            o.passphrase = secret();
        return o;
    }
    QTemporaryDir temp;
};

void openBooks(benchmark::State &state)
{
    const bool sealed = state.range(0) != 0;
    Books books(sealed);
    for (auto _ : state) {
        Store store(books.options(sealed));
        if (store.book().transactions.size() < 100000)
            state.SkipWithError("the book did not open");
    }
}
BENCHMARK(openBooks)->ArgName("sealed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(8);

void deriveKey(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Sealed::Key::fresh(*secret()));
}
BENCHMARK(deriveKey)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(8);

void saveBooks(benchmark::State &state)
{
    const bool sealed = state.range(0) != 0;
    Books books(sealed);
    Store store(books.options(sealed));
    for (auto _ : state) {
        if (!store.save())
            state.SkipWithError("the save failed");
    }
}
BENCHMARK(saveBooks)->ArgName("sealed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(12);

// The same without the disk: the bytes of a save, and the Book from the bytes.
void encodeBytes(benchmark::State &state)
{
    const bool sealed = state.range(0) != 0;
    const QByteArray bytes = book100k();
    const Book book = *MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size()))).book;
    const auto key = Sealed::Key::fresh(*secret());
    for (auto _ : state) {
        const QByteArray plain = MoneyFile::encode(book);
        benchmark::DoNotOptimize(sealed ? Sealed::seal(plain, *key) : plain);
    }
}
BENCHMARK(encodeBytes)->ArgName("sealed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(12);

void decodeBytes(benchmark::State &state)
{
    const bool sealed = state.range(0) != 0;
    const auto key = Sealed::Key::fresh(*secret());
    const QByteArray plainFile = book100k();
    const QByteArray file = sealed ? Sealed::seal(plainFile, *key) : plainFile;
    for (auto _ : state) {
        QByteArray plain = file;
        if (sealed)
            Sealed::open(file, *key, &plain);
        benchmark::DoNotOptimize(MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size()))));
    }
}
BENCHMARK(decodeBytes)->ArgName("sealed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(12);

} // namespace

BENCHMARK_MAIN();
