#pragma once

#include "model/period.h"
#include "model/records.h"
#include "storelink.h"

#include <QAbstractListModel>
#include <QHash>
#include <QString>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <limits>
#include <vector>

class Store;

// The Book's transactions, newest first, narrowed by the register's filters: one
// account, money in or out, this month only and a free-text search over payee,
// category and note. Follows every change of the Book.
//
// Built for large Books: the lower-cased search keys are made once per Book (when a
// search needs them), a search that only grows narrows the lines already found, and a
// change of the Book that adds or removes a few lines tells the view about those rows
// only, so the list keeps its place.
class TransactionListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    // The Store whose Book is listed; null lists nothing.
    Q_PROPERTY(QObject *store READ store WRITE setStore NOTIFY storeChanged FINAL)
    // Only the lines of this account (QUuid text); empty for all accounts.
    Q_PROPERTY(QString accountFilter READ accountFilter WRITE setAccountFilter NOTIFY accountFilterChanged FINAL)
    // Which lines by their sign, in the order of the register's flow picker.
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged FINAL)
    // Free text looked for, ignoring case, in the payee, category and note.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged FINAL)
    // Only the lines dated in the current month by the Store's clock.
    Q_PROPERTY(bool monthOnly READ monthOnly WRITE setMonthOnly NOTIFY monthOnlyChanged FINAL)
    // At most this many lines (the first ones); 0 for no limit.
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    // "<n> lines"
    Q_PROPERTY(QString linesText READ linesText NOTIFY summaryChanged FINAL)
    // "In " and the sum of the listed amounts above zero as money text.
    Q_PROPERTY(QString inText READ inText NOTIFY summaryChanged FINAL)
    // "Out " and the sum of the listed amounts below zero as money text.
    Q_PROPERTY(QString outText READ outText NOTIFY summaryChanged FINAL)

public:
    // All lines, money in (above zero), money out (below zero).
    enum Flow { AllLines, MoneyIn, MoneyOut };
    Q_ENUM(Flow)

    enum Role {
        TxIdRole = Qt::UserRole + 1,
        DateTextRole,
        PayeeRole,
        CategoryRole,
        NoteRole,
        AccountNameRole,
        AmountRole,
        AmountTextRole,
        NegativeRole,
        KindRole,
        ClearedRole,
    };

    explicit TransactionListModel(QObject *parent = nullptr);

    QObject *store() const { return m_store.object(); }
    void setStore(QObject *store);
    QString accountFilter() const { return m_accountFilter; }
    void setAccountFilter(const QString &accountId);
    Flow flow() const { return m_flow; }
    void setFlow(Flow flow);
    QString search() const { return m_search; }
    void setSearch(const QString &text);
    bool monthOnly() const { return m_monthOnly; }
    void setMonthOnly(bool on);
    int limit() const { return m_limit; }
    void setLimit(int limit);

    int count() const { return int(m_rows.size()); }
    QString linesText() const { return m_linesText; }
    QString inText() const { return m_inText; }
    QString outText() const { return m_outText; }

    // The id of the transaction in `row` as QUuid text without braces; empty outside the list.
    Q_INVOKABLE QString idAt(int row) const;
    // The row of the transaction with this id; -1 when it is not listed.
    Q_INVOKABLE int rowOf(const QString &txId) const;
    // Everything a row shows, by role name ("payee", "amount", ...); empty outside the list.
    Q_INVOKABLE QVariantMap get(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void storeChanged();
    void accountFilterChanged();
    void flowChanged();
    void searchChanged();
    void monthOnlyChanged();
    void limitChanged();
    void countChanged();
    void summaryChanged();

private:
    // The filters in force; `needle` is the search text lower-cased.
    struct Filter
    {
        QUuid account; // null for all accounts
        Flow flow = AllLines;
        bool monthOnly = false;
        ClosedRange month;
        QString needle;
    };
    // The search keys of a list of lines, all in one buffer: per line its lower-cased
    // payee, category and note, each followed by U+0000; `starts` holds where each of
    // them begins, three entries per line, and then the buffer's end.
    struct SearchKeys
    {
        QString text;
        std::vector<qsizetype> starts;
        bool covers(size_t lines) const { return starts.size() == 3 * lines + 1; }
    };

    void reloadBook();
    // Follows a change that only added lines, when it can; false when not.
    bool followAdded();
    void refilter();
    Filter currentFilter() const;
    std::vector<int> cut(const std::vector<int> &matches) const;
    // Shows the listed lines' count and these sums of their amounts in and out.
    void showSummary(const Decimal &in, const Decimal &out);

    static SearchKeys makeKeys(const std::vector<Transaction> &lines);
    // The lines that pass `filter` (among `within`, when given), the first `enough` at most.
    static std::vector<int> matching(const std::vector<Transaction> &lines, const SearchKeys &keys,
                                     const Filter &filter, const std::vector<int> *within,
                                     size_t enough = std::numeric_limits<size_t>::max());

    // The Book's lines; none without a Store.
    const std::vector<Transaction> &bookLines() const;
    // The line listed in `row`; null outside the list.
    const Transaction *lineAt(int row) const;
    // The ids of the lines in `rows`, and the sums of their amounts in and out.
    struct Listed
    {
        std::vector<QUuid> ids;
        DecimalSum in;
        DecimalSum out;
    };
    static Listed listed(const std::vector<Transaction> &lines, const std::vector<int> &rows);

    StoreLink m_store;
    QString m_accountFilter;
    Flow m_flow = AllLines;
    QString m_search;
    bool m_monthOnly = false;
    int m_limit = 0;

    // The rows point into the Store's own lines, which are not copied: a copy of a large
    // Book at every change would cost more than the whole change. The listed lines' ids
    // tell the next change which rows came and went.
    QHash<QUuid, QString> m_accountNames;
    // Empty until a search needs them; then one entry per line of the Book.
    SearchKeys m_keys;

    Filter m_applied;           // the filter m_matches was made with
    bool m_appliedWhole = true; // and whether it was for the whole list or one cut to `limit`
    std::vector<int> m_matches; // the lines that pass it, as indexes into the Book's lines
    std::vector<int> m_rows;    // the listed ones
    std::vector<QUuid> m_rowIds;
    quint64 m_seenChange = 0; // the Store's changeCount() the rows were made at
    Decimal m_in;             // the listed amounts above zero, summed
    Decimal m_out;            // and those below

    QString m_linesText;
    QString m_inText;
    QString m_outText;
};
