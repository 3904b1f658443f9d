#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <functional>

class Store;

// A bridge's hold on the Store it shows. QML hands the Store over as a plain QObject;
// the link checks its type, follows its bookChanged while it is linked and calls the
// bridge's change function, so each bridge's store setter is a line or two. It reads
// like a pointer to the Store (null while there is none).
class StoreLink
{
public:
    // `owner` is the bridge: it names the bridge in warnings and ends the connection
    // with it. `onChange` runs on every change of the linked Store's Book.
    StoreLink(QObject *owner, std::function<void()> onChange);
    ~StoreLink();
    Q_DISABLE_COPY_MOVE(StoreLink)

    // The linked Store, or null.
    Store *get() const;
    // Read as the pointer itself: `if (m_store)`, `m_store->book()`, `*m_store`.
    operator Store *() const { return get(); }
    Store *operator->() const { return get(); }
    // The linked Store as QML sees it, for the bridge's `store` property.
    QObject *object() const;

    // Links to `store` (null unlinks), warning when it is something else than a Store,
    // which then counts as null. False, with nothing done, when that is the Store
    // already linked; otherwise the old Store's changes are no longer followed.
    bool relink(QObject *store);
    // relink() and then, when it changed the Store, the change function once. True
    // when the Store changed, so that the bridge can say so.
    bool set(QObject *store);

private:
    QObject *m_owner;
    std::function<void()> m_onChange;
    QPointer<Store> m_store;
    QMetaObject::Connection m_connection;
};

// The base of the bridges: the `store` property and its link. A bridge fills in
// reload(), which runs when a Store is set and on every change of its Book.
class StoreBridge : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    // The Store to show and change; null shows nothing and changes nothing.
    Q_PROPERTY(QObject *store READ store WRITE setStore NOTIFY storeChanged FINAL)

public:
    QObject *store() const { return m_store.object(); }
    void setStore(QObject *store);

Q_SIGNALS:
    void storeChanged();

protected:
    explicit StoreBridge(QObject *parent);
    // Works out again what the bridge shows.
    virtual void reload() = 0;
    // A different Store was just linked; runs before reload().
    virtual void linked() {}

    StoreLink m_store;
};
