#include "storelink.h"

#include "store/store.h"

#include <utility>

StoreLink::StoreLink(QObject *owner, std::function<void()> onChange)
    : m_owner(owner)
    , m_onChange(std::move(onChange))
{}

StoreLink::~StoreLink()
{
    // The owner is being taken apart; a late bookChanged must not reach it.
    QObject::disconnect(m_connection);
}

Store *StoreLink::get() const
{
    return m_store.data();
}

QObject *StoreLink::object() const
{
    return m_store.data();
}

bool StoreLink::relink(QObject *store)
{
    Store *typed = qobject_cast<Store *>(store);
    if (store && !typed)
        qWarning("%s: the store given is not a Store", m_owner->metaObject()->className());
    if (typed == m_store)
        return false;
    QObject::disconnect(m_connection);
    m_store = typed;
    if (m_store)
        m_connection = QObject::connect(m_store, &Store::bookChanged, m_owner, [this] { m_onChange(); });
    return true;
}

bool StoreLink::set(QObject *store)
{
    if (!relink(store))
        return false;
    m_onChange();
    return true;
}

StoreBridge::StoreBridge(QObject *parent)
    : QObject(parent)
    , m_store(this, [this] { reload(); })
{}

void StoreBridge::setStore(QObject *store)
{
    if (!m_store.relink(store))
        return;
    linked();
    reload();
    emit storeChanged();
}
