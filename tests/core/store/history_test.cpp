// Undo and redo of every kind of change, checked on the encoded Book: what undo comes
// back to is the money file as it was, byte for byte.
#include "storetesting.h"

#include <QSignalSpy>

#include <random>

namespace {

QByteArray encoded(const Store &store)
{
    return MoneyFile::encode(store.book());
}

// Random changes of every kind, on few dates so that lines of equal dates meet.
class RandomChanges
{
public:
    RandomChanges(Store &store, unsigned seed)
        : m_store(store)
        , m_random(seed)
    {}

    // Makes one change; false when the change it picked had nothing to change.
    bool change()
    {
        const Book &book = m_store.book();
        const std::vector<Transaction> &lines = book.transactions;
        const Account &account = pick(book.accounts);
        switch (number(15)) {
        case 0:
        case 1:
            return bool(m_store.save(TransactionEdit{
                {}, number(2) == 0, date(), amount(), payee(), "Groceries", account.id, {}, number(2) == 0}));
        case 2:
            if (lines.empty())
                return false;
            if (const Transaction &line = pick(lines); line.kind != TxKind::transfer)
                return bool(m_store.save(TransactionEdit{line.id, false, number(2) ? line.date : date(), amount(),
                                                         payee(), "Dining", line.accountID, "changed", true}));
            return false;
        case 3:
            return !lines.empty() && m_store.setCleared(pick(lines), number(2) == 0);
        case 4:
            return !lines.empty() && m_store.deleteTransaction(pick(lines));
        case 5:
            return bool(m_store.transfer(account.id, pick(book.accounts).id, amount(), date(), "moved"));
        case 6: {
            const auto side = std::find_if(lines.begin(), lines.end(),
                                           [](const Transaction &t) { return t.kind == TxKind::transfer; });
            return side != lines.end() &&
                   m_store.updateTransfer(*side, {pick(book.accounts).id, account.id, amount(), date(), "again"});
        }
        case 7: {
            std::vector<Transaction> imported(number(25));
            for (Transaction &line : imported)
                line = {newId(), date(), account.id, amount().negated(), payee(), "Other spending"};
            return bool(m_store.importTransactions(imported, "bank.csv"));
        }
        case 8:
            return bool(m_store.save(Bill{.name = payee(), .amount = amount(), .due = date()}));
        case 9:
            return !book.bills.empty() && (number(2) ? m_store.pay(pick(book.bills), amount(), date(), std::nullopt)
                                                     : m_store.skip(pick(book.bills)));
        case 10:
            return !book.bills.empty() && m_store.deleteBill(pick(book.bills));
        case 11:
            return bool(m_store.save(Royalty{
                .payer = payee(), .expectedAmount = amount(), .expectedDate = date(), .repeats = Repeat::quarterly}));
        case 12:
            if (book.royalties.empty())
                return false;
            return number(2) ? bool(m_store.receive(pick(book.royalties), amount(), date(), std::nullopt))
                             : bool(m_store.deleteRoyalty(pick(book.royalties)));
        case 13: {
            Account changed = number(3) ? Account{.name = payee()} : account;
            changed.archived = number(2) == 0;
            return m_store.hasTransactions(account) || number(2) ? bool(m_store.save(changed))
                                                                 : bool(m_store.deleteAccount(account));
        }
        default:
            return bool(
                m_store.setBudget(pick(book.categories).name, number(2) ? std::optional(amount()) : std::nullopt));
        }
    }

    size_t number(size_t below) { return std::uniform_int_distribution<size_t>(0, below - 1)(m_random); }

private:
    template <typename Record> const Record &pick(const std::vector<Record> &records)
    {
        return records[number(records.size())];
    }
    Instant date() { return at("2025-03-01T12:00:00Z").addSecs(std::int64_t(number(4)) * 86400); }
    Decimal amount() { return *Decimal::fromString(std::to_string(1 + number(9999)) + ".25"); }
    QString payee() { return QStringLiteral("Payee %1").arg(number(5)); }

    Store &m_store;
    std::mt19937 m_random;
};

using History = StoreTest;

} // namespace

// Random changes, undos and redos: every undo and redo lands on the Book as it was at
// that point, byte for byte, and so does the money file; undoing everything gives the
// first Book and redoing everything the last.
TEST_F(History, UndoAndRedoWalkBackAndForthThroughEveryBookExactly)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE(seed);
        Store store({temp.path() + QStringLiteral("/%1").arg(seed)});
        RandomChanges changes(store, seed);
        std::vector<QByteArray> timeline{encoded(store)};
        size_t now = 0;
        for (int action = 0; action < 60; ++action) {
            const size_t roll = changes.number(10);
            if (roll < 2 && now > 0) {
                ASSERT_TRUE(store.undo());
                ASSERT_EQ(encoded(store), timeline[--now]);
            } else if (roll < 3 && now + 1 < timeline.size()) {
                ASSERT_TRUE(store.redo());
                ASSERT_EQ(encoded(store), timeline[++now]);
            } else if (changes.change() && encoded(store) != timeline[now]) {
                timeline.resize(++now);
                timeline.push_back(encoded(store));
                ASSERT_FALSE(store.canRedo()) << "a new change clears what could be redone";
            }
            if (timeline.size() > 1) { // a new Book is written at its first change
                ASSERT_EQ(readAll(store.moneyFilePath()), encoded(store));
            }
        }
        while (store.undo())
            --now;
        EXPECT_EQ(now, 0u);
        EXPECT_EQ(encoded(store), timeline.front());
        while (store.redo())
            ++now;
        EXPECT_EQ(encoded(store), timeline.back());
    }
}

// Each set-aside choice is a step of its own; a percent above 100 changes nothing.
TEST_F(History, SetAsideChoicesAreUndoneOneAtATime)
{
    const auto refunds = [&] { return *std::ranges::find(store.book().categories, "Refunds", &Category::name); };
    ASSERT_TRUE(store.setSetAsidePercent(d("25")));
    EXPECT_FALSE(store.setSetAsidePercent(d("150")).changed);
    ASSERT_TRUE(store.setCountsForSetAside("Refunds", true));
    EXPECT_EQ(store.undoText(), "Undo Set aside for taxes from Refunds");
    ASSERT_TRUE(store.undo());
    EXPECT_FALSE(refunds().countsForSetAside());
    EXPECT_EQ(refunds().setAside, std::nullopt); // the usual choice again: nothing in the file
    EXPECT_EQ(store.book().setAsidePercent, d("25"));
    ASSERT_TRUE(store.undo());
    EXPECT_EQ(store.book().setAsidePercent, std::nullopt);
}

// The Edit menu's words, the status line's, and the offer after a deletion.
TEST_F(History, StepsAreNamedAsTheUserMadeThem)
{
    EXPECT_EQ(store.undoText(), "Undo");
    EXPECT_FALSE(store.canUndo());

    ASSERT_TRUE(store.save(TransactionEdit{{}, false, today, d("4.50"), "Corner cafe", "Dining", checking.id}));
    EXPECT_EQ(store.undoText(), "Undo Spent $4.50 · Corner cafe");
    const Decimal balance = store.balance(checking);
    ASSERT_TRUE(store.undo());
    EXPECT_EQ(store.status(), "Undone: Spent $4.50 · Corner cafe.");
    EXPECT_EQ(store.balance(checking), balance + d("4.50"));
    EXPECT_EQ(store.redoText(), "Redo Spent $4.50 · Corner cafe");
    ASSERT_TRUE(store.redo());
    EXPECT_EQ(store.status(), "Redone: Spent $4.50 · Corner cafe.");

    QSignalSpy offered(&store, &Store::undoOffered);
    ASSERT_TRUE(store.deleteTransaction(store.book().transactions[0]));
    EXPECT_EQ(store.status(), "Deleted $4.50 · Corner cafe.");
    EXPECT_EQ(store.undoText(), "Undo Delete $4.50 · Corner cafe");
    EXPECT_EQ(offered.count(), 1);

    ASSERT_TRUE(store.importTransactions(std::vector(312, line(checking, "2025-03-04T09:00:00Z", "-1")), "a.csv"));
    EXPECT_EQ(store.undoText(), "Undo Import of 312 lines");
    ASSERT_TRUE(store.save(Bill{.name = "Rent", .amount = d("1200"), .due = today}));
    ASSERT_TRUE(store.pay(store.book().bills[0], {}, today, checking.id));
    EXPECT_EQ(store.undoText(), "Undo Paid Rent: $1,200.00");
    ASSERT_TRUE(store.undo());
    EXPECT_EQ(store.book().bills[0].history.size(), 0u) << "the payment's line, due date and history as one step";
    EXPECT_EQ(store.book().transactions.size(), 312u);
}

// A hundred steps back, no more; none at all on books that are locked or that this
// window does not write.
TEST_F(History, HistoryIsBoundedAndOnlyForTheWindowThatWrites)
{
    for (int i = 0; i < 101; ++i)
        ASSERT_TRUE(store.add(line(checking, "2025-03-04T09:00:00Z", "-1", "Shop")));
    int undone = 0;
    while (store.undo())
        ++undone;
    EXPECT_EQ(undone, 100);
    EXPECT_EQ(store.book().transactions.size(), 1u);

    ASSERT_TRUE(store.redo());
    Store second({temp.path()});
    ASSERT_FALSE(second.writable());
    std::ignore = second.add(line(checking, "2025-03-04T09:00:00Z", "-1"));
    EXPECT_FALSE(second.canUndo());
    EXPECT_FALSE(second.undo());

    QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall")).setValue(QStringLiteral("requireUnlock"), true);
    Store locked({temp.path() + QStringLiteral("/locked")});
    QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall")).remove(QStringLiteral("requireUnlock"));
    ASSERT_TRUE(locked.locked());
    std::ignore = locked.add(line(locked.book().accounts[0], "2025-03-04T09:00:00Z", "-1"));
    EXPECT_EQ(locked.undoText(), "Undo");
    EXPECT_FALSE(locked.undo());
}
