// Royalties of the Store: what is on the way, what came in, and receiving it.
#include "store/store.h"

#include "model/money.h"
#include "model/repeat.h"

#include <QStringList>

#include <algorithm>

namespace {

bool pending(const Royalty &royalty)
{
    return royalty.status != RoyaltyStatus::received;
}

} // namespace

std::vector<Royalty> Store::pendingRoyalties() const
{
    std::vector<Royalty> waiting;
    std::copy_if(m_book.royalties.begin(), m_book.royalties.end(), std::back_inserter(waiting), pending);
    std::stable_sort(waiting.begin(), waiting.end(),
                     [](const Royalty &a, const Royalty &b) { return a.expectedDate < b.expectedDate; });
    return waiting;
}

Decimal Store::royaltiesExpected() const
{
    Decimal sum;
    for (const Royalty &r : m_book.royalties)
        if (pending(r))
            sum += r.expectedAmount;
    return sum;
}

Decimal Store::royaltiesReceivedThisYear() const
{
    const ClosedRange year = Calendar::yearRange(now());
    Decimal sum;
    for (const Royalty &r : m_book.royalties)
        if (r.status == RoyaltyStatus::received && r.receivedDate && year.contains(*r.receivedDate))
            sum += r.receivedAmount.value_or(Decimal());
    return sum;
}

Saved Store::receive(const Royalty &passed, const Decimal &amount, Instant on, std::optional<QUuid> accountID)
{
    settle();
    // A copy: the caller may hand in the stored record itself, which changes below.
    const Royalty royalty = passed;
    const auto stored = findById(m_book.royalties, royalty.id);
    if (stored == m_book.royalties.end())
        return {};
    if (!accountID)
        accountID = royalty.accountID;
    if (!accountID) {
        const std::vector<Account> active = activeAccounts();
        if (!active.empty())
            accountID = active.front().id;
    }
    Step step(*this);
    {
        OneWrite once(*this);
        stored->status = RoyaltyStatus::received;
        stored->receivedAmount = amount;
        stored->receivedDate = on;
        stored->accountID = accountID;
        assigned();

        if (accountID) {
            QStringList about;
            for (const QString &part : {royalty.work, royalty.period})
                if (!part.isEmpty())
                    about.append(part);
            Transaction deposit;
            deposit.date = on;
            deposit.accountID = *accountID;
            deposit.amount = amount.magnitude();
            deposit.payee = royalty.payer;
            deposit.category = QStringLiteral("Royalties");
            deposit.note = about.join(QStringLiteral(" · "));
            deposit.cleared = true;
            deposit.kind = TxKind::royalty;
            m_book.transactions.push_back(std::move(deposit));
            sortNewestFirst(1);
        }

        if (const auto following = next(royalty.repeats, royalty.expectedDate)) {
            Royalty upcoming = royalty;
            upcoming.id = newId();
            upcoming.status = RoyaltyStatus::expected;
            upcoming.receivedAmount.reset();
            upcoming.receivedDate.reset();
            upcoming.expectedDate = *following;
            upcoming.period.clear(); // the user names the next statement period
            m_book.royalties.push_back(std::move(upcoming));
            assigned();
        }
    }
    return done(tr("Logged %1 from %2.").arg(Money::s(amount), royalty.payer));
}

Saved Store::save(const Royalty &royalty)
{
    settle();
    Step step(*this);
    nameStep(tr("Save royalty %1").arg(royalty.payer));
    upsertById(m_book.royalties, royalty);
    assigned();
    return done();
}

Saved Store::deleteRoyalty(const Royalty &royalty)
{
    settle();
    Step step(*this);
    nameStep(tr("Delete royalty %1").arg(royalty.payer));
    if (!eraseById(m_book.royalties, royalty.id))
        return {};
    assigned();
    return done();
}
