// Ledger operations of the Store: transactions, transfers, balances, accounts.
#include "store/store.h"

#include "bankfiles/autocategory.h"
#include "model/money.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace {

bool newerFirst(const Transaction &a, const Transaction &b)
{
    return a.date > b.date;
}

// Moves the line at `from` back to `to`, the lines between one place on: as bytes, the
// way Qt's own containers move relocatable types, not a million moves of each member.
void moveBack(Transaction *to, Transaction *from)
{
    static_assert(QTypeInfo<Transaction>::isRelocatable);
    alignas(Transaction) std::byte held[sizeof(Transaction)];
    std::memcpy(held, static_cast<void *>(from), sizeof(Transaction));
    std::memmove(static_cast<void *>(to + 1), static_cast<const void *>(to), size_t(from - to) * sizeof(Transaction));
    std::memcpy(static_cast<void *>(to), held, sizeof(Transaction));
}

// Restores newest-first order after `appended` lines were added at the end.
//
// The result is always that of a stable sort by date, descending. When the lines
// before the new ones are in order (known, or checked when not), the new lines are
// sorted among themselves and merged in: a stable merge keeps an old line ahead of a
// new one with the same date, which is where a stable sort of the whole list puts it.
//
// Returns where the last line added landed.
size_t restoreOrder(std::vector<Transaction> &lines, size_t appended, bool inOrder)
{
    appended = std::min(appended, lines.size());
    const auto oldEnd = lines.end() - std::ptrdiff_t(appended);
    if (!inOrder && !std::is_sorted(lines.begin(), oldEnd, newerFirst)) {
        std::stable_sort(lines.begin(), lines.end(), newerFirst);
        return 0;
    }
    std::stable_sort(oldEnd, lines.end(), newerFirst);
    if (appended > 16) {
        std::inplace_merge(lines.begin(), oldEnd, lines.end(), newerFirst);
        return 0;
    }
    // A few lines (one change in the window) are each moved to their place: the merge
    // would first take a buffer as large as the whole list.
    size_t place = lines.size() - 1;
    for (auto line = oldEnd; line != lines.end(); ++line) {
        const auto to = std::upper_bound(lines.begin(), line, *line, newerFirst);
        moveBack(&*to, &*line);
        place = size_t(to - lines.begin());
    }
    return place;
}

} // namespace

namespace {

// A line as the status line and the Edit menu name it: "$4.50 · Corner cafe".
QString describe(const Transaction &line)
{
    return Money::s(line.amount.magnitude()) + QStringLiteral(" · ") + line.payee;
}

} // namespace

Saved Store::add(const Transaction &tx)
{
    // The balance sums follow one new line without going through all the others.
    std::optional<Sums> sums = std::exchange(m_sums, std::nullopt);
    settle();
    {
        Step step(*this);
        nameStep(tr("Add %1").arg(describe(tx)));
        OneWrite once(*this);
        m_book.transactions.push_back(tx);
        const bool inOrder = m_newestFirst;
        m_adding = Added{sortNewestFirst(1), 1};
        if (!inOrder) // the whole list was sorted: lines moved everywhere
            m_adding.reset();
        assigned();
        if (sums) {
            sums->added(tx, m_book.transactions);
            m_sums = std::move(sums);
        }
    }
    return done();
}

Saved Store::update(const Transaction &tx)
{
    settle();
    Step step(*this);
    nameStep(tr("Change %1").arg(describe(tx)));
    auto &lines = m_book.transactions;
    const auto found = findById(lines, tx.id);
    if (found == lines.end())
        return {};
    if (found->date == tx.date) {
        const size_t at = size_t(found - lines.begin());
        recordLines({{{at, *found}}, {{at, tx}}});
        *found = tx;
    } else {
        // Taken out and merged in again, as a new line: its place by date at once.
        eraseLines([id = tx.id](const Transaction &t) { return t.id == id; });
        lines.push_back(tx);
        sortNewestFirst(1);
    }
    assigned();
    return done();
}

Saved Store::setCleared(const Transaction &tx, bool cleared)
{
    Step step(*this);
    nameStep((cleared ? tr("Mark %1 cleared") : tr("Mark %1 pending")).arg(describe(tx)));
    Transaction changed = tx;
    changed.cleared = cleared;
    return update(changed);
}

Saved Store::save(const TransactionEdit &edit)
{
    // Only reads until add() or update(), which settle first: a background save may
    // read the Book too, and the balance sums are kept for add().
    Transaction tx;
    if (edit.id) {
        const std::optional<Transaction> stored = findById(std::as_const(m_book.transactions), *edit.id);
        // Gone while the editor was open: nothing left to change. A transfer side is
        // changed with its other side only (updateTransfer), never made income or spending.
        if (!stored || stored->kind == TxKind::transfer)
            return {};
        tx = *stored; // keeps its id and import fingerprint
    }
    const Decimal m = edit.amount.magnitude();
    const bool wasBill = tx.kind == TxKind::bill;
    tx.date = edit.date.wholeSeconds();
    tx.accountID = edit.accountID;
    tx.amount = edit.income ? m : m.negated();
    tx.payee = edit.payee;
    tx.category = edit.category;
    tx.note = edit.note;
    tx.cleared = edit.cleared;
    if (edit.income)
        tx.kind = tx.category == QLatin1String("Royalties") ? TxKind::royalty : TxKind::deposit;
    else
        tx.kind = wasBill ? TxKind::bill : TxKind::expense;

    Step step(*this);
    const Saved outcome = edit.id ? update(tx) : add(tx);
    if (!outcome.changed)
        return outcome;
    return done((edit.income ? tr("Logged ") : tr("Spent ")) + Money::s(m) + QStringLiteral(" · ") + tx.payee +
                QLatin1Char('.'));
}

Saved Store::deleteTransaction(const Transaction &tx)
{
    settle();
    Step step(*this);
    // Copies: `tx` may be one of the lines being removed.
    const QUuid id = tx.id;
    const std::optional<QUuid> pair = tx.transferPairID;
    const QString what = describe(tx);
    nameStep(tr("Delete %1").arg(what));
    if (eraseLines([&](const Transaction &t) { return t.id == id || (pair && t.id == *pair); }) == 0)
        return {};
    assigned();
    const Saved outcome = done(tr("Deleted %1.").arg(what));
    if (outcome)
        Q_EMIT undoOffered();
    return outcome;
}

namespace {

// The two sides of a transfer: money leaves `from` on the sending side and reaches `to`
// on the receiving one; each points at the other.
std::pair<Transaction, Transaction> transferSides(const TransferEdit &edit, const QString &fromName,
                                                  const QString &toName)
{
    const Decimal m = edit.amount.magnitude();
    Transaction sending;
    sending.date = edit.date;
    sending.accountID = edit.from;
    sending.amount = m.negated();
    sending.payee = QStringLiteral("Transfer to ") + toName;
    sending.category = QStringLiteral("Transfer");
    sending.note = edit.note;
    sending.cleared = true;
    sending.kind = TxKind::transfer;

    Transaction receiving = sending;
    receiving.id = newId();
    receiving.accountID = edit.to;
    receiving.amount = m;
    receiving.payee = QStringLiteral("Transfer from ") + fromName;

    // Each side points at the other; there is no shared pair id.
    receiving.transferPairID = sending.id;
    sending.transferPairID = receiving.id;
    return {sending, receiving};
}

// Whether a side of a transfer is the one money leaves by. The sign says so; for a
// transfer of nothing, the payee does.
bool isSending(const Transaction &side)
{
    return side.amount.isNegative() || (side.amount.isZero() && side.payee.startsWith(QLatin1String("Transfer to ")));
}

} // namespace

Saved Store::transfer(const QUuid &from, const QUuid &to, const Decimal &amount, Instant date, const QString &note)
{
    settle();
    const TransferEdit edit{from, to, amount.magnitude(), date, note};
    auto [sending, receiving] = transferSides(edit, accountName(from), accountName(to));
    Step step(*this);
    {
        OneWrite once(*this);
        m_book.transactions.push_back(std::move(sending));
        m_book.transactions.push_back(std::move(receiving));
        sortNewestFirst(2);
        assigned();
    }
    return done(tr("Moved %1.").arg(Money::s(edit.amount)));
}

std::optional<TransferEdit> Store::transferOf(const Transaction &side) const
{
    if (side.kind != TxKind::transfer)
        return std::nullopt;
    const std::optional<Transaction> other =
        side.transferPairID ? findById(m_book.transactions, *side.transferPairID) : std::nullopt;
    const bool sending = isSending(side);
    TransferEdit edit{side.accountID, other ? other->accountID : QUuid(), side.amount.magnitude(), side.date,
                      side.note};
    if (!sending)
        std::swap(edit.from, edit.to);
    return edit;
}

Saved Store::updateTransfer(const Transaction &side, const TransferEdit &edit)
{
    settle();
    // Copies: `side` may be one of the lines replaced below.
    const Transaction given = side;
    const std::optional<Transaction> stored = findById(std::as_const(m_book.transactions), given.id);
    if (!stored || stored->kind != TxKind::transfer)
        return {};
    const std::optional<Transaction> other =
        stored->transferPairID ? findById(std::as_const(m_book.transactions), *stored->transferPairID) : std::nullopt;

    auto [sending, receiving] = transferSides(edit, accountName(edit.from), accountName(edit.to));
    sending.date = receiving.date = edit.date.wholeSeconds();
    // Each side keeps its id and cleared mark; a missing other side gets the new id made above.
    Transaction &same = isSending(*stored) ? sending : receiving;
    Transaction &opposite = isSending(*stored) ? receiving : sending;
    same.id = stored->id;
    same.cleared = stored->cleared;
    if (other) {
        opposite.id = other->id;
        opposite.cleared = other->cleared;
    }
    same.transferPairID = opposite.id;
    opposite.transferPairID = same.id;

    Step step(*this);
    {
        OneWrite once(*this);
        eraseLines([&](const Transaction &t) { return t.id == same.id || t.id == opposite.id; });
        m_book.transactions.push_back(std::move(sending));
        m_book.transactions.push_back(std::move(receiving));
        sortNewestFirst(2);
        assigned();
    }
    return done(tr("Moved %1.").arg(Money::s(edit.amount.magnitude())));
}

size_t Store::sortNewestFirst(size_t appended)
{
    if (!m_recording) {
        const size_t place = restoreOrder(m_book.transactions, appended, m_newestFirst);
        m_newestFirst = true;
        return place;
    }
    // The history needs to know where the new lines land, and that no other line moved.
    appended = std::min(appended, m_book.transactions.size());
    const std::vector<Transaction> added(m_book.transactions.end() - std::ptrdiff_t(appended),
                                         m_book.transactions.end());
    if (!m_newestFirst)
        m_recording->broken = true;
    const size_t place = restoreOrder(m_book.transactions, appended, m_newestFirst);
    m_newestFirst = true;
    recordAppended(added);
    return place;
}

size_t Store::eraseLines(const std::function<bool(const Transaction &)> &drop)
{
    std::vector<Transaction> &lines = m_book.transactions;
    BookStep::Splice splice;
    auto write = std::find_if(lines.begin(), lines.end(), drop);
    for (auto read = write; read != lines.end(); ++read) {
        if (drop(*read))
            splice.out.emplace_back(size_t(read - lines.begin()), std::move(*read));
        else
            *write++ = std::move(*read);
    }
    lines.erase(write, lines.end());
    const size_t count = splice.out.size();
    recordLines(std::move(splice));
    return count;
}

void Store::putNewestFirst(std::vector<Transaction> &lines)
{
    restoreOrder(lines, 0, false);
}

std::span<const Transaction> Store::linesWithin(const ClosedRange &range) const
{
    const std::vector<Transaction> &lines = m_book.transactions;
    if (!m_newestFirst)
        return lines;
    const auto first =
        std::partition_point(lines.begin(), lines.end(), [&](const Transaction &t) { return t.date > range.upper; });
    const auto last =
        std::partition_point(first, lines.end(), [&](const Transaction &t) { return t.date >= range.lower; });
    return {first, last};
}

Decimal Store::Sums::of(const QUuid &account) const
{
    for (const auto &[id, sum] : all)
        if (id == account)
            return sum;
    return {};
}

void Store::Sums::added(const Transaction &line, const std::vector<Transaction> &lines)
{
    auto entry = std::find_if(all.begin(), all.end(), [&](const auto &e) { return e.first == line.accountID; });
    if (entry == all.end())
        entry = all.insert(all.end(), {line.accountID, Decimal()});
    entry->second += line.amount;
    // The lines moved; those dated after `at` lead the newest-first list.
    later.clear();
    for (const Transaction &t : lines) {
        if (t.date <= at)
            break;
        later.push_back(&t);
    }
}

const Store::Sums &Store::sums() const
{
    if (m_sums)
        return *m_sums;
    Sums &s = m_sums.emplace();
    s.at = now();
    std::vector<DecimalSum> sums; // beside s.all
    for (const Transaction &t : m_book.transactions) {
        auto entry = std::find_if(s.all.begin(), s.all.end(), [&](const auto &e) { return e.first == t.accountID; });
        if (entry == s.all.end()) {
            entry = s.all.insert(s.all.end(), {t.accountID, Decimal()});
            sums.emplace_back();
        }
        sums[size_t(entry - s.all.begin())].add(t.amount);
        if (t.date > s.at)
            s.later.push_back(&t);
    }
    for (size_t i = 0; i < sums.size(); ++i)
        s.all[i].second = sums[i].total();
    return s;
}

Decimal Store::balance(const Account &account, Instant upTo) const
{
    const Sums &s = sums();
    Decimal sum = account.opening;
    if (upTo < s.at) { // a balance in the past: through the lines
        for (const Transaction &t : m_book.transactions)
            if (t.accountID == account.id && t.date <= upTo)
                sum += t.amount;
        return sum;
    }
    sum += s.of(account.id);
    for (const Transaction *t : s.later)
        if (t->accountID == account.id && t->date > upTo)
            sum -= t->amount;
    return sum;
}

std::vector<Account> Store::activeAccounts() const
{
    std::vector<Account> active;
    std::copy_if(m_book.accounts.begin(), m_book.accounts.end(), std::back_inserter(active),
                 [](const Account &a) { return !a.archived; });
    return active;
}

Decimal Store::totalBalance() const
{
    Decimal total;
    for (const Account &a : activeAccounts())
        total += a.opening + sums().of(a.id);
    return total;
}

std::optional<Account> Store::account(const std::optional<QUuid> &id) const
{
    return id ? findById(m_book.accounts, *id) : std::nullopt;
}

QString Store::accountName(const QUuid &id) const
{
    const std::optional<Account> found = account(id);
    return found ? found->name : QString();
}

Saved Store::save(const Account &account)
{
    settle();
    Step step(*this);
    const std::optional<Account> was = findById(std::as_const(m_book.accounts), account.id);
    if (!was)
        nameStep(tr("Add account %1").arg(account.name));
    else if (was->archived != account.archived)
        nameStep((account.archived ? tr("Close account %1") : tr("Reopen account %1")).arg(account.name));
    else
        nameStep(tr("Change account %1").arg(account.name));
    upsertById(m_book.accounts, account);
    assigned();
    return done();
}

bool Store::hasTransactions(const Account &account) const
{
    return std::any_of(m_book.transactions.begin(), m_book.transactions.end(),
                       [&](const Transaction &t) { return t.accountID == account.id; });
}

Saved Store::deleteAccount(const Account &account)
{
    settle();
    Step step(*this);
    const QString name = account.name; // `account` may be the record removed
    nameStep(tr("Delete account %1").arg(name));
    if (hasTransactions(account) || !eraseById(m_book.accounts, account.id))
        return {};
    assigned();
    const Saved outcome = done(tr("Deleted account %1.").arg(name));
    if (outcome)
        Q_EMIT undoOffered();
    return outcome;
}

Saved Store::setBudget(const QString &category, std::optional<Decimal> budget)
{
    const auto found = std::find_if(m_book.categories.begin(), m_book.categories.end(),
                                    [&](const Category &c) { return c.name == category; });
    if (found == m_book.categories.end() || found->budget == budget)
        return {};
    settle();
    Step step(*this);
    nameStep(tr("Budget for %1").arg(category));
    found->budget = budget;
    assigned();
    return done();
}

Saved Store::setSetAsidePercent(std::optional<Decimal> percent)
{
    if (percent && !(Decimal() < *percent))
        percent.reset();
    if (percent && Decimal(100) < *percent)
        return {};
    const auto same = [](const std::optional<Decimal> &a, const std::optional<Decimal> &b) {
        return a.has_value() == b.has_value() && (!a || (*a <=> *b) == 0);
    };
    if (same(m_book.setAsidePercent, percent))
        return {};
    settle();
    Step step(*this);
    nameStep(tr("Set aside for taxes"));
    m_book.setAsidePercent = percent;
    assigned();
    return done();
}

Saved Store::setCountsForSetAside(const QString &category, bool counts)
{
    const auto found = std::find_if(m_book.categories.begin(), m_book.categories.end(),
                                    [&](const Category &c) { return c.name == category; });
    if (found == m_book.categories.end() || found->countsForSetAside() == counts)
        return {};
    settle();
    Step step(*this);
    nameStep(tr("Set aside for taxes from %1").arg(category));
    // The usual choice is kept as no choice, so the file holds only what the user changed.
    if (counts == Category::countsByDefault(found->name, found->income))
        found->setAside.reset();
    else
        found->setAside = counts;
    assigned();
    return done();
}

QStringList Store::categories(bool income) const
{
    QStringList names;
    for (const Category &c : m_book.categories)
        if (c.income == income && c.name != QLatin1String("Transfer"))
            names.append(c.name);
    return names;
}

QString Store::guessCategory(const QString &payee, bool income) const
{
    return AutoCategory::guess(payee, income ? Decimal(1) : Decimal(-1), m_book.transactions);
}
