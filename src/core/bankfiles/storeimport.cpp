// The Store's side of a bank import: the new lines join the Book in one write.
#include "store/store.h"

#include <QFileInfo>

Saved Store::importTransactions(const std::vector<Transaction> &txs, const QString &fileName)
{
    if (!txs.empty()) {
        OneWrite once(*this);
        m_book.transactions.insert(m_book.transactions.end(), txs.begin(), txs.end());
        sortNewestFirst(txs.size());
        assigned();
    }
    return done(tr("Imported %1 transactions from %2.").arg(txs.size()).arg(QFileInfo(fileName).fileName()));
}
