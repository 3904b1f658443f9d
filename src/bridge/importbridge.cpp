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
    if (!isTable())
        return choices;
    const QStringList &headers = m_file->csv()->headers();
    for (qsizetype k = 0; k < headers.size(); ++k)
        choices << (headers[k].isEmpty() ? QStringLiteral("Column %1").arg(k + 1) : headers[k]);
    return choices;
}

QVariantList ImportBridge::choices() const
{
    QVariantList positions;
    CSVImporter::Mapping mapping = isTable() ? m_file->csv()->mapping() : CSVImporter::Mapping{};
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

void ImportBridge::setDayFirst(bool dayFirst)
{
    if (dayFirst == m_dayFirst)
        return;
    m_dayFirst = dayFirst;
    if (m_file)
        m_file->setDayFirst(dayFirst);
    reload();
}

void ImportBridge::open(const QUrl &file)
{
    const QString local = file.isLocalFile() ? file.toLocalFile() : file.scheme().isEmpty() ? file.path() : QString();
    m_file = BankFile::fromFile(local);
    m_fileName = local.isEmpty() ? file.fileName() : QFileInfo(local).fileName();
    m_readError.clear();
    if (local.isEmpty())
        m_readError = QStringLiteral("it is not a file on this computer");
    else if (!m_file->error().isEmpty())
        m_readError = m_file->error();
    if (!m_readError.isEmpty())
        m_file.reset();
    m_dayFirst = false;
    emit fileChanged();
    emit mappingChanged();
    reload();
}

void ImportBridge::setChoice(int column, int choice)
{
    if (!isTable() || column < Date || column > Category || choice < 0 || choice > m_file->csv()->headers().size())
        return;
    CSVImporter &table = *m_file->csv();
    CSVImporter::Mapping mapping = table.mapping();
    *columnsOf(mapping)[size_t(column)] = choice == 0 ? std::nullopt : std::optional<int>(choice - 1);
    if (mapping == table.mapping())
        return;
    table.setMapping(mapping);
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
    const QString refusal = m_store && m_file ? m_file->refusal(m_store->book().currency) : QString();
    if (!m_readError.isEmpty())
        m_message = QStringLiteral("Coinhall can't read %1: %2.").arg(m_fileName, m_readError);
    else if (!refusal.isEmpty())
        m_message = QStringLiteral("Coinhall can't import %1: %2.").arg(m_fileName, refusal);
    else
        m_message.clear();
    m_hasPreview = m_store && m_file && !account.isNull() && refusal.isEmpty();
    m_new.clear();
    m_skipped = 0;
    m_bad = 0;
    m_previewLines.clear();
    if (m_hasPreview) {
        BankImport::Conversion conversion = m_file->preview(account, m_store->book().transactions, m_flip);
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
