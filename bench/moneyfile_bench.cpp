// Saving and loading the money file at 10,000, 100,000 and 1,000,000 transactions,
// and the peak memory of loading the largest one.

#include "model/moneyfile.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <string>

namespace {

// A Book as a busy user might have after some years: four accounts, a few hundred
// payees, the default categories, mostly empty notes, some transfers, many lines
// imported from the bank. Deterministic, so every run measures the same bytes.
class BookMaker
{
public:
    Book make(int transactionCount)
    {
        Book book;
        const char *accountNames[] = {"Everyday checking", "Savings", "Visa", "PayPal"};
        const AccountKind kinds[] = {AccountKind::checking, AccountKind::savings, AccountKind::credit,
                                     AccountKind::payment};
        for (int i = 0; i < 4; ++i)
            book.accounts.push_back({uuid(), QString::fromUtf8(accountNames[i]), kinds[i], amount(500000), false});

        const std::vector<QString> payees = payeeList();
        std::vector<QString> spending, income;
        for (const Category &c : book.categories)
            (c.income ? income : spending).push_back(c.name);
        spending.pop_back(); // "Transfer" is only for transfers

        book.transactions.reserve(std::size_t(transactionCount));
        std::int64_t when = Instant::fromIso("2025-06-30T18:00:00Z")->secs();
        while (int(book.transactions.size()) < transactionCount) {
            when -= 600 + std::int64_t(m_random() % 7200);
            const int roll = int(m_random() % 100);
            Transaction t;
            t.id = uuid();
            t.date = Instant::fromSecs(when);
            t.accountID = book.accounts[m_random() % 4].id;
            t.cleared = roll % 3 != 0;
            if (roll < 4 && int(book.transactions.size()) + 2 <= transactionCount) {
                Transaction other = t;
                other.id = uuid();
                other.accountID = book.accounts[(m_random() % 3 + 1) % 4].id;
                t.kind = other.kind = TxKind::transfer;
                t.category = other.category = QStringLiteral("Transfer");
                t.payee = QStringLiteral("Transfer");
                other.payee = t.payee;
                t.amount = amount(-int(m_random() % 100000) - 100);
                other.amount = -t.amount;
                t.transferPairID = other.id;
                other.transferPairID = t.id;
                book.transactions.push_back(t);
                book.transactions.push_back(other);
                continue;
            }
            const bool isIncome = roll < 14;
            t.kind = isIncome ? TxKind::deposit : TxKind::expense;
            t.payee = payees[m_random() % payees.size()];
            t.category = isIncome ? income[m_random() % income.size()] : spending[m_random() % spending.size()];
            const int cents = 100 + int(m_random() % (isIncome ? 400000 : 25000));
            t.amount = amount(isIncome ? cents : -cents);
            if (roll % 17 == 0)
                t.note = QStringLiteral("Split with Sam, paid back later");
            if (roll < 60)
                t.importHash = hexHash();
            book.transactions.push_back(t);
        }

        for (int i = 0; i < 12; ++i) {
            Bill bill;
            bill.id = uuid();
            bill.name = payees[std::size_t(i) * 7];
            bill.amount = amount(2000 + i * 1500);
            bill.due = Instant::fromIso("2025-07-01T09:00:00Z")->addSecs(i * 86400);
            bill.accountID = book.accounts[0].id;
            bill.website = QStringLiteral("https://example.com/pay");
            for (int m = 0; m < 24; ++m)
                bill.history.push_back(
                    {bill.due.addSecs(-(24 - m) * 2629800), bill.amount, bill.due.addSecs(-(24 - m) * 2629800)});
            book.bills.push_back(bill);
        }
        for (int i = 0; i < 20; ++i) {
            Royalty r;
            r.id = uuid();
            r.payer = QStringLiteral("DistroKid");
            r.work = QStringLiteral("Night Drive (single)");
            r.period = QStringLiteral("Q%1 2024").arg(i % 4 + 1);
            r.expectedAmount = amount(12000 + i * 100);
            r.expectedDate = Instant::fromIso("2025-01-15T12:00:00Z")->addSecs(i * 86400 * 30);
            if (i % 2 == 0) {
                r.status = RoyaltyStatus::received;
                r.receivedAmount = amount(11800 + i * 100);
                r.receivedDate = r.expectedDate;
                r.accountID = book.accounts[0].id;
            }
            book.royalties.push_back(r);
        }
        return book;
    }

private:
    QUuid uuid()
    {
        const std::uint64_t a = m_random(), b = m_random();
        return QUuid(uint(a >> 32), ushort(a >> 16), ushort((a & 0x0FFF) | 0x4000), uchar(0x80 | ((b >> 56) & 0x3F)),
                     uchar(b >> 48), uchar(b >> 40), uchar(b >> 32), uchar(b >> 24), uchar(b >> 16), uchar(b >> 8),
                     uchar(b));
    }

    static Decimal amount(int cents)
    {
        char text[32];
        std::snprintf(text, sizeof text, "%s%d.%02d", cents < 0 ? "-" : "", std::abs(cents) / 100,
                      std::abs(cents) % 100);
        return *Decimal::fromString(std::string_view(text));
    }

    QString hexHash()
    {
        static const char digits[] = "0123456789abcdef";
        QString text(64, Qt::Uninitialized);
        for (int i = 0; i < 64; i += 16) {
            std::uint64_t r = m_random();
            for (int j = 0; j < 16; ++j, r >>= 4)
                text[i + j] = QLatin1Char(digits[r & 0xF]);
        }
        return text;
    }

    static std::vector<QString> payeeList()
    {
        static const char *const names[] = {
            "Whole Foods",
            "Trader Joe's",
            "Shell",
            "Chevron",
            "Amazon",
            "Target",
            "Costco",
            "Spotify",
            "Netflix",
            "Adobe",
            "DigitalOcean",
            "GitHub",
            "Verizon",
            "Comcast",
            "Con Edison",
            "State Farm",
            "Blue Bottle Coffee",
            "Chipotle",
            "Sweetgreen",
            "Uber",
            "Lyft",
            "Guitar Center",
            "Sweetwater",
            "Bandcamp",
            "DistroKid",
            "ASCAP",
            "BMI",
            "Etsy",
            "Stripe",
            "Gumroad",
            "Apple",
            "Google",
            "Walgreens",
            "CVS",
            "Home Depot",
            "IKEA",
            "Best Buy",
            "B&H Photo",
            "Delta",
            "Airbnb",
            "Joe's Pizza",
            "Café Olé",
            "Landlord LLC",
            "IRS",
            "Chase Card Services",
            "Planet Fitness",
            "Mailchimp",
            "Squarespace",
            "Dropbox",
            "Zoom",
        };
        static const char *const places[] = {"", " #1204", " Brooklyn", " Online"};
        std::vector<QString> list;
        for (const char *place : places)
            for (const char *name : names)
                list.push_back(QString::fromUtf8(name) + QString::fromUtf8(place));
        return list; // 200 payees
    }

    std::mt19937_64 m_random{20250630};
};

const QByteArray &fileOf(int transactionCount)
{
    static std::map<int, QByteArray> files;
    QByteArray &file = files[transactionCount];
    if (file.isEmpty())
        file = MoneyFile::encode(BookMaker().make(transactionCount));
    return file;
}

void BM_Encode(benchmark::State &state)
{
    const Book book = BookMaker().make(int(state.range(0)));
    qsizetype size = 0;
    for (auto _ : state) {
        const QByteArray file = MoneyFile::encode(book);
        size = file.size();
        benchmark::DoNotOptimize(file.constData());
    }
    state.counters["fileMB"] = double(size) / 1e6;
    state.SetBytesProcessed(std::int64_t(state.iterations()) * size);
}

void BM_Decode(benchmark::State &state)
{
    const QByteArray &file = fileOf(int(state.range(0)));
    std::optional<MoneyFile::Decoded> decoded;
    for (auto _ : state) {
        decoded = MoneyFile::decode(std::string_view(file.constData(), std::size_t(file.size())));
        if (!decoded->book) {
            state.SkipWithError(decoded->error.toStdString().c_str());
            break;
        }
        benchmark::DoNotOptimize(decoded->book->transactions.data());
        state.PauseTiming(); // freeing the Book is not part of loading it
        decoded.reset();
        state.ResumeTiming();
    }
    state.counters["fileMB"] = double(file.size()) / 1e6;
    state.SetBytesProcessed(std::int64_t(state.iterations()) * file.size());
}

double statusMB(const char *field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::stod(line.substr(std::strlen(field))) / 1024.0;
    return 0;
}

// Peak memory of loading the file as the Store does: read from disk, then decode.
// The high-water mark is reset just before, so "peakMB" is what loading adds to
// the process: the file's bytes, the Book and everything in between.
void BM_DecodePeakMemory(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("coinhall.json"));
    {
        QFile out(path);
        out.open(QIODevice::WriteOnly);
        out.write(MoneyFile::encode(BookMaker().make(int(state.range(0)))));
    }
    malloc_trim(0);
    double fileMB = 0, peakMB = 0;
    for (auto _ : state) {
        const double baseMB = statusMB("VmRSS:");
        std::ofstream("/proc/self/clear_refs") << "5"; // resets VmHWM to the current size
        {
            QFile in(path);
            in.open(QIODevice::ReadOnly);
            const QByteArray file = in.readAll();
            MoneyFile::Decoded decoded =
                MoneyFile::decode(std::string_view(file.constData(), std::size_t(file.size())));
            if (!decoded.book)
                state.SkipWithError(decoded.error.toStdString().c_str());
            fileMB = double(file.size()) / (1024.0 * 1024.0);
        }
        peakMB = statusMB("VmHWM:") - baseMB;
        malloc_trim(0);
    }
    state.counters["fileMiB"] = fileMB;
    state.counters["peakMiB"] = peakMB;
    state.counters["peakPerFile"] = peakMB / fileMB;
}

} // namespace

BENCHMARK(BM_Encode)->Arg(10000)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Encode)->Arg(1000000)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Decode)->Arg(10000)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Decode)->Arg(1000000)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodePeakMemory)->Arg(1000000)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
