// Bills of the Store: the clock, the schedule questions and the payments.
#include "store/store.h"

#include "model/money.h"
#include "model/repeat.h"

#include <algorithm>

namespace {

// Steps dueDates walks at most: a weekly bill is followed for almost eight years.
constexpr int dueDateSteps = 400;

} // namespace

void Store::setClock(std::function<Instant()> now)
{
    m_clock = std::move(now);
    m_sums.reset();
}

Instant Store::now() const
{
    return m_clock ? m_clock() : Instant::now();
}

Instant Store::startOfToday() const
{
    return Calendar::startOfDay(now());
}

std::vector<Bill> Store::activeBills() const
{
    std::vector<Bill> active;
    std::copy_if(m_book.bills.begin(), m_book.bills.end(), std::back_inserter(active),
                 [](const Bill &b) { return b.active; });
    std::stable_sort(active.begin(), active.end(), [](const Bill &a, const Bill &b) { return a.due < b.due; });
    return active;
}

std::vector<Bill> Store::upcomingBills(int days) const
{
    const Instant end = Calendar::startOfDay(now(), days);
    std::vector<Bill> upcoming = activeBills();
    // Sorted by due date, so the bills due too late are all at the end.
    upcoming.erase(std::find_if(upcoming.begin(), upcoming.end(), [&](const Bill &b) { return b.due > end; }),
                   upcoming.end());
    return upcoming;
}

bool Store::isOverdue(const Bill &bill) const
{
    return bill.active && bill.due < startOfToday();
}

std::vector<Instant> Store::dueDates(const Bill &bill, const ClosedRange &range) const
{
    std::vector<Instant> dates;
    std::optional<Instant> due = bill.due;
    for (int step = 0; step < dueDateSteps && due && *due <= range.upper; ++step) {
        if (*due >= range.lower)
            dates.push_back(*due);
        due = next(bill.repeats, *due, bill.yearDates);
    }
    return dates;
}

Saved Store::pay(const Bill &passed, std::optional<Decimal> amount, Instant on, std::optional<QUuid> accountID)
{
    settle();
    // A copy: the caller may hand in the stored record itself, which changes below.
    const Bill bill = passed;
    if (findById(m_book.bills, bill.id) == m_book.bills.end())
        return {};
    // Paid is paid: a sign typed with the amount does not turn it into money received.
    const Decimal paid = amount.value_or(bill.amount).magnitude();
    if (!accountID)
        accountID = bill.accountID;
    if (!accountID) {
        const std::vector<Account> active = activeAccounts();
        if (!active.empty())
            accountID = active.front().id;
    }
    Step step(*this);
    {
        OneWrite once(*this);
        if (accountID) {
            Transaction payment;
            payment.date = on;
            payment.accountID = *accountID;
            payment.amount = paid.negated();
            payment.payee = bill.name;
            payment.category = bill.category;
            payment.note = QStringLiteral("Bill payment");
            payment.cleared = true;
            payment.kind = TxKind::bill;
            m_book.transactions.push_back(std::move(payment));
            sortNewestFirst(1);
        }
        const auto stored = findById(m_book.bills, bill.id);
        if (stored != m_book.bills.end()) {
            stored->history.push_back({on, paid, bill.due});
            // From the due date, not the day paid, so paying early or late keeps the schedule.
            if (const auto following = next(bill.repeats, bill.due, bill.yearDates))
                stored->due = *following;
            else
                stored->active = false;
            assigned();
        }
    }
    return done(tr("Paid %1: %2.").arg(bill.name, Money::s(paid)));
}

Saved Store::skip(const Bill &bill)
{
    settle();
    Step step(*this);
    nameStep(tr("Skip %1").arg(bill.name));
    const auto stored = findById(m_book.bills, bill.id);
    if (stored == m_book.bills.end())
        return {};
    if (const auto following = next(bill.repeats, bill.due, bill.yearDates))
        stored->due = *following;
    else
        stored->active = false;
    assigned();
    return done();
}

Saved Store::save(const Bill &bill)
{
    settle();
    Step step(*this);
    upsertById(m_book.bills, bill);
    assigned();
    return done(tr("Saved bill %1.").arg(bill.name));
}

Saved Store::deleteBill(const Bill &bill)
{
    settle();
    Step step(*this);
    nameStep(tr("Delete bill %1").arg(bill.name));
    if (!eraseById(m_book.bills, bill.id))
        return {};
    assigned();
    return done();
}
