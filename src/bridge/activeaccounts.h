#pragma once

#include "model/records.h"
#include "storelink.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

class Store;

// The Store's active (not archived) accounts, in the Book's order, as a list model
// for pickers. Follows every change of the Book.
class ActiveAccounts : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    // The Store to list; null lists nothing.
    Q_PROPERTY(QObject *store READ store WRITE setStore NOTIFY storeChanged FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role { NameRole = Qt::UserRole + 1, AccountIdRole, KindRole, IconRole };

    explicit ActiveAccounts(QObject *parent = nullptr);

    QObject *store() const { return m_store.object(); }
    void setStore(QObject *store);
    int count() const { return int(m_accounts.size()); }

    // The row of the account with this id (QUuid text, braces or not); -1 when it is not listed.
    Q_INVOKABLE int indexOf(const QString &accountId) const;
    // The id of the account in `row` as QUuid text without braces; empty outside the list.
    Q_INVOKABLE QString idAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void storeChanged();
    void countChanged();

private:
    void reload();

    StoreLink m_store;
    std::vector<Account> m_accounts;
};
