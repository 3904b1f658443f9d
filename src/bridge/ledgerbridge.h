#pragma once

#include "storelink.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class Store;

// The ledger operations as the register and the transaction editors call them from
// QML: records cross as maps of texts, amounts as the text the user typed, and the
// Transactions themselves are built here, with exact decimals.
class LedgerBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // Every account of the Book, archived ones included, in the Book's order: maps of
    // "id" (QUuid text without braces), "name" and "archived".
    Q_PROPERTY(QVariantList accounts READ accounts NOTIFY accountsChanged FINAL)

public:
    explicit LedgerBridge(QObject *parent = nullptr);

    QVariantList accounts() const { return m_accounts; }

    // The transaction with this id as a map: "id", "date" (milliseconds), "accountId",
    // "amount" (decimal text), "magnitude" (the size as the editor shows it, "45.10"),
    // "income", "payee", "category", "note", "cleared" and "kind"; for a transfer side also
    // "fromAccountId" and "toAccountId" (empty when that side is gone). Empty when there is none.
    Q_INVOKABLE QVariantMap transaction(const QString &id) const;
    // The category names the editor offers for money in or money out.
    Q_INVOKABLE QStringList categories(bool income) const;
    // The id of the first account that is not archived; empty when there is none.
    Q_INVOKABLE QString firstAccountId() const;

    // Saves the transaction editor's form: "id" (empty for a new line), "income",
    // "date" (milliseconds), "amount" (as typed), "payee", "category", "accountId",
    // "note" and "cleared". Nothing is saved, and false returned, when the amount is
    // no amount or no account is chosen, or the line is a transfer's side. Otherwise the
    // status line tells what was logged (or why it could not be saved).
    Q_INVOKABLE bool saveTransaction(const QVariantMap &form);
    // The category a bank import would give a line from `payee` (Store::guessCategory).
    Q_INVOKABLE QString guessCategory(const QString &payee, bool income) const;
    // Deletes the transaction, and the other side of a transfer; false when there is none.
    Q_INVOKABLE bool deleteTransaction(const QString &id);
    // Marks the transaction cleared or pending; false when there is none.
    Q_INVOKABLE bool setCleared(const QString &id, bool cleared);
    // Moves the typed amount between two accounts, or, given the id of a transfer side,
    // changes that transfer's two sides; false, and nothing saved, when an account is
    // missing, the amount is no amount or the transfer is gone.
    Q_INVOKABLE bool transfer(const QString &fromId, const QString &toId, const QString &amount, double date,
                              const QString &note, const QString &changedId = QString());

    // Writes the export file; the status line says "Saved <file name>." or why not.
    Q_INVOKABLE bool exportCSV(const QUrl &file);
    // Writes the Book as a journal for ledger and hledger; the status line as for exportCSV().
    Q_INVOKABLE bool exportJournal(const QUrl &file);
    // Where the export's save dialog starts: "Coinhall transactions.csv" in the user's documents.
    Q_INVOKABLE QUrl proposedExportFile() const;

    // Now by the Store's clock, in milliseconds.
    Q_INVOKABLE double now() const;

Q_SIGNALS:
    void accountsChanged();

private:
    void reload() override;

    QVariantList m_accounts;
};
