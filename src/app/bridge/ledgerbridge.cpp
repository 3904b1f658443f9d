#include "ledgerbridge.h"

#include "bridgeinput.h"

#include "model/money.h"
#include "store/store.h"

#include <QDir>
#include <QStandardPaths>

namespace {

const QString couldNotSave = QStringLiteral("Could not save:");

using BridgeInput::idText;

// A moment handed over from QML; none for NaN and dates the money file cannot hold.
std::optional<Instant> instantOf(double msecs)
{
    return BridgeInput::instant(msecs);
}

// The size of an amount as the editor shows it: at least two decimal places ("45.10",
// "1200.00"), more when the amount has them ("12.345"), never rounded.
QString editText(const Decimal &amount)
{
    QString text = amount.magnitude().toString();
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (point < 0)
        return text + QStringLiteral(".00");
    if (text.size() - point - 1 == 1)
        text.append(QLatin1Char('0'));
    return text;
}

// Runs a Store operation, then puts `text` in the status line, unless the operation
// could not save: then its "Could not save: ..." stays, so a failed save is never hidden.
template <typename Operation> void reportAfter(Store &store, const QString &text, Operation &&operation)
{
    if (store.status().startsWith(couldNotSave))
        store.setStatus({});
    operation();
    if (!store.status().startsWith(couldNotSave))
        store.setStatus(text);
}

std::optional<Transaction> findTransaction(const Store &store, const QString &idString)
{
    const QUuid id(idString);
    if (id.isNull())
        return std::nullopt;
    for (const Transaction &t : store.book().transactions)
        if (t.id == id)
            return t;
    return std::nullopt;
}

} // namespace

LedgerBridge::LedgerBridge(QObject *parent)
    : QObject(parent)
    , m_store(this, [this] { reloadAccounts(); })
{}

void LedgerBridge::setStore(QObject *store)
{
    if (m_store.set(store))
        emit storeChanged();
}

void LedgerBridge::reloadAccounts()
{
    QVariantList accounts;
    if (m_store)
        for (const Account &a : m_store->book().accounts)
            accounts.append(QVariantMap{{QStringLiteral("id"), idText(a.id)},
                                        {QStringLiteral("name"), a.name},
                                        {QStringLiteral("archived"), a.archived}});
    if (accounts == m_accounts)
        return;
    m_accounts = std::move(accounts);
    emit accountsChanged();
}

QVariantMap LedgerBridge::transaction(const QString &id) const
{
    const std::optional<Transaction> found = m_store ? findTransaction(*m_store, id) : std::nullopt;
    if (!found)
        return {};
    const Transaction &t = *found;
    const bool earning = t.kind == TxKind::deposit || t.kind == TxKind::royalty;
    return {{QStringLiteral("id"), idText(t.id)},
            {QStringLiteral("date"), double(t.date.msecs())},
            {QStringLiteral("accountId"), idText(t.accountID)},
            {QStringLiteral("amount"), t.amount.toString()},
            {QStringLiteral("magnitude"), editText(t.amount)},
            {QStringLiteral("income"), t.amount.signum() > 0 || (t.amount.isZero() && earning)},
            {QStringLiteral("payee"), t.payee},
            {QStringLiteral("category"), t.category},
            {QStringLiteral("note"), t.note},
            {QStringLiteral("cleared"), t.cleared},
            {QStringLiteral("kind"), rawValue(t.kind)}};
}

QStringList LedgerBridge::categories(bool income) const
{
    return m_store ? m_store->categories(income) : QStringList();
}

QString LedgerBridge::firstAccountId() const
{
    if (!m_store)
        return {};
    const std::vector<Account> active = m_store->activeAccounts();
    return active.empty() ? QString() : idText(active.front().id);
}

bool LedgerBridge::saveTransaction(const QVariantMap &form)
{
    if (!m_store)
        return false;
    const std::optional<Decimal> typed = Money::parse(form.value(QStringLiteral("amount")).toString());
    if (!typed)
        return false;
    const QUuid account(form.value(QStringLiteral("accountId")).toString());
    if (account.isNull())
        return false;
    const std::optional<Instant> date = instantOf(form.value(QStringLiteral("date")).toDouble());
    if (!date)
        return false;

    const QString changedId = form.value(QStringLiteral("id")).toString();
    std::optional<Transaction> changed;
    if (!changedId.isEmpty()) {
        changed = findTransaction(*m_store, changedId);
        if (!changed)
            return false; // deleted while the sheet was open: nothing left to change
    }

    const bool income = form.value(QStringLiteral("income")).toBool();
    const Decimal m = typed->magnitude();
    // A changed line keeps its id, transfer link and import fingerprint; a new one gets none.
    Transaction tx = changed ? *changed : Transaction{};
    tx.date = date->wholeSeconds();
    tx.accountID = account;
    tx.amount = income ? m : m.negated();
    tx.payee = form.value(QStringLiteral("payee")).toString();
    tx.category = form.value(QStringLiteral("category")).toString();
    tx.note = form.value(QStringLiteral("note")).toString();
    tx.cleared = form.value(QStringLiteral("cleared")).toBool();
    if (income)
        tx.kind = tx.category == QLatin1String("Royalties") ? TxKind::royalty : TxKind::deposit;
    else
        tx.kind = changed && changed->kind == TxKind::bill ? TxKind::bill : TxKind::expense;

    const QString status = (income ? QStringLiteral("Logged ") : QStringLiteral("Spent ")) + Money::s(m) +
                           QStringLiteral(" · ") + tx.payee + QLatin1Char('.');
    reportAfter(*m_store, status, [&] {
        if (changed)
            m_store->update(tx);
        else
            m_store->add(tx);
    });
    return true;
}

bool LedgerBridge::deleteTransaction(const QString &id)
{
    const std::optional<Transaction> found = m_store ? findTransaction(*m_store, id) : std::nullopt;
    if (!found)
        return false;
    m_store->deleteTransaction(*found);
    return true;
}

bool LedgerBridge::setCleared(const QString &id, bool cleared)
{
    std::optional<Transaction> found = m_store ? findTransaction(*m_store, id) : std::nullopt;
    if (!found)
        return false;
    if (found->cleared != cleared) {
        found->cleared = cleared;
        m_store->update(*found);
    }
    return true;
}

bool LedgerBridge::transfer(const QString &fromId, const QString &toId, const QString &amount, double date,
                            const QString &note)
{
    if (!m_store)
        return false;
    const QUuid from(fromId);
    const QUuid to(toId);
    const std::optional<Decimal> typed = Money::parse(amount);
    const std::optional<Instant> when = instantOf(date);
    if (from.isNull() || to.isNull() || !typed || !when)
        return false;
    const Decimal m = typed->magnitude();
    reportAfter(*m_store, QStringLiteral("Moved ") + Money::s(m) + QLatin1Char('.'),
                [&] { m_store->transfer(from, to, m, when->wholeSeconds(), note); });
    return true;
}

bool LedgerBridge::exportCSV(const QUrl &file)
{
    if (!m_store)
        return false;
    return m_store->exportCSV(file.isLocalFile() ? file.toLocalFile() : file.toString());
}

QUrl LedgerBridge::proposedExportFile() const
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QDir::homePath();
    return QUrl::fromLocalFile(QDir(folder).filePath(QStringLiteral("Coinhall transactions.csv")));
}

double LedgerBridge::now() const
{
    return double((m_store ? m_store->now() : Instant::now()).msecs());
}
