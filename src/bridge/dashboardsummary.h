#pragma once

#include "storelink.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

class Store;

// The dashboard's figures as the screen shows them: the five tiles, the accounts with
// their balances, the royalties on the way and the six months of the chart. Follows
// every change of the Book.
class DashboardSummary : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // "Total balance": the active accounts' balances added up, as money text.
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed FINAL)
    // "In this month" and "Out this month" as money text.
    Q_PROPERTY(QString inText READ inText NOTIFY changed FINAL)
    Q_PROPERTY(QString outText READ outText NOTIFY changed FINAL)
    // "Net this month": in minus out, as money text, and whether it is below zero.
    Q_PROPERTY(QString netText READ netText NOTIFY changed FINAL)
    Q_PROPERTY(bool netNegative READ netNegative NOTIFY changed FINAL)
    // "Royalties this year": the royalties received this calendar year, as money text.
    Q_PROPERTY(QString royaltiesText READ royaltiesText NOTIFY changed FINAL)
    // "Set aside for taxes" for this calendar year: whether the tile shows (a percent is
    // set), the percent ("25%"), what is due so far, what was paid under "Taxes", and
    // what is still to put aside, or what was overpaid when `overpaid`, as money text.
    Q_PROPERTY(bool setAsideShown READ setAsideShown NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsidePercentText READ setAsidePercentText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsideDueText READ setAsideDueText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsidePaidText READ setAsidePaidText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsideLeftText READ setAsideLeftText NOTIFY changed FINAL)
    Q_PROPERTY(bool overpaid READ overpaid NOTIFY changed FINAL)
    // The active accounts in the Book's order: "id", "name", "icon" (symbol name),
    // "balanceText" (balance now, money text) and "negative".
    Q_PROPERTY(QVariantList accounts READ accounts NOTIFY changed FINAL)
    // The first five royalties not yet received, soonest first: the royalties screen's
    // royalty maps with "expectedLine" ("Expected Mar 4") added.
    Q_PROPERTY(QVariantList royalties READ royalties NOTIFY changed FINAL)
    // The last six months, oldest first, for MonthlyChart: "month" (first instant in
    // ms), "monthText" ("Jun"), "in" and "out" (numbers for the bar heights), "inText"
    // and "outText" (money text).
    Q_PROPERTY(QVariantList months READ months NOTIFY changed FINAL)

public:
    // How many pending royalties the dashboard lists.
    static constexpr int royaltiesShown = 5;
    // How many months the chart covers.
    static constexpr int chartMonths = 6;

    explicit DashboardSummary(QObject *parent = nullptr);

    QString totalText() const { return m_totalText; }
    QString inText() const { return m_inText; }
    QString outText() const { return m_outText; }
    QString netText() const { return m_netText; }
    bool netNegative() const { return m_netNegative; }
    QString royaltiesText() const { return m_royaltiesText; }
    bool setAsideShown() const { return m_setAsideShown; }
    QString setAsidePercentText() const { return m_setAsidePercentText; }
    QString setAsideDueText() const { return m_setAsideDueText; }
    QString setAsidePaidText() const { return m_setAsidePaidText; }
    QString setAsideLeftText() const { return m_setAsideLeftText; }
    bool overpaid() const { return m_overpaid; }
    QVariantList accounts() const { return m_accounts; }
    QVariantList royalties() const { return m_royalties; }
    QVariantList months() const { return m_months; }

    // The chart's maps for the last `count` months of the Store, oldest first.
    static QVariantList monthMaps(const Store &store, int count);

Q_SIGNALS:
    void changed();

private:
    void reload() override;

    QString m_totalText, m_inText, m_outText, m_netText, m_royaltiesText;
    bool m_netNegative = false;
    bool m_setAsideShown = false, m_overpaid = false;
    QString m_setAsidePercentText, m_setAsideDueText, m_setAsidePaidText, m_setAsideLeftText;
    QVariantList m_accounts, m_royalties, m_months;
};
