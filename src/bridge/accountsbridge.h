#pragma once

#include "storelink.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class BackupShelf;
class Store;

// What the Accounts screen and the account editor show and change: the accounts with
// this month's line count and balance, the total, the spending budgets, and the
// operations behind the editor and the budget rows. Follows every change of the Book.
class AccountsBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // Every account in the Book's order, each a map: id, name, title (the name, with
    // " (closed)" for a closed account), closed, countText, balance (decimal text),
    // balanceText (money text).
    Q_PROPERTY(QVariantList accounts READ accounts NOTIFY changed FINAL)
    // The total balance of the open accounts as money text.
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed FINAL)
    // One entry per category that is not an income category, in the Book's order:
    // index (its place in the Book's category list), name, budget (decimal text; empty
    // for no limit).
    Q_PROPERTY(QVariantList budgets READ budgets NOTIFY changed FINAL)
    // The percent of income set aside for taxes as decimal text; empty when off.
    Q_PROPERTY(QString setAsidePercent READ setAsidePercent NOTIFY changed FINAL)
    // One entry per income category, in the Book's order: name, counts (whether its
    // income counts toward the set-aside).
    Q_PROPERTY(QVariantList setAsideCategories READ setAsideCategories NOTIFY changed FINAL)
    // The account kinds in picker order, as stored and shown ("Checking", "Credit card").
    Q_PROPERTY(QStringList kinds READ kinds CONSTANT FINAL)
    // The label of the unlock toggle, naming what this platform asks for.
    Q_PROPERTY(QString unlockText READ unlockText CONSTANT FINAL)
    // Where the money file and its backups are kept, as this platform puts it.
    Q_PROPERTY(QString privacyText READ privacyText CONSTANT FINAL)
    // The Store's backups folder as a file address, for the file browser.
    Q_PROPERTY(QUrl backupsUrl READ backupsUrl NOTIFY storeChanged FINAL)
    // The daily backups, newest first, each a map: day ("2025-03-04"), dateText ("Mar 4,
    // 2025"), sizeText ("48 KB"), countText ("312 transactions", "cannot be read", or
    // "counting…" until it is read), counted (it has been read) and readable (false once
    // it is found unreadable).
    // Empty until refreshBackups().
    Q_PROPERTY(QVariantList backups READ backups NOTIFY backupsChanged FINAL)

public:
    explicit AccountsBridge(QObject *parent = nullptr);

    QVariantList accounts() const { return m_accounts; }
    QString totalText() const { return m_totalText; }
    QVariantList budgets() const { return m_budgets; }
    QString setAsidePercent() const { return m_setAsidePercent; }
    QVariantList setAsideCategories() const { return m_setAsideCategories; }
    QStringList kinds() const;
    QString unlockText() const;
    QString privacyText() const;
    QUrl backupsUrl() const;
    QVariantList backups() const { return m_backups; }

    // "<n> transaction this month", with the plural "s" unless n is 1.
    static QString monthCountText(int n);

    // Sets the budget of the category at `index` from what was typed: an amount above
    // zero becomes the limit; empty, unreadable, zero or negative text clears it. The
    // Book is written only when the budget really changes; true when it did.
    Q_INVOKABLE bool commitBudget(int index, const QString &typed);
    // Sets the set-aside percent from what was typed (empty or 0 turns it off); the
    // message why it cannot be taken, which saves nothing, or empty.
    Q_INVOKABLE QString commitSetAsidePercent(const QString &typed);
    // Whether income in the category named `name` counts toward the set-aside.
    Q_INVOKABLE bool setCountsForSetAside(const QString &name, bool counts);
    // The account with this id as a map: found, id, name, kind, opening (decimal text),
    // closed, hasTransactions. `found` is false (and the rest empty) for an unknown id.
    Q_INVOKABLE QVariantMap account(const QString &id) const;
    // Saves a new account (empty or unknown id: appended) or a change to one. The
    // starting balance is read as typed; text that is no amount counts as 0. Returns
    // the account's id, or empty when there is no Store or the kind is unknown.
    Q_INVOKABLE QString saveAccount(const QString &id, const QString &name, const QString &kind, const QString &opening,
                                    bool closed);
    // Deletes an account that has no transactions; true when it was removed.
    Q_INVOKABLE bool deleteAccount(const QString &id);
    // Lists the backups folder again; the counts come in as they are read.
    Q_INVOKABLE void refreshBackups();
    // Replaces the books with the backup of `day` ("2025-03-04"), keeping them as they
    // are now beside the money file; the status line tells how it went. True when done.
    Q_INVOKABLE bool restoreBackup(const QString &day);

    // Encryption, for the passphrase sheet. Each returns what was wrong with what was
    // typed ("The two passphrases differ."), or empty when it was done; the status line
    // then says so. The typed texts are turned into locked memory at once.
    Q_INVOKABLE QString encryptBooks(const QString &passphrase, const QString &again);
    Q_INVOKABLE QString changePassphrase(const QString &current, const QString &passphrase, const QString &again);
    Q_INVOKABLE QString decryptBooks(const QString &current);
    // How hard a passphrase would be to guess, in a few words: "Too short: use at least
    // 12 characters.", "Fair: longer is stronger.", "Strong." Empty for empty text.
    Q_INVOKABLE static QString passphraseStrength(const QString &passphrase);

Q_SIGNALS:
    // The accounts, total or budgets may have changed.
    void changed();
    void backupsChanged();

private:
    void reload() override;
    void linked() override;
    void showBackups();

    QVariantList m_accounts;
    QString m_totalText;
    QVariantList m_budgets;
    QString m_setAsidePercent;
    QVariantList m_setAsideCategories;
    BackupShelf *m_shelf = nullptr; // made by the first refreshBackups()
    QVariantList m_backups;
};
