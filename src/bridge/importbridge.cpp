#include "importbridge.h"

#include "model/money.h"
#include "store/store.h"

#include <QFileInfo>
#include <QUuid>

#include <array>
#include <tuple>

namespace {

constexpr QChar separators[] = {u',', u';', u'\t'};

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

QStringList ImportBridge::encodingChoices()
{
    return {QStringLiteral("UTF-8"), QStringLiteral("UTF-16LE"), QStringLiteral("UTF-16BE"),
            QStringLiteral("Windows-1252"), QStringLiteral("ISO-8859-15")};
}

QString ImportBridge::encoding() const
{
    return isTable() ? only()->csv()->reading().encoding.value_or(QString()) : m_reading.encoding.value_or(QString());
}

void ImportBridge::setEncoding(const QString &encoding)
{
    CSVImporter::Reading chosen = m_reading;
    chosen.encoding = encoding;
    readTableAs(chosen);
}

int ImportBridge::separator() const
{
    const QChar found = isTable() ? only()->csv()->reading().separator.value_or(u',') : u',';
    return int(std::find(std::begin(separators), std::end(separators), found) - std::begin(separators));
}

void ImportBridge::setSeparator(int separator)
{
    if (separator < 0 || separator >= int(std::size(separators)))
        return;
    CSVImporter::Reading chosen = m_reading;
    chosen.separator = separators[separator];
    readTableAs(chosen);
}

bool ImportBridge::decimalComma() const
{
    return isTable() && only()->csv()->reading().decimalComma.value_or(false);
}

void ImportBridge::setDecimalComma(bool decimalComma)
{
    CSVImporter::Reading chosen = m_reading;
    chosen.decimalComma = decimalComma;
    readTableAs(chosen);
}

void ImportBridge::readTableAs(const CSVImporter::Reading &chosen)
{
    // Only a single table is read again; once an encoding made it unreadable it has no
    // table, yet another encoding may read it.
    if (!readingChangeable() || chosen == m_reading)
        return;
    m_reading = chosen;
    m_files.front().setReading(chosen);
    emit fileChanged();
    emit mappingChanged();
    reload();
}

QStringList ImportBridge::columnChoices() const
{
    QStringList choices{QStringLiteral("—")};
    if (!isTable())
        return choices;
    const QStringList &headers = only()->csv()->headers();
    for (qsizetype k = 0; k < headers.size(); ++k)
        choices << (headers[k].isEmpty() ? QStringLiteral("Column %1").arg(k + 1) : headers[k]);
    return choices;
}

QVariantList ImportBridge::choices() const
{
    QVariantList positions;
    CSVImporter::Mapping mapping = isTable() ? only()->csv()->mapping() : CSVImporter::Mapping{};
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
    if (BankFile *file = only())
        file->setDayFirst(dayFirst);
    reload();
}

void ImportBridge::open(const QUrl &file)
{
    openFiles({QVariant(file)});
}

void ImportBridge::openFiles(const QVariantList &files)
{
    m_files.clear();
    m_names.clear();
    m_readError.clear();
    for (const QVariant &given : files) {
        const QUrl file = given.toUrl();
        const QString local = file.isLocalFile()          ? file.toLocalFile()
                              : file.scheme().isEmpty() ? file.path()
                                                        : QString();
        const QString name = local.isEmpty() ? file.fileName() : QFileInfo(local).fileName();
        BankFile read = BankFile::fromFile(local);
        const QString error = local.isEmpty() ? QStringLiteral("it is not a file on this computer") : read.error();
        if (!error.isEmpty()) {
            m_readError = QStringLiteral("Coinhall can't read %1: %2.").arg(name, error);
            m_files.clear();
            m_names = {name};
            break;
        }
        m_files.push_back(std::move(read));
        m_names.append(name);
    }
    m_fileName = m_names.size() == 1 ? m_names.front() : m_names.isEmpty() ? QString() : QStringLiteral("%1 files").arg(m_names.size());
    m_dayFirst = false;
    m_reading = {};
    emit fileChanged();
    emit mappingChanged();
    reload();
}

void ImportBridge::setChoice(int column, int choice)
{
    if (!isTable() || column < Date || column > Category || choice < 0 || choice > only()->csv()->headers().size())
        return;
    CSVImporter &table = *only()->csv();
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
    QString refusal;
    for (qsizetype i = 0; m_store && i < qsizetype(m_files.size()) && refusal.isEmpty(); ++i) {
        const BankFile &file = m_files[size_t(i)];
        if (!file.error().isEmpty()) // read in an encoding the user chose that it is not in
            refusal = QStringLiteral("Coinhall can't read %1: %2.").arg(m_names[i], file.error());
        else if (const QString why = file.refusal(m_store->book().currency); !why.isEmpty())
            refusal = QStringLiteral("Coinhall can't import %1: %2.").arg(m_names[i], why);
    }
    m_message = !m_readError.isEmpty() ? m_readError : refusal;
    m_hasPreview = m_store && !m_files.empty() && !account.isNull() && refusal.isEmpty();
    m_new.clear();
    m_skipped = 0;
    m_bad = 0;
    m_previewLines.clear();
    m_fileLines.clear();
    if (m_hasPreview) {
        // Each file against the Book and the files before it; the Book's lines are
        // copied only when there is more than one file.
        std::vector<Transaction> withEarlier;
        if (m_files.size() > 1)
            withEarlier = m_store->book().transactions;
        for (size_t i = 0; i < m_files.size(); ++i) {
            BankImport::Conversion conversion = m_files[i].preview(
                account, m_files.size() > 1 ? withEarlier : m_store->book().transactions, m_flip);
            m_skipped += conversion.skipped;
            m_bad += conversion.bad;
            if (m_files.size() > 1) {
                m_fileLines.append(QStringLiteral("%1 · %2 · %3 new · %4 already in · %5 unreadable")
                                       .arg(m_names[qsizetype(i)], m_files[i].summary())
                                       .arg(conversion.newTransactions.size())
                                       .arg(conversion.skipped)
                                       .arg(conversion.bad));
                withEarlier.insert(withEarlier.end(), conversion.newTransactions.begin(),
                                   conversion.newTransactions.end());
            }
            m_new.insert(m_new.end(), std::make_move_iterator(conversion.newTransactions.begin()),
                         std::make_move_iterator(conversion.newTransactions.end()));
        }
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
