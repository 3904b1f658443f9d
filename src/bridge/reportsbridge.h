#pragma once

#include "storelink.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

class Store;

// The figures of the Reports screen for one of its five periods: the four tiles, the
// category rows of both sides with their totals, the spending budgets and how many
// months of budget the period is compared with. Follows every change of the Book.
class ReportsBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // The chosen period, in picker order; any other number reports "This month".
    Q_PROPERTY(Period period READ period WRITE setPeriod NOTIFY periodChanged FINAL)
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
    // The category lists as drawn, largest first, each line a map: name, amountText,
    // share (0 to 1, for the bar), percentText ("37%", truncated), budgetText ("budget
    // $300.00" over the period's budget months, empty without a budget) and over
    // (strictly above that limit). Income lines carry no budgets.
    Q_PROPERTY(QVariantList incomeLines READ incomeLines NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList spendingLines READ spendingLines NOTIFY changed FINAL)
    // Months of budget the period's spending is compared with: 1 or 12.
    Q_PROPERTY(int months READ months NOTIFY periodChanged FINAL)
    // The last six months, oldest first, for the chart: each a map of month (the
    // month's first instant in milliseconds), monthText ("Jun"), in and out (numbers
    // for the bar heights), inText and outText (money text).
    Q_PROPERTY(QVariantList monthly READ monthly NOTIFY changed FINAL)
    // "Set aside for taxes" over the period, as the dashboard's tile shows it for the year:
    // shown while a percent is set, the percent ("25%"), and as money text what is due,
    // what was paid under "Taxes", and what is still to put aside (or, when `overpaid`,
    // the excess paid).
    Q_PROPERTY(bool setAsideShown READ setAsideShown NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsidePercentText READ setAsidePercentText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsideDueText READ setAsideDueText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsidePaidText READ setAsidePaidText NOTIFY changed FINAL)
    Q_PROPERTY(QString setAsideLeftText READ setAsideLeftText NOTIFY changed FINAL)
    Q_PROPERTY(bool overpaid READ overpaid NOTIFY changed FINAL)
    // The years that hold lines, newest first, for the "Tax year" choice.
    Q_PROPERTY(QVariantList taxYears READ taxYears NOTIFY changed FINAL)
    // The year the document keys write: last year when it has lines, else the newest
    // year there is; 0 without lines. Another year than those offered is refused.
    Q_PROPERTY(int taxYear READ taxYear WRITE setTaxYear NOTIFY taxYearChanged FINAL)

public:
    // The five periods in picker order, as ReportPeriod has them.
    enum Period { ThisMonth, LastMonth, ThisYear, Last12Months, LastYear };
    Q_ENUM(Period)

    explicit ReportsBridge(QObject *parent = nullptr);

    Period period() const { return m_period; }
    void setPeriod(Period period);
    QStringList periodLabels() const;
    QString incomeText() const { return m_incomeText; }
    QString spendingText() const { return m_spendingText; }
    QString netText() const { return m_netText; }
    QString royaltyShareText() const { return m_royaltyShareText; }
    QVariantList incomeLines() const { return m_incomeLines; }
    QVariantList spendingLines() const { return m_spendingLines; }
    int months() const;
    QVariantList monthly() const { return m_monthly; }
    QVariantList taxYears() const { return m_taxYears; }
    bool setAsideShown() const { return m_setAsideShown; }
    QString setAsidePercentText() const { return m_setAsidePercentText; }
    QString setAsideDueText() const { return m_setAsideDueText; }
    QString setAsidePaidText() const { return m_setAsidePaidText; }
    QString setAsideLeftText() const { return m_setAsideLeftText; }
    bool overpaid() const { return m_overpaid; }
    int taxYear() const { return m_taxYear; }
    void setTaxYear(int year);

    // The year's report for the accountant written to `file` as a PDF document, or as
    // CSV; the status line says "Saved <file name>." or "Could not save: <reason>".
    Q_INVOKABLE bool saveYearPdf(const QUrl &file);
    Q_INVOKABLE bool saveYearCsv(const QUrl &file);
    // The year's report through the desktop's print dialog; false when it was not
    // printed (cancelled, or no dialog in this program), the status line says which.
    Q_INVOKABLE bool printYear();
    // Where the save dialogs start: "Coinhall 2025.<suffix>" in the documents folder.
    Q_INVOKABLE QUrl proposedYearFile(const QString &suffix) const;

Q_SIGNALS:
    void periodChanged();
    void taxYearChanged();
    // The figures may have changed.
    void changed();

private:
    void reload() override;

    Period m_period = ThisMonth;
    QString m_incomeText, m_spendingText, m_netText, m_royaltyShareText;
    QVariantList m_incomeLines, m_spendingLines, m_monthly, m_taxYears;
    int m_taxYear = 0;
    bool m_setAsideShown = false, m_overpaid = false;
    QString m_setAsidePercentText, m_setAsideDueText, m_setAsidePaidText, m_setAsideLeftText;
    bool m_taxYearChosen = false; // by the user: kept while it has lines

    bool saveYear(const QUrl &file, bool pdf);
};
