#pragma once

#include "model/moneyfile.h"
#include "model/period.h"
#include "model/records.h"
#include "platform/authenticator.h"
#include "platform/notifier.h"
#include "store/history.h"
#include "store/sealedfile.h"

#include <QDate>
#include <QLockFile>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <deque>

#include <functional>
#include <future>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <thread>
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
    // A money file of at least this many bytes is read on another thread: the Store
    // starts `loading`, with an empty Book, and fills in when the file is read.
    qint64 readInBackgroundFrom = std::numeric_limits<qint64>::max();
    // A Book of at least this many lines is saved on another thread: an operation's
    // outcome then tells only what went wrong at once, and a write that fails later
    // puts "Could not save: <reason>" in the status line.
    std::size_t saveInBackgroundFrom = std::numeric_limits<std::size_t>::max();
    // The passphrase of encrypted books, given before the Store starts (the command
    // line); without it encrypted books wait for openWithPassphrase().
    std::shared_ptr<const Sealed::Secret> passphrase;
    // What a new passphrase's key costs to derive; tests make it cheap.
    Sealed::Cost sealingCost = Sealed::Cost::standard();
};

// What a Store operation that changes data came to. True when the Book took the
// change and the money file holds it. The operation has already put its own line in
// the status line (its success text, or "Could not save: <reason>").
struct [[nodiscard]] Saved
{
    // The Book took the change; false when there was nothing to change (a record
    // deleted meanwhile, an account that still has lines).
    bool changed = false;
    // Why the change is not in the money file: the status line's "Could not save:
    // <reason>". Empty when it was written, or when nothing changed.
    QString error;

    explicit operator bool() const { return changed && error.isEmpty(); }
};

// The transaction editor's form, as typed: the rules that make a line of it are
// Store::save(const TransactionEdit &)'s.
struct TransactionEdit
{
    std::optional<QUuid> id; // the line changed; absent for a new line
    bool income = false;     // money in; else money out
    Instant date;
    Decimal amount; // its sign does not matter: `income` decides it
    QString payee;
    QString category;
    QUuid accountID;
    QString note;
    bool cleared = true;
};

// A transfer as its editor shows it: both sides in one.
struct TransferEdit
{
    QUuid from;
    QUuid to;
    Decimal amount; // the size moved, positive
    Instant date;
    QString note;
};

// Finds the record with this id in a list of records.
template <typename Record> auto findById(std::vector<Record> &records, const QUuid &id)
{
    return std::find_if(records.begin(), records.end(), [&](const Record &r) { return r.id == id; });
}
template <typename Record> std::optional<Record> findById(const std::vector<Record> &records, const QUuid &id)
{
    const auto found = std::find_if(records.begin(), records.end(), [&](const Record &r) { return r.id == id; });
    return found == records.end() ? std::nullopt : std::optional<Record>(*found);
}
// Replaces the record with the same id in place, or appends it when there is none.
template <typename Record> void upsertById(std::vector<Record> &records, const Record &record)
{
    if (const auto found = findById(records, record.id); found != records.end())
        *found = record;
    else
        records.push_back(record);
}
// Removes the records with this id; true when there was one.
template <typename Record> bool eraseById(std::vector<Record> &records, QUuid id)
{
    // `id` is a copy: the caller's may belong to a record that is moved while erasing.
    return std::erase_if(records, [&](const Record &r) { return r.id == id; }) > 0;
}

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
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged FINAL)
    // How much of the money file is read while `loading`, from 0 to 1.
    Q_PROPERTY(double loadProgress READ loadProgress NOTIFY loadProgressChanged FINAL)
    // What is being read while `loading`: "coinhall.json · 121 of 339 MB".
    Q_PROPERTY(QString loadingText READ loadingText NOTIFY loadProgressChanged FINAL)
    // The Edit menu's items: "Undo Spent $4.50 · Corner cafe", or "Undo" when there is nothing.
    Q_PROPERTY(QString undoText READ undoText NOTIFY historyChanged FINAL)
    Q_PROPERTY(QString redoText READ redoText NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY historyChanged FINAL)
    // The money file is encrypted with the owner's passphrase.
    Q_PROPERTY(bool encrypted READ encrypted NOTIFY encryptedChanged FINAL)
    // The books are encrypted and not opened yet: the lock asks for the passphrase.
    Q_PROPERTY(bool needsPassphrase READ needsPassphrase NOTIFY lockedChanged FINAL)

public:
    static constexpr int backupsKept = 30;
    // How many steps back undo reaches, in this run.
    static constexpr size_t historyKept = 100;

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
    // The lines dated within `range`, newest first: a slice of the Book's lines found by
    // their dates, so a month's figures do not go through decades of lines.
    std::span<const Transaction> linesWithin(const ClosedRange &range) const;
    // The changes of the Book so far: each is one step of changeCount().
    quint64 changeCount() const { return m_changeCount; }
    // Lines that the latest change only added, side by side: where the first of them is
    // in the Book's lines and how many. Nothing for any other change, so that a view of
    // a large Book can follow a new line without going through all the others.
    struct Added
    {
        size_t at = 0;
        size_t count = 0;
    };
    std::optional<Added> lastAdded() const { return m_lastAdded; }
    // Replaces the whole Book: saves it (unless still loading) and tells observers.
    Saved setBook(Book book);

    bool locked() const { return m_locked; }
    QString status() const { return m_status; }
    void setStatus(const QString &status);
    bool requireUnlock() const { return askForUnlock(); }
    // The "requireUnlock" preference, for what must know it before a Store exists (the command line).
    static bool askForUnlock();
    void setRequireUnlock(bool on);
    QString dir() const { return m_dir; }
    QString backupsFolder() const;
    QString moneyFilePath() const;
    // False when another Coinhall holds this money file, or a newer Coinhall wrote it:
    // then nothing is written.
    bool writable() const { return m_lock != nullptr; }
    // Whether the money file was written by a newer Coinhall (its `version` is above
    // MoneyFile::version); such a file is only read, never rewritten.
    bool fromNewerVersion() const { return m_fromNewer; }
    // Why the money file found at start was not used; empty when it was (or was absent).
    QString loadError() const { return m_loadError; }
    // The money file is still being read (see StoreOptions::readInBackgroundFrom): the
    // Book is empty until then, and nothing is written.
    bool loading() const { return m_reader != nullptr; }
    double loadProgress() const;
    QString loadingText() const;

    // Writes the Book to the money file now (or, for a large Book, starts writing it).
    // False (and `status` says why) on failure.
    bool save();
    // Waits until every change is in the money file, or its failure in the status line.
    void finishSaving();
    // Asks the owner to prove who they are; `locked` clears on success. An empty
    // password is never checked, since failed-login counting (pam_faillock) would count
    // it against the owner: it opens the books only on a computer that cannot check
    // its owner at all, and is otherwise refused at once.
    Q_INVOKABLE void unlock(const QString &password = {});

    // -- Ledger ---------------------------------------------------------------

    // Adds a transaction (with its own fresh id) and keeps the list newest first.
    Saved add(const Transaction &tx);
    // Replaces the transaction with the same id. A line whose date changed moves to
    // its place in the newest-first order; otherwise it stays where it is.
    Saved update(const Transaction &tx);
    // Saves the transaction editor's form: a new line, or the line `edit.id` changed
    // (keeping its transfer link and import fingerprint). Money in is stored above zero,
    // as a royalty under "Royalties", else a deposit; money out below zero, as an
    // expense (a bill payment stays one). Says "Logged <amount> · <payee>." or "Spent ...".
    Saved save(const TransactionEdit &edit);
    // Removes the transaction and, for a transfer, its other side; says "Deleted
    // <amount> · <payee>." and offers to undo it.
    Saved deleteTransaction(const Transaction &tx);
    // Marks a line cleared or pending.
    Saved setCleared(const Transaction &tx, bool cleared);
    // Moves the magnitude of `amount` from one account to another as a linked pair;
    // says "Moved <amount>.".
    Saved transfer(const QUuid &from, const QUuid &to, const Decimal &amount, Instant date, const QString &note);
    // The transfer that `side` is one side of, as its editor shows it; none for a line
    // that is no transfer.
    std::optional<TransferEdit> transferOf(const Transaction &side) const;
    // Changes both sides of the transfer that `side` is one side of together: accounts,
    // amount, date and note, each side keeping its id and cleared mark. A side that has
    // gone missing is made again. Says "Moved <amount>.".
    Saved updateTransfer(const Transaction &side, const TransferEdit &edit);
    // Opening balance plus every line of the account dated no later than `upTo`.
    Decimal balance(const Account &account, Instant upTo = Instant::distantFuture()) const;
    // The accounts that are not archived, in the Book's order.
    std::vector<Account> activeAccounts() const;
    // The sum of the active accounts' balances, future lines included.
    Decimal totalBalance() const;
    // The account with this id, archived ones included.
    std::optional<Account> account(const std::optional<QUuid> &id) const;
    // Inserts a new account at the end or replaces the one with the same id.
    Saved save(const Account &account);
    // The name of the account with this id; empty when there is none.
    QString accountName(const QUuid &id) const;
    bool hasTransactions(const Account &account) const;
    // Removes an account that has no transactions; one that has is left alone. Says
    // "Deleted account <name>." and offers to undo it.
    Saved deleteAccount(const Account &account);
    // Sets the monthly budget of the category named `category`; none when absent.
    Saved setBudget(const QString &category, std::optional<Decimal> budget);
    // Sets the percent of income set aside for taxes; absent (or not above 0) turns it
    // off. A percent above 100 is refused and changes nothing.
    Saved setSetAsidePercent(std::optional<Decimal> percent);
    // Whether income in the category named `category` counts toward the set-aside.
    Saved setCountsForSetAside(const QString &category, bool counts);
    // The category an import would give a line from `payee`: that of the payee's latest
    // line, else the keyword table's, else "Other income" or "Other spending".
    QString guessCategory(const QString &payee, bool income) const;
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
    // Says "Paid <name>: <amount>.".
    Saved pay(const Bill &bill, std::optional<Decimal> amount, Instant on, std::optional<QUuid> accountID);
    // Moves a bill past its current due date without paying; a one-time bill finishes.
    Saved skip(const Bill &bill);
    // Inserts a new bill at the end or replaces the one with the same id in place;
    // says "Saved bill <name>.".
    Saved save(const Bill &bill);
    // Removes the bill; lines its payments booked stay in the ledger.
    Saved deleteBill(const Bill &bill);

    // The royalties not yet received ("Expected" and "Following up"), soonest expected first.
    std::vector<Royalty> pendingRoyalties() const;
    // The expected amounts of the pending royalties added up.
    Decimal royaltiesExpected() const;
    // The amounts of the royalties received in the current calendar year.
    Decimal royaltiesReceivedThisYear() const;
    // Marks a royalty received: books the deposit into the account given, else the
    // royalty's, else the first active one (none when there is no account), and lines
    // up the next expected statement of a repeating royalty. Says "Logged <amount> from <payer>.".
    Saved receive(const Royalty &royalty, const Decimal &amount, Instant on, std::optional<QUuid> accountID);
    // Inserts a new royalty at the end or replaces the one with the same id in place.
    Saved save(const Royalty &royalty);
    // Removes the royalty; a deposit booked for it stays in the ledger.
    Saved deleteRoyalty(const Royalty &royalty);

    // -- Reminders -------------------------------------------------------------

    // Rebuilds the bill reminders one second from now from the active bills as they
    // are at this call; a later call within that second replaces this one.
    void scheduleReminders();
    // Asks the notification centre for permission to show reminders; the answer is not looked at.
    Q_INVOKABLE void requestNotifications();

    // -- Bank files ------------------------------------------------------------

    // Appends imported lines, keeps the list newest first and writes the file once;
    // `status` becomes "Imported <n> transactions from <file name>.".
    Saved importTransactions(const std::vector<Transaction> &txs, const QString &fileName);
    // Writes every transaction, oldest first, as CSV to `path`, replacing it whole;
    // `status` becomes "Saved <file name>." or "Could not save: <reason>".
    Saved exportCSV(const QString &path);
    // The export file's bytes for the current Book.
    QByteArray exportText() const;
    // Writes every transaction as a plain-text accounting journal (LedgerExport::journal)
    // to `path`, replacing it whole; `status` as for exportCSV().
    Saved exportJournal(const QString &path);

    // -- Undo and redo (history.cpp) ----------------------------------------------

    // Every operation below that changes the Book is one step of the history, however
    // many parts of the Book it changes. A new step clears what could be redone.
    // Nothing can be undone while the books are locked, still being read, or not
    // written by this window.
    bool canUndo() const;
    bool canRedo() const;
    QString undoText() const;
    QString redoText() const;
    // Takes the Book back one step and saves it at once; says "Undone: <what>.". When
    // the save fails the Book stays as it was, the step can still be undone, and the
    // status line says "Could not save: <reason>". True when undone and saved.
    Q_INVOKABLE bool undo();
    // Does the step undone last again, saved as undo() is; says "Redone: <what>.".
    Q_INVOKABLE bool redo();

    // -- Backups (backups.cpp) ---------------------------------------------------

    // Replaces the Book with the daily backup of `day`, after keeping the money file as
    // it was beside it as "coinhall.json.before-restore-<yyyyMMdd-HHmmss>"; the undo
    // history starts again. Says "Restored your books from the backup of <day>." or
    // why not (a backup that is missing or cannot be read changes nothing).
    Saved restoreBackup(const QDate &day);

    // -- Encryption (sealing.cpp) -------------------------------------------------

    // Encrypted books: the money file, the backups and the copies kept beside it are
    // sealed (store/sealedfile.h) with a key made from the owner's passphrase. Such
    // books start locked, with nothing of them read, until the passphrase opens them;
    // the passphrase stands in for the account password then.
    bool encrypted() const { return m_key != nullptr || m_awaitingPassphrase; }
    bool needsPassphrase() const { return m_awaitingPassphrase; }
    // What opens the backups of encrypted books; null for plain ones.
    std::shared_ptr<const Sealed::Key> sealingKey() const { return m_key; }
    // Reads encrypted books with `passphrase`. False, with unlockFailed(), when it is
    // not theirs; a money file found damaged is set aside as an unreadable one is, and
    // the new Book is encrypted with this passphrase.
    bool openWithPassphrase(const Sealed::Secret &passphrase);
    // The same for the lock screen, with the passphrase as typed.
    Q_INVOKABLE bool unlockWithPassphrase(const QString &passphrase);
    // Whether `passphrase` is the one the books are encrypted with now.
    bool isPassphrase(const Sealed::Secret &passphrase) const;
    // Encrypts the books with `passphrase` (or with a new one, when they already are):
    // the money file first, then every backup and kept copy, each file replaced whole,
    // so that a crash at any moment leaves every file readable by the old way or the new.
    // Says "Your books are now encrypted." or "Your passphrase was changed.".
    Saved encryptWith(const Sealed::Secret &passphrase);
    // Writes the books plain again: the backups and kept copies first, the money file
    // last, so that a crash on the way leaves encrypted books, finished at the next
    // opening. Says "Your books are no longer encrypted.".
    Saved decrypt();

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
    // The user clicked a bill reminder this Store's window showed.
    void reminderClicked();
    void bookChanged();
    void lockedChanged();
    void statusChanged();
    void requireUnlockChanged();
    // An unlock attempt was refused; the overlay stays.
    void unlockFailed();
    void loadingChanged();
    void loadProgressChanged();
    void historyChanged();
    // A deletion was made: the status line offers to undo it for a few seconds.
    void undoOffered();
    void encryptedChanged();

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

    // Makes the changes of one operation one step of the history. Nestable: the
    // outermost makes the step, named by nameStep() or else by the operation's success
    // text (without its full stop).
    class Step
    {
    public:
        explicit Step(Store &store);
        ~Step();
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;

    private:
        Store &m_store;
    };
    void nameStep(const QString &what);
    // Removes the lines for which `drop` is true; how many.
    size_t eraseLines(const std::function<bool(const Transaction &)> &drop);

    // The Book to change in place; follow with assigned().
    Book &mutableBook()
    {
        settle();
        m_newestFirst = false; // whatever the caller does to the lines
        return m_book;
    }
    // Waits until no background save is reading the Book: every change calls it first.
    void settle();
    // The change hook: the Book was assigned.
    void assigned();
    // Writes an export's bytes to `path`; "Saved <file name>." or "Could not save: ...".
    Saved writeExport(const QString &path, const QByteArray &bytes);
    // Ends an operation that changed the Book: its outcome, with `text` (if any) in the
    // status line when the change was written; a failed write keeps "Could not save: ...".
    Saved done(const QString &text = {});
    // Puts the transactions back in newest-first order (a stable sort by date) after
    // `appended` lines were added at the end.
    // Returns where the last line added landed, when a few were.
    size_t sortNewestFirst(size_t appended);
    // Sorts lines of unknown order newest first (a stable sort by date).
    static void putNewestFirst(std::vector<Transaction> &lines);

private:
    // What reading the money file came to; made on any thread.
    struct Read
    {
        bool exists = false;
        QString openError;
        MoneyFile::Decoded decoded;
    };
    // Encrypted books are opened with `key`.
    static Read read(const QString &path, std::atomic<qint64> *progress, const Sealed::Key *key = nullptr);
    // Takes the Book read, or sets aside a file that could not be used.
    void use(Read read);
    // The rest of the start once the Book is whole: defaults, backup, status line.
    void started();
    void readInBackground(qint64 size);
    // Encodes the Book on another thread, then writes it after the write before it.
    void saveInBackground();
    // Keeps a copy of a money file whose over-long amounts were rounded as it was read
    // (`count` of them, the first at `first`) and says so.
    void keepUnrounded(int count, const QString &first);
    void dailyBackup();
    void setLocked(bool locked);
    // The bytes a save writes for `book`: the money file, sealed when the books are encrypted.
    static QByteArray fileBytes(const Book &book, const Sealed::Key *key);
    // Brings the backups and the copies kept beside the money file to `to` (plain when
    // null), opening sealed ones with `from`; the files it could not change, by name.
    QStringList convertCopies(const Sealed::Key *from, const Sealed::Key *to);
    // Opens a money file or backup that may be sealed: the plain bytes, or why not.
    QByteArray unseal(const QByteArray &bytes, QString *problem) const;
    Saved switchSealing(std::shared_ptr<const Sealed::Key> to, const QString &text);
    void flush();

    Book m_book;
    QString m_dir;
    QString m_status;
    QString m_loadError;
    bool m_locked = false;
    bool m_loading = true;
    QString m_saveError; // the last write's "Could not save: <reason>"; empty when it worked
    bool m_fromNewer = false;
    bool m_unlocking = false;
    int m_oneWriteDepth = 0;
    bool m_pendingWrite = false;
    bool m_pendingNotify = false;
    std::unique_ptr<QLockFile> m_lock;
    // The thread reading the money file at start, while `loading`.
    std::unique_ptr<QThread> m_reader;
    std::atomic<qint64> m_bytesRead = 0;
    qint64 m_fileBytes = 0;
    // The last background save, and when its encoding stops reading the Book.
    std::size_t m_saveInBackgroundFrom;
    std::thread m_saving;
    std::shared_future<void> m_encoded;
    std::shared_ptr<Authenticator> m_authenticator;
    static QPointer<Store> s_shared;
    // The key of encrypted books, once opened; null for plain ones.
    std::shared_ptr<const Sealed::Key> m_key;
    bool m_awaitingPassphrase = false;
    Sealed::Cost m_sealingCost;
    qint64 m_readInBackgroundFrom;

    // Bill reminders (reminders.cpp): the pending rebuild and the bills it will use.
    void rebuildReminders();
    Notifier &notifier();
    std::shared_ptr<Notifier> m_notifier;
    QTimer *m_reminderWork = nullptr; // made on first use; a child of the Store
    std::vector<Bill> m_reminderSnapshot;
    std::optional<std::vector<ReminderRequest>> m_writtenPlan; // the plan on disk for the reminder service

    // The history (history.cpp): the steps that can be undone, oldest first, and those
    // that can be redone, the next last; the step being made, and the parts beside the
    // lines as they were when it began.
    struct Recording
    {
        BookStep step;
        BookStep::Rest was;
        bool named = false;
        bool broken = false; // lines moved in ways a step cannot follow: the history ends
    };
    void recordLines(BookStep::Splice splice);
    // Records the `count` lines just appended at the end (`added`) as put in where the
    // sort put them.
    void recordAppended(const std::vector<Transaction> &added);
    void endStep();
    void clearHistory();
    bool step(bool back);
    // Encodes and writes the Book on this thread; false, with `reason`, when it fails.
    bool writeNow(QString *reason);
    std::deque<BookStep> m_undo;
    std::deque<BookStep> m_redo;
    std::optional<Recording> m_recording;
    int m_stepDepth = 0;

    // The Store's clock (bills.cpp); empty means Instant::now. Tests pin it.
    std::function<Instant()> m_clock;

    // Each account's sum of all its lines, and the lines dated after `at`: made by the
    // first balance asked for after a change, so the screens that show balances after
    // every change do not each go through all the lines (ledger.cpp).
    struct Sums
    {
        Instant at;
        std::vector<std::pair<QUuid, Decimal>> all;
        std::vector<const Transaction *> later;
        Decimal of(const QUuid &account) const;
        // Follows a line added to `lines` (newest first, the line already in place).
        void added(const Transaction &line, const std::vector<Transaction> &lines);
    };
    const Sums &sums() const;
    mutable std::optional<Sums> m_sums;
    // Whether the Book's lines are known to be newest first; false after mutableBook().
    bool m_newestFirst = true;
    quint64 m_changeCount = 0;
    std::optional<Added> m_adding; // what the change under way only added, if that
    std::optional<Added> m_lastAdded;
};
