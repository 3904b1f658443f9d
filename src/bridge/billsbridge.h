#pragma once

#include "model/records.h"
#include "storelink.h"

#include <QDate>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

class Store;

// The texts and sums of the bill screens, apart from QML so they can be tested alone.
namespace BillTexts {

// How many payments the bill editor's history lists, newest first.
constexpr int historyShown = 12;
// How many payments "Recently paid" lists.
constexpr int recentShown = 8;
// A bill due within this many days gets the orange dot.
constexpr int soonDays = 3;

// What the bill costs in an average month: ×52÷12 weekly, ×26÷12 every two weeks,
// ÷3 quarterly, ÷12 yearly, multiplying before dividing; nothing for a one-time bill.
std::optional<Decimal> monthlyEquivalent(const Bill &bill);
// The monthly equivalents of the bills added up exactly, then rounded to cents, half to even.
Decimal monthlyAverage(const std::vector<Bill> &bills);

// The due line of a bill row: "OVERDUE · was due Mar 4" when overdue, else "Due today"
// or "Due Mar 9 · in 5 days"; " · autopay" at the end when the company takes the money.
QString dueLine(const Bill &bill, bool overdue, QDate today);

// "Remind me 3 days before (and on the day)"; "1 day" without the s.
QString remindText(int days);

// What paying does to the schedule: the finishing line for a one-time bill, else
// "Next one will be due <date>." with the due date after the current one.
QString nextDueLine(const Bill &bill);

// The address a bill's website text opens: "https://" is put in front unless it begins with "http".
QString websiteUrl(const QString &website);

} // namespace BillTexts

// The Store's bills for QML: the lists and figures of the bills screen as display
// texts, and the bill operations of its sheets. Amounts come in as the text the user
// typed and go to the Store as exact decimals. Follows every change of the Book.
//
// A bill reaches QML as a map: "id", "name", "amount" (exact decimal text),
// "amountText" (money text), "editAmount", "due" (ms since the epoch), "dueText",
// "dueShort", "dueLine", "overdue", "soon" (due within three days), "repeats", "once", "accountId", "category",
// "autopay", "remindDays", "website", "websiteUrl", "websiteLine", "note",
// "active", "nextLine", "paymentCount" and "history" (the newest payments, each
// with "date", "dateText", "amountText").
class BillsBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // The active bills, soonest due first.
    Q_PROPERTY(QVariantList active READ active NOTIFY changed FINAL)
    // The finished (inactive) bills, in the Book's order.
    Q_PROPERTY(QVariantList finished READ finished NOTIFY changed FINAL)
    // The active bills due within the next 14 days, overdue ones included, soonest first.
    Q_PROPERTY(QVariantList upcoming READ upcoming NOTIFY changed FINAL)
    // The active bills that were due before today.
    Q_PROPERTY(QVariantList overdue READ overdue NOTIFY changed FINAL)
    // The overdue bills' usual amounts added up, as money text.
    Q_PROPERTY(QString overdueTotalText READ overdueTotalText NOTIFY changed FINAL)
    // What the active bills cost in an average month, as money text.
    Q_PROPERTY(QString monthlyAverageText READ monthlyAverageText NOTIFY changed FINAL)
    // The latest payments of all bills, newest first: "name", "date", "dateText", "amountText".
    Q_PROPERTY(QVariantList recentPayments READ recentPayments NOTIFY changed FINAL)
    // The seven schedules in picker order.
    Q_PROPERTY(QStringList repeatNames READ repeatNames CONSTANT FINAL)
    // The schedule of set dates, and the days of the year the US taxes estimated
    // income on, which the bill editor offers as one choice.
    Q_PROPERTY(QString setDatesName READ setDatesName CONSTANT FINAL)
    Q_PROPERTY(QString usTaxDatesText READ usTaxDatesText CONSTANT FINAL)
    // The spending categories for the bill editor's picker.
    Q_PROPERTY(QStringList categories READ categories NOTIFY changed FINAL)

public:
    // Estimated income tax in the US: April 15, June 15, September 15, January 15.
    static constexpr const char *usTaxDates = "Apr 15, Jun 15, Sep 15, Jan 15";

    explicit BillsBridge(QObject *parent = nullptr);

    QVariantList active() const { return m_active; }
    QVariantList finished() const { return m_finished; }
    QVariantList upcoming() const { return m_upcoming; }
    QVariantList overdue() const { return m_overdue; }
    QString overdueTotalText() const { return m_overdueTotalText; }
    QString monthlyAverageText() const { return m_monthlyAverageText; }
    QVariantList recentPayments() const { return m_recentPayments; }
    QStringList repeatNames() const;
    static QString setDatesName() { return rawValue(Repeat::setDates); }
    static QString usTaxDatesText() { return QString::fromLatin1(usTaxDates); }
    QStringList categories() const { return m_categories; }

    // The stored bill with this id as a map; an empty map when there is none.
    Q_INVOKABLE QVariantMap bill(const QString &id) const;
    // A new bill's map: the record defaults, due now, an empty name and amount.
    Q_INVOKABLE QVariantMap newBill() const;
    // Saves a bill from the editor's fields ("id", empty for a new bill, "name",
    // "amount" as typed, "due", "repeats", "yearDates" as typed for set dates,
    // "accountId", "category", "autopay", "remindDays", "website", "note"). False,
    // with nothing saved, when the name is empty, the amount is no amount or the set
    // dates are no days of the year. Says "Saved bill <name>." in the status line.
    Q_INVOKABLE bool saveBill(const QVariantMap &fields);
    // Pays the bill `amountText` (as typed) on the day of `date` from the account;
    // false, with nothing paid, when the text is no amount or the bill is gone.
    Q_INVOKABLE bool pay(const QString &id, const QString &amountText, double date, const QString &accountId);
    // Moves the bill past its current due date without paying.
    Q_INVOKABLE void skip(const QString &id);
    // Removes the bill; lines its payments booked stay.
    Q_INVOKABLE void deleteBill(const QString &id);
    // The first of the set dates `text` from today on, at this time of day; 0 when
    // `text` is no set dates.
    Q_INVOKABLE double firstSetDate(const QString &text) const;
    // Why `text` is no set dates of a year (parseYearDates), in a sentence; empty when it is.
    Q_INVOKABLE static QString yearDatesProblem(const QString &text);
    // The reminder stepper's caption for `days`.
    Q_INVOKABLE QString remindText(int days) const;

    // The map QML gets for a bill, with today's date for its due line.
    static QVariantMap billMap(const Bill &bill, bool overdue, QDate today);

Q_SIGNALS:
    void changed();

private:
    void reload() override;
    std::optional<Bill> find(const QString &id) const;

    QVariantList m_active;
    QVariantList m_finished;
    QVariantList m_upcoming;
    QVariantList m_overdue;
    QString m_overdueTotalText;
    QString m_monthlyAverageText;
    QVariantList m_recentPayments;
    QStringList m_categories;
};
