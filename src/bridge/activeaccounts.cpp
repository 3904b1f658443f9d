#include "activeaccounts.h"

#include "store/store.h"

ActiveAccounts::ActiveAccounts(QObject *parent)
    : QAbstractListModel(parent)
    , m_store(this, [this] { reload(); })
{}

void ActiveAccounts::setStore(QObject *store)
{
    if (m_store.set(store))
        emit storeChanged();
}

void ActiveAccounts::reload()
{
    std::vector<Account> accounts = m_store ? m_store->activeAccounts() : std::vector<Account>{};
    if (accounts == m_accounts)
        return;
    const int before = count();
    beginResetModel();
    m_accounts = std::move(accounts);
    endResetModel();
    if (count() != before)
        emit countChanged();
}

int ActiveAccounts::indexOf(const QString &accountId) const
{
    const QUuid id(accountId);
    if (id.isNull())
        return -1;
    for (size_t i = 0; i < m_accounts.size(); ++i)
        if (m_accounts[i].id == id)
            return int(i);
    return -1;
}

QString ActiveAccounts::idAt(int row) const
{
    if (row < 0 || row >= count())
        return {};
    return m_accounts[size_t(row)].id.toString(QUuid::WithoutBraces);
}

int ActiveAccounts::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ActiveAccounts::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Account &account = m_accounts[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return account.name;
    case AccountIdRole:
        return account.id.toString(QUuid::WithoutBraces);
    case KindRole:
        return rawValue(account.kind);
    case IconRole:
        return iconName(account.kind);
    default:
        return {};
    }
}

QHash<int, QByteArray> ActiveAccounts::roleNames() const
{
    return {{NameRole, "name"}, {AccountIdRole, "accountId"}, {KindRole, "kind"}, {IconRole, "icon"}};
}
