#pragma once

#include "model/period.h"
#include "model/records.h"
#include "storelink.h"

#include <QDate>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <vector>

class Store;

// One month of the calendar as plain values, apart from QML so it can be tested alone.
namespace CalendarGrid {

// How many items a day cell lists before "+<n> more".
constexpr int itemsShown = 4;
// Lines in a cell with room for all of that: four items and the "+<n> more" line.
constexpr int fullLines = itemsShown + 1;

// How many of `count` items a cell with room for `lines` item lines lists: all of
// them when they fit and are no more than four, otherwise as many as leave a line
// for "+<n> more" (none when even that is all the room there is).
int itemsListed(int count, int lines);

// What an item is, which decides its colour on screen.
enum class Tone { bill, overdueBill, royalty, moneyIn, moneyOut };

// One entry in a day: a bill due, a royalty expected, or the day's money in or out.
struct Item
{
    QString title;
    Decimal amount; // money out is negative; cells show the magnitude
    Tone tone = Tone::bill;
    friend bool operator==(const Item &, const Item &) = default;
};

// One day of the month with its items: bills, then royalties, then money in and out.
struct Day
{
    QDate date;
    std::vector<Item> items;
};

// The month as the calendar draws it.
struct Month
{
    ClosedRange range;     // the whole month, local time
    int leadingBlanks = 0; // empty cells before the first day
    std::vector<Day> days; // one per day of the month, the first day first
    Decimal billsDue;      // each active bill's amount times its due dates in the month
    Decimal royaltiesDue;  // expected amounts of the pending royalties expected in the month
};

// The empty cells before `first` in a grid whose weeks start on `firstWeekday`.
int leadingBlanks(QDate first, Qt::DayOfWeek firstWeekday);

// The month holding `inMonth`, its grid starting on `firstWeekday`.
Month month(const Store &store, Instant inMonth, Qt::DayOfWeek firstWeekday);

// The hover help of a day: each item as "<title>: <amount>", one a line.
QString helpText(const Day &day);

// The header line: "Bills this month: <sum>   ·   Royalties expected: <sum>".
QString headerText(const Month &month);

} // namespace CalendarGrid

// The calendar screen's month for QML: its grid, each day's items as texts, the
// header's two sums, and stepping between months. Follows every change of the Book.
//
// A day reaches QML as a map: "day" (1-31), "date" (its first instant in ms),
// "today", "items" (every item, each with "title", "amountText" and "tone": "bill",
// "overdue", "royalty", "in" or "out"), "shown" (how many the cell lists, see
// `lines`), "moreText" ("+2 more", or empty) and "help" (the hover text).
class CalendarMonth : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // The weekday the grid's weeks start on, 1 (Monday) to 7 (Sunday); the locale's by default.
    Q_PROPERTY(int firstDayOfWeek READ firstDayOfWeek WRITE setFirstDayOfWeek NOTIFY changed FINAL)
    // The shown month: its year and month number (1-12). It starts at the current month.
    Q_PROPERTY(int year READ year NOTIFY changed FINAL)
    Q_PROPERTY(int month READ month NOTIFY changed FINAL)
    // The shown month's name and year ("March 2025").
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(int leadingBlanks READ leadingBlanks NOTIFY changed FINAL)
    // The days of the month, the first day first.
    Q_PROPERTY(QVariantList days READ days NOTIFY changed FINAL)
    // The day of the month that is today, or 0 when today is in another month.
    Q_PROPERTY(int today READ today NOTIFY changed FINAL)
    // "Bills this month: $120.00   ·   Royalties expected: $0.00"
    Q_PROPERTY(QString headerText READ headerText NOTIFY changed FINAL)
    // How many item lines a day cell has room for, "+<n> more" included: 5 (four items
    // and that line) unless the window is too short for cells that tall.
    Q_PROPERTY(int lines READ lines WRITE setLines NOTIFY changed FINAL)

public:
    explicit CalendarMonth(QObject *parent = nullptr);

    int firstDayOfWeek() const { return int(m_firstDay); }
    void setFirstDayOfWeek(int day);
    int year() const { return m_shown.year(); }
    int month() const { return m_shown.month(); }
    QString title() const { return m_title; }
    int leadingBlanks() const { return m_grid.leadingBlanks; }
    QVariantList days() const { return m_days; }
    int today() const { return m_today; }
    QString headerText() const { return m_header; }
    int lines() const { return m_lines; }
    void setLines(int lines);

    // Shows the month `months` calendar months later (earlier when negative).
    Q_INVOKABLE void step(int months);
    // Shows the current month again.
    Q_INVOKABLE void showToday();
    // Shows the month holding the instant (milliseconds since the epoch).
    Q_INVOKABLE void showMonthOf(double msecs);

Q_SIGNALS:
    void changed();

private:
    void reload() override;
    void linked() override;
    QDate currentDay() const;

    Qt::DayOfWeek m_firstDay;
    QDate m_shown; // the first day of the shown month
    CalendarGrid::Month m_grid;
    QString m_title;
    QVariantList m_days;
    int m_today = 0;
    QString m_header;
    int m_lines = CalendarGrid::fullLines;
};
