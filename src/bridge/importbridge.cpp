#include "importbridge.h"

#include "model/money.h"
#include "store/store.h"

#include <QFileInfo>
#include <QUuid>

#include <array>
#include <tuple>

namespace {

// The mapping's six columns in picker order.
std::array<std::optional<int> *, 6> columnsOf(CSVImporter::Mapping &m)
{
    return {&m.date, &m.description, &m.amount, &m.debit, &m.credit, &m.category};
}

} // namespace

ImportBridge::ImportBridge(QObject *parent)
    : StoreBridge(parent)
{}

void ImportBridge::linked()
{
    if (m_store && !m_accountChosen) {
        const std::vector<Account> active = m_store->activeAccounts();
        const QString first = active.empty() ? QString() : active.front().id.toString(QUuid::WithoutBraces);
        if (first != m_account) {
            m_account = first;
            emit accountChanged();
        }
    }
}

QStringList ImportBridge::columnChoices() const
{
    QStringList choices{QStringLiteral("—")};
    if (!m_importer)
        return choices;
    const QStringList &headers = m_importer->headers();
    for (qsizetype k = 0; k < headers.size(); ++k)
        choices << (headers[k].isEmpty() ? QStringLiteral("Column %1").arg(k + 1) : headers[k]);
    return choices;
}

QVariantList ImportBridge::choices() const
{
    QVariantList positions;
    CSVImporter::Mapping mapping = m_importer ? m_importer->mapping() : CSVImporter::Mapping{};
    for (const std::optional<int> *column : columnsOf(mapping))
        positions.append(*column ? **column + 1 : 0);
    return positions;
}

void ImportBridge::setAccount(const QString &account)
{
    m_accountChosen = true;
    if (account == m_account)
        return;
    m_account = account;
    emit accountChanged();
    reload();
}

void ImportBridge::setFlip(bool flip)
{
    if (flip == m_flip)
        return;
    m_flip = flip;
    emit flipChanged();
    reload();
}

QString ImportBridge::previewTitle() const
{
    if (!m_hasPreview)
        return {};
    return QStringLiteral("Preview · %1 new · %2 already in · %3 unreadable").arg(newCount()).arg(m_skipped).arg(m_bad);
}

QString ImportBridge::importTitle() const
{
    return QStringLiteral("Import %1").arg(newCount());
}

void ImportBridge::open(const QUrl &file)
{
    const QString local = file.isLocalFile() ? file.toLocalFile() : file.scheme().isEmpty() ? file.path() : QString();
    m_importer = local.isEmpty() ? std::nullopt : CSVImporter::fromFile(local);
    m_fileName = local.isEmpty() ? file.fileName() : QFileInfo(local).fileName();
    m_message = m_importer ? QString() : QStringLiteral("That file couldn't be read as a bank CSV.");
    emit fileChanged();
    emit mappingChanged();
    reload();
}

void ImportBridge::setChoice(int column, int choice)
{
    if (!m_importer || column < Date || column > Category || choice < 0 || choice > m_importer->headers().size())
        return;
    CSVImporter::Mapping mapping = m_importer->mapping();
    *columnsOf(mapping)[size_t(column)] = choice == 0 ? std::nullopt : std::optional<int>(choice - 1);
    if (mapping == m_importer->mapping())
        return;
    m_importer->setMapping(mapping);
    emit mappingChanged();
    reload();
}

int ImportBridge::importNow()
{
    if (!m_store || m_new.empty())
        return 0;
    // A copy: the Store's change runs reload(), which replaces m_new.
    const std::vector<Transaction> lines = m_new;
    std::ignore = m_store->importTransactions(lines, m_fileName); // the status line tells how it went
    return int(lines.size());
}

void ImportBridge::reload()
{
    const QUuid account(m_account);
    m_hasPreview = m_store && m_importer && !account.isNull();
    m_new.clear();
    m_skipped = 0;
    m_bad = 0;
    m_previewLines.clear();
    if (m_hasPreview) {
        CSVImporter::Conversion conversion = m_importer->preview(account, m_store->book().transactions, m_flip);
        m_new = std::move(conversion.newTransactions);
        m_skipped = conversion.skipped;
        m_bad = conversion.bad;
        for (const Transaction &t : m_new) {
            if (m_previewLines.size() >= previewLimit)
                break;
            m_previewLines.append(QVariantMap{
                {QStringLiteral("date"), chShort(t.date)},
                {QStringLiteral("payee"), t.payee},
                {QStringLiteral("category"), t.category},
                {QStringLiteral("amountText"), Money::signed_(t.amount)},
                {QStringLiteral("negative"), t.amount.isNegative()},
            });
        }
    }
    emit previewChanged();
}
