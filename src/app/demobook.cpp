#include "demobook.h"

#include <QDateTime>
#include <QTime>

#include <algorithm>
#include <cstdint>

namespace {

// A small fixed-seed generator, so the pictures do not change from run to run.
class Dice
{
public:
    // A whole number in [low, high].
    int between(int low, int high)
    {
        m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL;
        return low + int((m_state >> 33) % std::uint64_t(high - low + 1));
    }

private:
    std::uint64_t m_state = 20240607;
};

Decimal cents(int value)
{
    return Decimal(value) / Decimal(100);
}

Instant on(QDate day, int hour = 12)
{
    return Instant::fromDateTime(QDateTime(day, QTime(hour, 0)));
}

struct Spend
{
    const char *payee;
    const char *category;
    int low, high; // cents
};

} // namespace

Book demoBook(QDate today)
{
    Book book;
    const Account checking{newId(), QStringLiteral("Harbor checking"), AccountKind::checking, Decimal(2180), false};
    const Account savings{newId(), QStringLiteral("Rainy-day savings"), AccountKind::savings, Decimal(6500), false};
    const Account card{newId(), QStringLiteral("Maple card"), AccountKind::credit, Decimal(-450), false};
    const Account paypal{newId(), QStringLiteral("PayPal"), AccountKind::payment, cents(31240), false};
    book.accounts = {checking, savings, card, paypal};

    Dice dice;
    auto add = [&](const Account &account, QDate day, Decimal amount, const char *payee, const char *category,
                   TxKind kind) {
        Transaction t;
        t.date = on(day, dice.between(8, 20));
        t.accountID = account.id;
        t.amount = amount;
        t.payee = QString::fromUtf8(payee);
        t.category = QString::fromUtf8(category);
        t.kind = kind;
        t.cleared = day < today.addDays(-3);
        book.transactions.push_back(t);
    };
    auto transfer = [&](const Account &from, const Account &to, QDate day, Decimal amount, const char *note) {
        Transaction out;
        out.date = on(day, 9);
        out.accountID = from.id;
        out.amount = -amount;
        out.payee = to.name;
        out.category = QStringLiteral("Transfer");
        out.note = QString::fromUtf8(note);
        out.kind = TxKind::transfer;
        out.cleared = true;
        Transaction in = out;
        in.id = newId();
        in.accountID = to.id;
        in.amount = amount;
        in.payee = from.name;
        out.transferPairID = in.id;
        in.transferPairID = out.id;
        book.transactions.push_back(out);
        book.transactions.push_back(in);
    };

    static const Spend everyday[] = {
        {"Corner cafe", "Dining out", 350, 1450},    {"Green Basket Market", "Groceries", 2400, 11800},
        {"Shell", "Car & gas", 3200, 6400},          {"Sweetwater", "Studio gear", 1999, 38900},
        {"Noodle Bar", "Dining out", 1600, 4800},    {"Target", "Shopping", 1200, 9400},
        {"CVS Pharmacy", "Health", 800, 4200},       {"Guitar Center", "Studio gear", 899, 12900},
        {"Meta Ads", "Marketing & ads", 2000, 7500}, {"Trader Joe's", "Groceries", 1800, 9600},
    };

    const QDate start = today.addMonths(-6);
    for (QDate month(start.year(), start.month(), 1); month <= today; month = month.addMonths(1)) {
        auto day = [&](int d) { return QDate(month.year(), month.month(), std::min(d, month.daysInMonth())); };
        auto inRange = [&](QDate d) { return d >= start && d <= today; };

        // Regular income and the fixed costs of a month.
        if (inRange(day(3)))
            add(checking, day(3), cents(dice.between(150000, 260000)), "Lakeside Web Studio", "Web design clients",
                TxKind::deposit);
        if (inRange(day(1)))
            add(checking, day(1), Decimal(-1450), "Riverside Properties", "Rent / mortgage", TxKind::bill);
        if (inRange(day(12)))
            add(checking, day(12), cents(-dice.between(6500, 7800)), "Verizon", "Phone & internet", TxKind::bill);
        if (inRange(day(18)))
            add(card, day(18), cents(-1699), "Ableton", "Subscriptions", TxKind::expense);
        if (inRange(day(20)))
            add(checking, day(20), cents(-dice.between(9000, 14000)), "City Power & Water", "Bills & Utilities",
                TxKind::bill);
        if (inRange(day(15)))
            transfer(checking, savings, day(15), Decimal(300), "Monthly savings");
        if (inRange(day(25)))
            transfer(checking, card, day(25), cents(dice.between(40000, 90000)), "Card payment");
        if (inRange(day(6)))
            add(paypal, day(6), cents(dice.between(24000, 52000)), "Bandcamp", "Music sales", TxKind::deposit);
        if (inRange(day(22)))
            transfer(paypal, checking, day(22), Decimal(250), "PayPal to bank");

        // Gigs and lessons come and go.
        for (int gig = dice.between(1, 3); gig > 0; --gig) {
            const QDate d = day(dice.between(1, 28));
            if (inRange(d))
                add(checking, d, Decimal(dice.between(2, 9) * 50), "The Blue Room", "Gigs & bookings", TxKind::deposit);
        }
        // Everyday spending, mostly on the card.
        for (int n = dice.between(17, 21); n > 0; --n) {
            const Spend &s = everyday[dice.between(0, int(std::size(everyday)) - 1)];
            const QDate d = day(dice.between(1, 28));
            if (inRange(d))
                add(dice.between(0, 3) == 0 ? checking : card, d, cents(-dice.between(s.low, s.high)), s.payee,
                    s.category, TxKind::expense);
        }
    }
    add(paypal, today.addDays(-40), cents(61875), "DistroKid", "Royalties", TxKind::royalty);
    add(checking, today.addDays(-9), cents(12000), "Amazon", "Refunds", TxKind::deposit);

    std::stable_sort(book.transactions.begin(), book.transactions.end(),
                     [](const Transaction &a, const Transaction &b) { return a.date > b.date; });

    auto bill = [&](const char *name, int amountCents, QDate due, Repeat repeats, const Account &from,
                    const char *category, const char *website, bool autopay = false) {
        Bill b;
        b.name = QString::fromUtf8(name);
        b.amount = cents(amountCents);
        b.due = on(due, 9);
        b.repeats = repeats;
        b.accountID = from.id;
        b.category = QString::fromUtf8(category);
        b.website = QString::fromUtf8(website);
        b.autopay = autopay;
        book.bills.push_back(b);
    };
    bill("Rent", 145000, today.addDays(6), Repeat::monthly, checking, "Rent / mortgage", "");
    bill("Verizon", 7200, today.addDays(-3), Repeat::monthly, checking, "Phone & internet", "verizon.com");
    bill("City Power & Water", 11800, today.addDays(11), Repeat::monthly, checking, "Bills & Utilities", "");
    bill("Ableton", 1699, today.addDays(2), Repeat::monthly, card, "Subscriptions", "ableton.com", true);
    bill("Car insurance", 38400, today.addDays(24), Repeat::quarterly, checking, "Insurance", "geico.com");
    bill("Web hosting", 14400, today.addDays(70), Repeat::yearly, card, "Software & hosting", "");

    auto royalty = [&](const char *payer, RoyaltySource source, const char *work, const char *period, int expectedCents,
                       QDate expected, Repeat repeats, RoyaltyStatus status) {
        Royalty r;
        r.payer = QString::fromUtf8(payer);
        r.source = source;
        r.work = QString::fromUtf8(work);
        r.period = QString::fromUtf8(period);
        r.expectedAmount = cents(expectedCents);
        r.expectedDate = on(expected, 9);
        r.repeats = repeats;
        r.status = status;
        r.accountID = paypal.id;
        return r;
    };
    book.royalties.push_back(royalty("BMI", RoyaltySource::pro, "Night Ferry (album)", "Q2", 42000, today.addDays(9),
                                     Repeat::quarterly, RoyaltyStatus::expected));
    book.royalties.push_back(royalty("SoundExchange", RoyaltySource::neighboring, "Night Ferry (album)", "H1", 18550,
                                     today.addDays(-12), Repeat::once, RoyaltyStatus::disputed));
    book.royalties.push_back(royalty("Northlight Films", RoyaltySource::sync, "\"Low Tide\" in a trailer", "One-off",
                                     150000, today.addDays(30), Repeat::once, RoyaltyStatus::expected));
    Royalty received = royalty("DistroKid", RoyaltySource::distributor, "Catalog streams", "Q1", 60000,
                               today.addDays(-40), Repeat::quarterly, RoyaltyStatus::received);
    received.receivedAmount = cents(61875);
    received.receivedDate = on(today.addDays(-40), 9);
    book.royalties.push_back(received);
    return book;
}
