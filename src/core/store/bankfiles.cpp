// The Store's side of bank files: an import's new lines join the Book in one write;
// an export writes the Book's lines to a file of the user's choosing.
#include "store/store.h"

#include "bankfiles/export.h"
#include "bankfiles/ledgerexport.h"
#include "store/atomicfile.h"

#include <QFileInfo>

Saved Store::importTransactions(const std::vector<Transaction> &txs, const QString &fileName)
{
    settle();
    Step step(*this);
    nameStep(txs.size() == 1 ? tr("Import of 1 line") : tr("Import of %1 lines").arg(txs.size()));
    if (!txs.empty()) {
        OneWrite once(*this);
        m_book.transactions.insert(m_book.transactions.end(), txs.begin(), txs.end());
        sortNewestFirst(txs.size());
        assigned();
    }
    return done(tr("Imported %1 transactions from %2.").arg(txs.size()).arg(QFileInfo(fileName).fileName()));
}

QByteArray Store::exportText() const
{
    return CSVExport::text(m_book);
}

Saved Store::exportCSV(const QString &path)
{
    return writeExport(path, exportText());
}

Saved Store::exportJournal(const QString &path)
{
    return writeExport(path, LedgerExport::journal(m_book));
}

Saved Store::writeExport(const QString &path, const QByteArray &bytes)
{
    QString reason;
    if (!writeFileAtomically(path, bytes, &reason)) {
        const QString error = tr("Could not save: %1").arg(reason);
        setStatus(error);
        return {true, error};
    }
    // An export is plain by the owner's choice; encrypted books say so once.
    setStatus(tr("Saved %1.").arg(QFileInfo(path).fileName()) +
              (encrypted() ? tr(" It is not encrypted, unlike your books.") : QString()));
    return {true, {}};
}
