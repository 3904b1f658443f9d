#pragma once

#include "storelink.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class Store;

// The figures of the Reports screen for one of its five periods: the four tiles, the
// category rows of both sides with their totals, the spending budgets and how many
// months of budget the period is compared with. Follows every change of the Book.
class ReportsBridge : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // The Store to report on; null reports nothing.
    Q_PROPERTY(QObject *store READ store WRITE setStore NOTIFY storeChanged FINAL)
    // The chosen period, 0-4 in picker order; any other number reports "This month".
    Q_PROPERTY(int period READ period WRITE setPeriod NOTIFY periodChanged FINAL)
    // The picker's five labels, in period order.
    Q_PROPERTY(QStringList periodLabels READ periodLabels CONSTANT FINAL)
    // Income over the period as money text.
    Q_PROPERTY(QString incomeText READ incomeText NOTIFY changed FINAL)
    // Spending over the period as money text.
    Q_PROPERTY(QString spendingText READ spendingText NOTIFY changed FINAL)
    // Income minus spending with an explicit sign ("+$12.00").
    Q_PROPERTY(QString netText READ netText NOTIFY changed FINAL)
    // The royalties' share of income as whole percent text, "—" without income.
    Q_PROPERTY(QString royaltyShareText READ royaltyShareText NOTIFY changed FINAL)
    // Income and spending as decimal text, the totals of the two category lists.
    Q_PROPERTY(QString income READ income NOTIFY changed FINAL)
    Q_PROPERTY(QString spending READ spending NOTIFY changed FINAL)
    // The category rows, largest first, each a map of name and amount (decimal text).
    Q_PROPERTY(QVariantList incomeRows READ incomeRows NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList spendingRows READ spendingRows NOTIFY changed FINAL)
    // Category name -> monthly budget (decimal text) of every category that has one;
    // the first category of a name wins.
    Q_PROPERTY(QVariantMap budgets READ budgets NOTIFY changed FINAL)
    // Months of budget the period's spending is compared with: 1 or 12.
    Q_PROPERTY(int months READ months NOTIFY periodChanged FINAL)
    // The last six months, oldest first, for the chart: each a map of month (the
    // month's first instant in milliseconds), monthText ("Jun"), in and out (numbers
    // for the bar heights), inText and outText (money text).
    Q_PROPERTY(QVariantList monthly READ monthly NOTIFY changed FINAL)

public:
    explicit ReportsBridge(QObject *parent = nullptr);

    QObject *store() const { return m_store.object(); }
    void setStore(QObject *store);
    int period() const { return m_period; }
    void setPeriod(int period);
    QStringList periodLabels() const;
    QString incomeText() const { return m_incomeText; }
    QString spendingText() const { return m_spendingText; }
    QString netText() const { return m_netText; }
    QString royaltyShareText() const { return m_royaltyShareText; }
    QString income() const { return m_income; }
    QString spending() const { return m_spending; }
    QVariantList incomeRows() const { return m_incomeRows; }
    QVariantList spendingRows() const { return m_spendingRows; }
    QVariantMap budgets() const { return m_budgets; }
    int months() const;
    QVariantList monthly() const { return m_monthly; }

Q_SIGNALS:
    void storeChanged();
    void periodChanged();
    // The figures may have changed.
    void changed();

private:
    void reload();

    StoreLink m_store;
    int m_period = 0;
    QString m_incomeText, m_spendingText, m_netText, m_royaltyShareText, m_income, m_spending;
    QVariantList m_incomeRows, m_spendingRows, m_monthly;
    QVariantMap m_budgets;
};

// The lines of a category list as the Reports screen draws them: for each row its
// share of the total, the percent text, the money text and, for a budgeted category,
// the limit over the period's months and whether the amount went over it.
class CategoryShares : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit CategoryShares(QObject *parent = nullptr);

    // `rows` are maps of name and amount (decimal text), `total` decimal text,
    // `budgets` name -> monthly budget (decimal text), `months` the budget months.
    // Each line is a map: name, amountText, share (0 to 1, a number for the bar;
    // 0 when the total is not above zero), percentText ("37%", truncated), budgetText
    // ("budget $300.00", empty without a budget) and over (strictly above the limit).
    Q_INVOKABLE QVariantList lines(const QVariantList &rows, const QString &total, const QVariantMap &budgets,
                                   int months) const;
};
