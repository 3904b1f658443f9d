#pragma once

#include "model/period.h"
#include "model/records.h"
#include "platform/authenticator.h"
#include "platform/notifier.h"

#include <QLockFile>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// How a Store is made. The defaults are the running program's.
struct StoreOptions
{
    // The application folder; empty means "QFS Coinhall" in the user's data folder.
    QString dir;
    // Who checks the owner at unlock; null means this platform's own.
    std::shared_ptr<Authenticator> authenticator;
    // Where bill reminders go; null means this platform's notification centre.
    std::shared_ptr<Notifier> notifier;
};

// The one observable owner of the user's Book.
//
// Every change of data goes through a Store operation, which changes the Book and
// then runs the change hook: the money file is written atomically and observers
// are told. Operations that change the Book in several steps write it once, at
// their end, so the file on disk always holds a whole Book, old or new.
class Store : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool locked READ locked NOTIFY lockedChanged FINAL)
    Q_PROPERTY(QString status READ status WRITE setStatus NOTIFY statusChanged FINAL)
    Q_PROPERTY(bool requireUnlock READ requireUnlock WRITE setRequireUnlock NOTIFY requireUnlockChanged FINAL)
    Q_PROPERTY(QString dir READ dir CONSTANT FINAL)
    Q_PROPERTY(QString backupsFolder READ backupsFolder CONSTANT FINAL)
    Q_PROPERTY(bool writable READ writable CONSTANT FINAL)

public:
    static constexpr int backupsKept = 30;

    // Finds the folder, reads the money file (or starts a new Book), fills in the
    // default accounts and categories, sets the lock flag and makes the day's backup.
    explicit Store(StoreOptions options = {}, QObject *parent = nullptr);
    ~Store() override;

    // The process-wide Store, once the application has made it; null before.
    static Store *shared();
    static void setShared(Store *store);

    // The application folder for the default options: "QFS Coinhall" in the user's
    // data folder, copied from the older "Quillfern Coinhall" when only that exists.
    static QString defaultDir();

    const Book &book() const { return m_book; }
    // Replaces the whole Book: saves it (unless still loading) and tells observers.
    void setBook(Book book);

    bool locked() const { return m_locked; }
    QString status() const { return m_status; }
    void setStatus(const QString &status);
    bool requireUnlock() const;
    void setRequireUnlock(bool on);
    QString dir() const { return m_dir; }
    QString backupsFolder() const;
    QString moneyFilePath() const;
    // False when another Coinhall holds this money file: then nothing is written.
    bool writable() const { return m_lock != nullptr; }
    // Why the money file found at start was not used; empty when it was (or was absent).
    QString loadError() const { return m_loadError; }

    // Writes the Book to the money file now. False (and `status` says why) on failure.
    bool save();
    // Asks the owner to prove who they are; `locked` clears on success.
    Q_INVOKABLE void unlock(const QString &password = {});

    // -- Ledger ---------------------------------------------------------------

    // Adds a transaction (with its own fresh id) and keeps the list newest first.
    void add(const Transaction &tx);
    // Replaces the transaction with the same id, in place; the list is not re-sorted.
    void update(const Transaction &tx);
    // Removes the transaction and, for a transfer, its other side.
    void deleteTransaction(const Transaction &tx);
    // Moves the magnitude of `amount` from one account to another as a linked pair.
    void transfer(const QUuid &from, const QUuid &to, const Decimal &amount, Instant date, const QString &note);
    // Opening balance plus every line of the account dated no later than `upTo`.
    Decimal balance(const Account &account, Instant upTo = Instant::distantFuture()) const;
    // The accounts that are not archived, in the Book's order.
    std::vector<Account> activeAccounts() const;
    // The sum of the active accounts' balances, future lines included.
    Decimal totalBalance() const;
    // The account with this id, archived ones included.
    std::optional<Account> account(const std::optional<QUuid> &id) const;
    // Inserts a new account at the end or replaces the one with the same id.
    void save(const Account &account);
    bool hasTransactions(const Account &account) const;
    // Removes an account that has no transactions; one that has is left alone.
    void deleteAccount(const Account &account);
    // Names of the income or spending categories for the pickers, without "Transfer".
    QStringList categories(bool income) const;

    // -- Bills and royalties ---------------------------------------------------

    // Where "now" and "today" come from; an empty function means the system clock.
    void setClock(std::function<Instant()> now);
    // The current instant by the Store's clock.
    Instant now() const;
    // The first instant of today in local time, by the Store's clock.
    Instant startOfToday() const;

    // The active bills, soonest due first; equal due dates keep the Book's order.
    std::vector<Bill> activeBills() const;
    // The active bills due no later than the start of the day `days` days from today,
    // overdue ones included, soonest first.
    std::vector<Bill> upcomingBills(int days) const;
    // Whether an active bill was due before the start of today.
    bool isOverdue(const Bill &bill) const;
    // The bill's due dates inside `range`, from its current due date on, ascending;
    // the walk stops after 400 steps, so a bill far behind a far range yields nothing.
    std::vector<Instant> dueDates(const Bill &bill, const ClosedRange &range) const;
    // Records a payment of `amount` (the bill's own amount when absent): books it from
    // the account given, else the bill's, else the first active one (no line when
    // there is none), adds it to the history and moves the bill on one step.
    void pay(const Bill &bill, std::optional<Decimal> amount, Instant on, std::optional<QUuid> accountID);
    // Moves a bill past its current due date without paying; a one-time bill finishes.
    void skip(const Bill &bill);
    // Inserts a new bill at the end or replaces the one with the same id in place.
    void save(const Bill &bill);
    // Removes the bill; lines its payments booked stay in the ledger.
    void deleteBill(const Bill &bill);

    // The royalties not yet received ("Expected" and "Following up"), soonest expected first.
    std::vector<Royalty> pendingRoyalties() const;
    // The expected amounts of the pending royalties added up.
    Decimal royaltiesExpected() const;
    // The amounts of the royalties received in the current calendar year.
    Decimal royaltiesReceivedThisYear() const;
    // Marks a royalty received: books the deposit into the account given, else the
    // royalty's, else the first active one (none when there is no account), and lines
    // up the next expected statement of a repeating royalty.
    void receive(const Royalty &royalty, const Decimal &amount, Instant on, std::optional<QUuid> accountID);
    // Inserts a new royalty at the end or replaces the one with the same id in place.
    void save(const Royalty &royalty);
    // Removes the royalty; a deposit booked for it stays in the ledger.
    void deleteRoyalty(const Royalty &royalty);

    // -- Reminders -------------------------------------------------------------

    // Rebuilds the bill reminders one second from now from the active bills as they
    // are at this call; a later call within that second replaces this one.
    void scheduleReminders();
    // Asks the notification centre for permission to show reminders; the answer is not looked at.
    Q_INVOKABLE void requestNotifications();

    // -- Period reports --------------------------------------------------------

    // The calendar month holding `date`, in local time.
    ClosedRange monthRange(Instant date) const;
    // The current month by the Store's clock.
    ClosedRange monthRange() const;
    // The dates a Reports period covers now, by the Store's clock.
    ClosedRange periodRange(ReportPeriod period) const;
    // Money in over the range: lines above zero that are not transfers.
    Decimal income(const ClosedRange &range) const;
    // Money out over the range, as a positive amount: lines below zero that are not transfers.
    Decimal spending(const ClosedRange &range) const;
    // The lines of income() summed per exact category text, largest first.
    CategoryTotals incomeByCategory(const ClosedRange &range) const;
    // The lines of spending() summed per exact category text (positive), largest first.
    CategoryTotals spendingByCategory(const ClosedRange &range) const;
    // Income and spending of the last `months` calendar months, this one included, oldest first.
    std::vector<MonthFlow> monthly(int months) const;

    // -- Bank files ------------------------------------------------------------

    // Appends imported lines, keeps the list newest first and writes the file once;
    // `status` becomes "Imported <n> transactions from <file name>.".
    void importTransactions(const std::vector<Transaction> &txs, const QString &fileName);
    // Writes every transaction, oldest first, as CSV to `path`, replacing it whole;
    // `status` becomes "Saved <file name>." or "Could not save: <reason>". False on failure.
    bool exportCSV(const QString &path);
    // The export file's bytes for the current Book.
    QByteArray exportText() const;

    // -- For the screens ---------------------------------------------------------

    // The header's read-outs, as the screens show them; they change with the Book.
    Q_PROPERTY(QString totalText READ totalText NOTIFY bookChanged FINAL)
    Q_PROPERTY(QString royaltiesDueText READ royaltiesDueText NOTIFY bookChanged FINAL)
    Q_PROPERTY(int dueSoonCount READ dueSoonCount NOTIFY bookChanged FINAL)
    Q_PROPERTY(int overdueCount READ overdueCount NOTIFY bookChanged FINAL)

    // totalBalance() as money text ("$1,234.50").
    QString totalText() const;
    // royaltiesExpected() as money text.
    QString royaltiesDueText() const;
    // How many bills upcomingBills(14) holds, overdue ones included.
    int dueSoonCount() const;
    // How many active bills were due before today.
    int overdueCount() const;

Q_SIGNALS:
    void bookChanged();
    void lockedChanged();
    void statusChanged();
    void requireUnlockChanged();
    // An unlock attempt was refused; the overlay stays.
    void unlockFailed();

protected:
    // Keeps the file writes of one operation to one, at its end. Nestable.
    class OneWrite
    {
    public:
        explicit OneWrite(Store &store);
        ~OneWrite();
        OneWrite(const OneWrite &) = delete;
        OneWrite &operator=(const OneWrite &) = delete;

    private:
        Store &m_store;
    };

    // The Book to change in place; follow with assigned().
    Book &mutableBook() { return m_book; }
    // The change hook: the Book was assigned.
    void assigned();
    // An operation's result line. A failed save of the same operation keeps its message.
    void report(const QString &text);
    // Puts the transactions back in newest-first order (a stable sort by date) after
    // `appended` lines were added at the end.
    void sortNewestFirst(size_t appended);

private:
    void load();
    // Keeps a copy of a money file whose over-long amounts were rounded as it was read
    // (`count` of them, the first at `first`) and says so.
    void keepUnrounded(int count, const QString &first);
    void dailyBackup();
    void setLocked(bool locked);
    void flush();

    Book m_book;
    QString m_dir;
    QString m_status;
    QString m_loadError;
    bool m_locked = false;
    bool m_loading = true;
    bool m_saveFailed = false;
    bool m_unlocking = false;
    int m_oneWriteDepth = 0;
    bool m_pendingWrite = false;
    bool m_pendingNotify = false;
    std::unique_ptr<QLockFile> m_lock;
    std::shared_ptr<Authenticator> m_authenticator;
    static QPointer<Store> s_shared;

    // Bill reminders (reminders.cpp): the pending rebuild and the bills it will use.
    void rebuildReminders();
    Notifier &notifier();
    std::shared_ptr<Notifier> m_notifier;
    QTimer *m_reminderWork = nullptr; // made on first use; a child of the Store
    std::vector<Bill> m_reminderSnapshot;

    // The Store's clock (bills.cpp); empty means Instant::now. Tests pin it.
    std::function<Instant()> m_clock;
};
