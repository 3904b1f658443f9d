#include "ledgerbridge.h"

#include "bridgeinput.h"

#include "model/money.h"
#include "store/store.h"

#include <QDir>
#include <QStandardPaths>

namespace {

using BridgeInput::idText;

std::optional<Transaction> findTransaction(const Store &store, const QString &idString)
{
    const QUuid id(idString);
    return id.isNull() ? std::nullopt : findById(store.book().transactions, id);
}

} // namespace

LedgerBridge::LedgerBridge(QObject *parent)
    : StoreBridge(parent)
{}

void LedgerBridge::reload()
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
    QVariantMap map{{QStringLiteral("id"), idText(t.id)},
                    {QStringLiteral("date"), double(t.date.msecs())},
                    {QStringLiteral("accountId"), idText(t.accountID)},
                    {QStringLiteral("amount"), t.amount.toString()},
                    {QStringLiteral("magnitude"), Money::editText(t.amount.magnitude())},
                    {QStringLiteral("income"), t.amount.signum() > 0 || (t.amount.isZero() && earning)},
                    {QStringLiteral("payee"), t.payee},
                    {QStringLiteral("category"), t.category},
                    {QStringLiteral("note"), t.note},
                    {QStringLiteral("cleared"), t.cleared},
                    {QStringLiteral("kind"), rawValue(t.kind)}};
    if (const std::optional<TransferEdit> transfer = m_store->transferOf(t)) {
        map.insert(QStringLiteral("fromAccountId"), transfer->from.isNull() ? QString() : idText(transfer->from));
        map.insert(QStringLiteral("toAccountId"), transfer->to.isNull() ? QString() : idText(transfer->to));
    }
    return map;
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
    const std::optional<Decimal> amount = Money::parse(form.value(QStringLiteral("amount")).toString());
    const std::optional<QUuid> account = BridgeInput::account(form.value(QStringLiteral("accountId")).toString());
    const std::optional<Instant> date = BridgeInput::instant(form.value(QStringLiteral("date")));
    if (!amount || !account || !date)
        return false;
    const QUuid changed(form.value(QStringLiteral("id")).toString());
    const TransactionEdit edit{changed.isNull() ? std::nullopt : std::optional<QUuid>(changed),
                               form.value(QStringLiteral("income")).toBool(),
                               *date,
                               *amount,
                               form.value(QStringLiteral("payee")).toString(),
                               form.value(QStringLiteral("category")).toString(),
                               *account,
                               form.value(QStringLiteral("note")).toString(),
                               form.value(QStringLiteral("cleared")).toBool()};
    // A failed write still closes the editor: the Book holds the change, and the status line says why it is not saved.
    return m_store->save(edit).changed;
}

QString LedgerBridge::guessCategory(const QString &payee, bool income) const
{
    return m_store ? m_store->guessCategory(payee, income) : QString();
}

bool LedgerBridge::deleteTransaction(const QString &id)
{
    const std::optional<Transaction> found = m_store ? findTransaction(*m_store, id) : std::nullopt;
    if (!found)
        return false;
    return m_store->deleteTransaction(*found).changed;
}

bool LedgerBridge::setCleared(const QString &id, bool cleared)
{
    std::optional<Transaction> found = m_store ? findTransaction(*m_store, id) : std::nullopt;
    if (!found)
        return false;
    if (found->cleared == cleared)
        return true;
    return m_store->setCleared(*found, cleared).changed;
}

bool LedgerBridge::transfer(const QString &fromId, const QString &toId, const QString &amount, double date,
                            const QString &note, const QString &changedId)
{
    if (!m_store)
        return false;
    const std::optional<QUuid> from = BridgeInput::account(fromId);
    const std::optional<QUuid> to = BridgeInput::account(toId);
    const std::optional<Decimal> typed = Money::parse(amount);
    const std::optional<Instant> when = BridgeInput::instant(date);
    if (!from || !to || !typed || !when)
        return false;
    const TransferEdit edit{*from, *to, typed->magnitude(), when->wholeSeconds(), note};
    if (changedId.isEmpty())
        return m_store->transfer(edit.from, edit.to, edit.amount, edit.date, edit.note).changed;
    const std::optional<Transaction> side = findTransaction(*m_store, changedId);
    return side && m_store->updateTransfer(*side, edit).changed;
}

bool LedgerBridge::exportCSV(const QUrl &file)
{
    if (!m_store)
        return false;
    return bool(m_store->exportCSV(file.isLocalFile() ? file.toLocalFile() : file.toString()));
}

bool LedgerBridge::exportJournal(const QUrl &file)
{
    if (!m_store)
        return false;
    return bool(m_store->exportJournal(file.isLocalFile() ? file.toLocalFile() : file.toString()));
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
