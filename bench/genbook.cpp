// Writes a synthetic money file for the whole-process comparison (bench/compare.sh):
//
//     genbook N FILE
//
// N events over twenty years (a transfer is one event and two lines of the file):
// six accounts with opening balances, a few hundred payees, the 26 default
// categories, about 5% transfers, about 15% of the rest money in, a few amounts with
// three places, uncleared lines mostly in the last month. The same N gives the same
// bytes on any machine: the random stream and the amounts are integer arithmetic only.

#include "model/moneyfile.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// splitmix64: small, fast and the same everywhere.
class Random
{
public:
    std::uint64_t next()
    {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    int below(int n) { return int(next() % std::uint64_t(n)); }
    QUuid uuid()
    {
        const std::uint64_t a = next(), b = next();
        return QUuid(uint(a >> 32), ushort(a >> 16), ushort((a & 0x0FFF) | 0x4000), uchar(0x80 | ((b >> 56) & 0x3F)),
                     uchar(b >> 48), uchar(b >> 40), uchar(b >> 32), uchar(b >> 24), uchar(b >> 16), uchar(b >> 8),
                     uchar(b));
    }

private:
    std::uint64_t m_state = 20061201;
};

struct Kind
{
    const char *category;
    int weight;                // among its side
    int median;                // whole dollars
    std::vector<int> accounts; // weights over the six accounts
    std::vector<const char *> payees;
    int branches; // numbered branches of each payee ("Safeway #7"), 0 for none
};

const char *const accountNames[] = {"Checking", "Savings", "Credit card", "Cash", "Business", "PayPal"};
const AccountKind accountKinds[] = {AccountKind::checking, AccountKind::savings,  AccountKind::credit,
                                    AccountKind::cash,     AccountKind::business, AccountKind::payment};
const long long openings[] = {245000, 800000, -61235, 12000, 150000, 8520}; // cents

const std::vector<Kind> incomeKinds = {
    {"Royalties", 20, 60, {3, 0, 0, 0, 5, 2}, {"DistroKid", "TuneCore", "CD Baby", "BMI", "ASCAP", "SoundExchange"}, 0},
    {"Software sales", 20, 25, {0, 0, 0, 0, 6, 3}, {"Stripe", "Gumroad", "Paddle", "App Store Connect"}, 0},
    {"Music sales", 18, 9, {0, 0, 0, 1, 3, 6}, {"Bandcamp", "iTunes Store", "Beatport", "Merch table"}, 0},
    {"Gigs & bookings", 12, 320, {5, 0, 0, 2, 0, 3}, {"The Blue Note", "Sofar Sounds", "Club: Mercury", "GigSalad"}, 0},
    {"Web design clients",
     8,
     1200,
     {3, 0, 0, 0, 7, 0},
     {"Acme Bakery", "Northwind Traders", "Müller Tontechnik GmbH"},
     0},
    {"Paycheck", 10, 3000, {1, 0, 0, 0, 0, 0}, {"ACME Corp Payroll"}, 0},
    {"Refunds", 8, 35, {4, 0, 5, 0, 1, 0}, {"Amazon Refund", "Target Refund", "IRS Tax Refund"}, 0},
    {"Other income", 4, 50, {4, 3, 0, 1, 0, 2}, {"Interest Paid", "Cashback Reward", "Venmo from Alex"}, 0},
};
const std::vector<Kind> spendingKinds = {
    {"Rent / mortgage", 2, 1350, {1, 0, 0, 0, 0, 0}, {"Oakwood Apartments Rent"}, 0},
    {"Bills & Utilities", 3, 85, {6, 0, 4, 0, 0, 0}, {"PG&E Electric", "City Water Dept", "SoCal Gas Co"}, 0},
    {"Phone & internet", 2, 70, {5, 0, 5, 0, 0, 0}, {"Comcast Xfinity", "Verizon Wireless", "T-Mobile"}, 0},
    {"Insurance", 1, 140, {8, 0, 2, 0, 0, 0}, {"GEICO", "State Farm", "Lemonade Renters Insurance"}, 0},
    {"Car & gas", 7, 42, {3, 0, 6, 1, 0, 0}, {"Shell", "Chevron", "Arco", "Costco Gas"}, 8},
    {"Groceries", 18, 48, {5, 0, 4, 1, 0, 0}, {"Safeway", "Trader Joe's", "Whole Foods Market", "Aldi"}, 12},
    {"Dining out",
     16,
     19,
     {2, 0, 5, 2, 0, 1},
     {"Starbucks", "Chipotle", "Café Olé", "Joe's \"Best\" Diner, LLC", "Pho 88", "Señor Taco"},
     10},
    {"Subscriptions", 6, 12, {1, 0, 8, 0, 1, 0}, {"Netflix", "Spotify", "Apple.com/bill", "Patreon"}, 0},
    {"Software & hosting", 4, 22, {0, 0, 3, 0, 7, 0}, {"GitHub", "DigitalOcean", "Figma", "Cloudflare"}, 0},
    {"Studio gear", 3, 95, {0, 0, 5, 0, 5, 0}, {"Sweetwater", "Guitar Center", "Reverb.com", "Thomann"}, 0},
    {"Marketing & ads", 2, 50, {0, 0, 2, 0, 8, 0}, {"Google Ads", "Meta Platforms", "Vistaprint"}, 0},
    {"Health", 3, 40, {5, 0, 5, 0, 0, 0}, {"Walgreens", "CVS Pharmacy", "City Dental Care"}, 4},
    {"Taxes", 1, 700, {7, 0, 0, 0, 3, 0}, {"IRS", "Franchise Tax Board"}, 0},
    {"Debt payments", 1, 280, {1, 0, 0, 0, 0, 0}, {"Sallie Mae", "Honda Financial Services"}, 0},
    {"Shopping", 12, 35, {3, 0, 6, 0, 0, 1}, {"Amazon", "Target", "IKEA", "Home Depot", "REI", "Best Buy"}, 6},
    {"Fees & charges", 2, 8, {5, 0, 3, 0, 1, 1}, {"Bank Service Fee", "ATM Fee", "PayPal Fee"}, 0},
    {"Other spending", 5, 28, {3, 0, 3, 2, 0, 2}, {"Post Office", "Dry Cleaners", "Barber Shop", "Venmo to Sam"}, 0},
};
const char *const billCategories[] = {"Rent / mortgage", "Bills & Utilities", "Phone & internet", "Insurance"};

struct Route
{
    int from, to, weight;
};
const Route routes[] = {{0, 2, 35}, {0, 1, 15}, {1, 0, 10}, {4, 0, 15}, {5, 0, 10}, {0, 3, 15}};

const char *const notes[] = {"Split with Sam", "Reimbursable", "Client dinner", "Gift",
                             "Tour merch",     "Invoice 2041", "Paid in cash",  "Band fund"};

// Percent of the median an amount comes out at: most near it, a few far off.
const int spread[] = {22, 35, 45, 55, 65, 75, 85, 92, 100, 108, 120, 140, 170, 220, 320, 520};

int pick(Random &random, const std::vector<int> &weights)
{
    int total = 0;
    for (int w : weights)
        total += w;
    int r = random.below(total);
    for (size_t i = 0; i < weights.size(); ++i)
        if ((r -= weights[i]) < 0)
            return int(i);
    return 0;
}

Decimal amountNear(Random &random, int median)
{
    const long long cents = std::max(1LL, (long long)median * spread[random.below(16)] + random.below(median + 1));
    if (random.below(1000) < 3) // a few amounts in thousandths, as some fuel and currency lines are
        return Decimal(cents * 10 + 1 + random.below(9)) * Decimal::fromString(std::string_view("0.001")).value();
    return Decimal((long long)cents) * Decimal::fromString(std::string_view("0.01")).value();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3 || std::atol(argv[1]) < 1) {
        std::fprintf(stderr, "usage: genbook N FILE\n");
        return 2;
    }
    const long long n = std::atol(argv[1]);
    Random random;
    Book book;
    for (int i = 0; i < 6; ++i)
        book.accounts.push_back({random.uuid(), QString::fromUtf8(accountNames[i]), accountKinds[i],
                                 Decimal(openings[i]) * Decimal::fromString(std::string_view("0.01")).value(), false});

    // Payee names, made once so that equal names are one text, as the money file reads them.
    auto payeesOf = [](const Kind &kind) {
        std::vector<QString> names;
        for (const char *p : kind.payees) {
            names.push_back(QString::fromUtf8(p));
            for (int b = 1; b <= kind.branches; ++b)
                names.push_back(QString::fromUtf8(p) + QStringLiteral(" #%1").arg(b * 17 % 97));
        }
        return names;
    };
    std::vector<std::vector<QString>> incomePayees, spendingPayees;
    std::vector<int> incomeWeights, spendingWeights, routeWeights;
    for (const Kind &k : incomeKinds) {
        incomePayees.push_back(payeesOf(k));
        incomeWeights.push_back(k.weight);
    }
    for (const Kind &k : spendingKinds) {
        spendingPayees.push_back(payeesOf(k));
        spendingWeights.push_back(k.weight);
    }
    for (const Route &r : routes)
        routeWeights.push_back(r.weight);

    // Twenty years of days, 2006-12-01 to 2026-11-30, lines between 08:00 and 21:00 UTC.
    const std::int64_t firstDay = 1164931200; // 2006-12-01T00:00:00Z
    const std::int64_t days = 7305;
    const QString transferCategory = QStringLiteral("Transfer");
    book.transactions.reserve(size_t(n + n / 10));
    for (long long i = 0; i < n; ++i) {
        const std::int64_t day = i * days / n;
        const Instant date = Instant::fromSecs((firstDay + day * 86400) + 8 * 3600 + random.below(13 * 3600));
        const bool recent = day >= days - 30;
        const bool cleared = recent ? random.below(2) == 0 : random.below(100) != 0;
        const QString note = random.below(100) < 8 ? QString::fromUtf8(notes[random.below(8)]) : QString();
        if (random.below(100) < 5) {
            const Route &r = routes[pick(random, routeWeights)];
            const Decimal amount = amountNear(random, r.from == 0 && r.to == 2 ? 400 : 150);
            Transaction out, in;
            out.id = random.uuid();
            in.id = random.uuid();
            out.date = in.date = date;
            out.accountID = book.accounts[size_t(r.from)].id;
            in.accountID = book.accounts[size_t(r.to)].id;
            out.amount = amount.negated();
            in.amount = amount;
            out.payee = QStringLiteral("Transfer to ") + book.accounts[size_t(r.to)].name;
            in.payee = QStringLiteral("Transfer from ") + book.accounts[size_t(r.from)].name;
            out.category = in.category = transferCategory;
            out.note = in.note = note;
            out.cleared = in.cleared = true;
            out.kind = in.kind = TxKind::transfer;
            out.transferPairID = in.id;
            in.transferPairID = out.id;
            book.transactions.push_back(std::move(out));
            book.transactions.push_back(std::move(in));
            continue;
        }
        const bool income = random.below(100) < 15;
        const int k = pick(random, income ? incomeWeights : spendingWeights);
        const Kind &kind = income ? incomeKinds[size_t(k)] : spendingKinds[size_t(k)];
        const std::vector<QString> &payees = income ? incomePayees[size_t(k)] : spendingPayees[size_t(k)];
        Transaction t;
        t.id = random.uuid();
        t.date = date;
        t.accountID = book.accounts[size_t(pick(random, kind.accounts))].id;
        t.amount = amountNear(random, kind.median);
        if (!income)
            t.amount = t.amount.negated();
        t.payee = payees[size_t(random.below(int(payees.size())))];
        t.category = QString::fromUtf8(kind.category);
        t.note = note;
        t.cleared = cleared;
        const bool bill = std::any_of(std::begin(billCategories), std::end(billCategories),
                                      [&](const char *c) { return t.category == QLatin1String(c); });
        t.kind = income ? (t.category == QLatin1String("Royalties") ? TxKind::royalty : TxKind::deposit)
                        : (bill && random.below(10) < 7 ? TxKind::bill : TxKind::expense);
        book.transactions.push_back(std::move(t));
    }
    // Newest first, as the Book keeps them; lines of one moment keep their order.
    std::stable_sort(book.transactions.begin(), book.transactions.end(),
                     [](const Transaction &a, const Transaction &b) { return a.date > b.date; });

    QFile file(QString::fromLocal8Bit(argv[2]));
    const QByteArray bytes = MoneyFile::encode(book);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "genbook: could not write %s\n", argv[2]);
        return 1;
    }
    std::printf("%lld events, %zu lines, %lld bytes\n", n, book.transactions.size(), (long long)bytes.size());
    return 0;
}
