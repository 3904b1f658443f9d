#include "accountsbridge.h"

#include "bridgeinput.h"
#include "model/money.h"
#include "store/backups.h"
#include "store/reports.h"
#include "store/store.h"

#include <QHash>

#include <QUuid>
#include <algorithm>

#include <tuple>

AccountsBridge::AccountsBridge(QObject *parent)
    : StoreBridge(parent)
{}

QStringList AccountsBridge::kinds() const
{
    return BridgeInput::rawValues<AccountKind>();
}

QString AccountsBridge::unlockText() const
{
#ifdef Q_OS_MACOS
    return QStringLiteral("Ask for Touch ID or password when Coinhall opens");
#else
    return QStringLiteral("Ask for your account password when Coinhall opens");
#endif
}

QString AccountsBridge::privacyText() const
{
#ifdef Q_OS_MACOS
    return QStringLiteral(
        "Your money file stays on this Mac. A backup copy is made each day and the last 30 are kept.");
#else
    return QStringLiteral(
        "Your money file stays on this computer. A backup copy is made each day and the last 30 are kept.");
#endif
}

QUrl AccountsBridge::backupsUrl() const
{
    return m_store ? QUrl::fromLocalFile(m_store->backupsFolder()) : QUrl();
}

QString AccountsBridge::monthCountText(int n)
{
    return n == 1 ? QStringLiteral("1 transaction this month") : QStringLiteral("%1 transactions this month").arg(n);
}

void AccountsBridge::reload()
{
    QVariantList accounts;
    QVariantList budgets;
    QVariantList setAsideCategories;
    QString setAsidePercent;
    QString total;
    if (m_store) {
        const Book &book = m_store->book();
        const ClosedRange month = Calendar::monthRange(m_store->now());
        QHash<QUuid, int> counts;
        for (const Transaction &t : book.transactions)
            if (month.contains(t.date))
                ++counts[t.accountID];
        for (const Account &a : book.accounts) {
            const Decimal balance = m_store->balance(a);
            accounts.append(QVariantMap{
                {QStringLiteral("id"), a.id.toString(QUuid::WithoutBraces)},
                {QStringLiteral("name"), a.name},
                {QStringLiteral("title"), a.archived ? a.name + QStringLiteral(" (closed)") : a.name},
                {QStringLiteral("closed"), a.archived},
                {QStringLiteral("countText"), monthCountText(counts.value(a.id))},
                {QStringLiteral("balance"), balance.toString()},
                {QStringLiteral("balanceText"), Money::s(balance)},
            });
        }
        for (size_t i = 0; i < book.categories.size(); ++i) {
            const Category &c = book.categories[i];
            if (c.income && c.name != QLatin1String("Transfer")) {
                setAsideCategories.append(QVariantMap{
                    {QStringLiteral("name"), c.name},
                    {QStringLiteral("counts"), c.countsForSetAside()},
                });
            }
            if (c.income)
                continue;
            budgets.append(QVariantMap{
                {QStringLiteral("index"), int(i)},
                {QStringLiteral("name"), c.name},
                {QStringLiteral("budget"), c.budget ? c.budget->toString() : QString()},
            });
        }
        total = Money::s(m_store->totalBalance());
        if (book.setAsidePercent)
            setAsidePercent = book.setAsidePercent->toString();
    }
    if (accounts == m_accounts && budgets == m_budgets && total == m_totalText &&
        setAsidePercent == m_setAsidePercent && setAsideCategories == m_setAsideCategories)
        return;
    m_setAsidePercent = std::move(setAsidePercent);
    m_setAsideCategories = std::move(setAsideCategories);
    m_accounts = std::move(accounts);
    m_budgets = std::move(budgets);
    m_totalText = std::move(total);
    emit changed();
}

bool AccountsBridge::commitBudget(int index, const QString &typed)
{
    if (!m_store || index < 0 || size_t(index) >= m_store->book().categories.size())
        return false;
    std::optional<Decimal> budget = Money::parse(typed);
    if (budget && *budget <= Decimal())
        budget.reset();
    return m_store->setBudget(m_store->book().categories[size_t(index)].name, budget).changed;
}

QString AccountsBridge::commitSetAsidePercent(const QString &typed)
{
    const SetAsidePercentInput input = Reports::readSetAsidePercent(typed);
    if (!input.error.isEmpty() || !m_store)
        return input.error;
    const Saved saved = m_store->setSetAsidePercent(input.percent);
    return saved.error;
}

bool AccountsBridge::setCountsForSetAside(const QString &name, bool counts)
{
    return m_store && m_store->setCountsForSetAside(name, counts).changed;
}

QVariantMap AccountsBridge::account(const QString &id) const
{
    const std::optional<Account> found = m_store ? m_store->account(QUuid(id)) : std::nullopt;
    if (!found || QUuid(id).isNull())
        return {{QStringLiteral("found"), false}};
    return {
        {QStringLiteral("found"), true},
        {QStringLiteral("id"), found->id.toString(QUuid::WithoutBraces)},
        {QStringLiteral("name"), found->name},
        {QStringLiteral("kind"), rawValue(found->kind)},
        {QStringLiteral("opening"), found->opening.toString()},
        {QStringLiteral("closed"), found->archived},
        {QStringLiteral("hasTransactions"), m_store->hasTransactions(*found)},
    };
}

QString AccountsBridge::saveAccount(const QString &id, const QString &name, const QString &kind, const QString &opening,
                                    bool closed)
{
    const std::optional<AccountKind> typedKind = fromRawValue<AccountKind>(kind);
    if (!m_store || !typedKind)
        return {};
    Account account = m_store->account(QUuid(id)).value_or(Account{});
    if (QUuid(id).isNull())
        account = Account{};
    account.name = name;
    account.kind = *typedKind;
    account.opening = Money::parse(opening).value_or(Decimal());
    account.archived = closed;
    std::ignore = m_store->save(account); // a failed write is told in the status line; the Book has the account
    return account.id.toString(QUuid::WithoutBraces);
}

bool AccountsBridge::deleteAccount(const QString &id)
{
    const std::optional<Account> found = m_store ? m_store->account(QUuid(id)) : std::nullopt;
    if (!found || QUuid(id).isNull() || m_store->hasTransactions(*found))
        return false;
    return m_store->deleteAccount(*found).changed;
}

void AccountsBridge::linked()
{
    if (m_store) {
        // Every backup was rewritten, and the key that opens them changed.
        connect(m_store, &Store::encryptedChanged, this, [this] {
            if (m_shelf)
                refreshBackups();
        });
    }
    if (m_shelf)
        refreshBackups(); // another Store, another folder
}

void AccountsBridge::refreshBackups()
{
    if (!m_shelf) {
        m_shelf = new BackupShelf(this);
        connect(m_shelf, &BackupShelf::changed, this, &AccountsBridge::showBackups);
    }
    if (m_store) {
        m_shelf->refresh(m_store->backupsFolder(), m_store->sealingKey());
    } else {
        m_backups.clear();
        emit backupsChanged();
    }
}

void AccountsBridge::showBackups()
{
    QVariantList backups;
    for (const Backup &backup : m_shelf->backups()) {
        const QString count = Backups::countText(backup);
        backups.append(QVariantMap{
            {QStringLiteral("day"), backup.day.toString(Qt::ISODate)},
            {QStringLiteral("dateText"), Backups::dayText(backup.day)},
            {QStringLiteral("sizeText"), Backups::sizeText(backup.bytes)},
            {QStringLiteral("countText"), count.isEmpty() ? QStringLiteral("counting…") : count},
            {QStringLiteral("readable"), backup.error.isEmpty()},
            {QStringLiteral("counted"), backup.read()},
        });
    }
    m_backups = std::move(backups);
    emit backupsChanged();
}

namespace {

// What a new passphrase typed twice lacks; empty when it will do.
QString newPassphraseProblem(const QString &passphrase, const QString &again)
{
    if (passphrase.isEmpty())
        return QStringLiteral("Type a passphrase.");
    if (passphrase != again)
        return QStringLiteral("The two passphrases differ.");
    return {};
}

} // namespace

QString AccountsBridge::encryptBooks(const QString &passphrase, const QString &again)
{
    if (const QString problem = newPassphraseProblem(passphrase, again); !problem.isEmpty())
        return problem;
    if (!m_store)
        return QStringLiteral("There are no books open.");
    const Saved done = m_store->encryptWith(Sealed::Secret::fromText(passphrase));
    return done ? QString() : m_store->status();
}

QString AccountsBridge::changePassphrase(const QString &current, const QString &passphrase, const QString &again)
{
    if (!m_store || !m_store->isPassphrase(Sealed::Secret::fromText(current)))
        return QStringLiteral("That is not your current passphrase.");
    return encryptBooks(passphrase, again);
}

QString AccountsBridge::decryptBooks(const QString &current)
{
    if (!m_store || !m_store->isPassphrase(Sealed::Secret::fromText(current)))
        return QStringLiteral("That is not your current passphrase.");
    const Saved done = m_store->decrypt();
    return done ? QString() : m_store->status();
}

QString AccountsBridge::passphraseStrength(const QString &passphrase)
{
    // A rough guide, not a promise: length counts most, then the kinds of characters.
    const qsizetype length = passphrase.size();
    if (length == 0)
        return {};
    if (length < 12)
        return QStringLiteral("Too short: use at least 12 characters, a few words are easiest to remember.");
    int kinds = 0;
    const auto has = [&](auto test) { return std::any_of(passphrase.begin(), passphrase.end(), test); };
    kinds += has([](QChar c) { return c.isLower(); });
    kinds += has([](QChar c) { return c.isUpper(); });
    kinds += has([](QChar c) { return c.isDigit(); });
    kinds += has([](QChar c) { return !c.isLetterOrNumber(); });
    if (length >= 20 || (length >= 14 && kinds >= 3))
        return QStringLiteral("Strong.");
    return QStringLiteral("Fair: longer is stronger.");
}

bool AccountsBridge::restoreBackup(const QString &day)
{
    const QDate date = QDate::fromString(day, Qt::ISODate);
    return m_store && date.isValid() && m_store->restoreBackup(date);
}
