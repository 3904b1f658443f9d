#include "billsbridge.h"

#include "bridgeinput.h"
#include "model/money.h"
#include "model/repeat.h"
#include "store/store.h"

#include <QDateTime>

#include <algorithm>
#include <tuple>

using BridgeInput::idText;

namespace BillTexts {

std::optional<Decimal> monthlyEquivalent(const Bill &bill)
{
    switch (bill.repeats) {
    case Repeat::once:
        return std::nullopt;
    case Repeat::weekly:
        return bill.amount * Decimal(52) / Decimal(12);
    case Repeat::biweekly:
        return bill.amount * Decimal(26) / Decimal(12);
    case Repeat::monthly:
        return bill.amount;
    case Repeat::quarterly:
        return bill.amount / Decimal(3);
    case Repeat::yearly:
        return bill.amount / Decimal(12);
    case Repeat::setDates:
        return bill.amount * Decimal(int(bill.yearDates.size())) / Decimal(12);
    }
    return std::nullopt;
}

Decimal monthlyAverage(const std::vector<Bill> &bills)
{
    Decimal sum;
    for (const Bill &bill : bills)
        if (const std::optional<Decimal> monthly = monthlyEquivalent(bill))
            sum += *monthly;
    return sum.rounded2();
}

QString dueLine(const Bill &bill, bool overdue, QDate today)
{
    QString line;
    if (overdue) {
        line = QStringLiteral("OVERDUE · was due ") + chShort(bill.due);
    } else {
        const qint64 days = today.daysTo(bill.due.toLocal().date());
        if (days == 0)
            line = QStringLiteral("Due today");
        else
            line = QStringLiteral("Due %1 · in %2 day%3")
                       .arg(chShort(bill.due))
                       .arg(days)
                       .arg(days == 1 ? QString() : QStringLiteral("s"));
    }
    if (bill.autopay)
        line += QStringLiteral(" · autopay");
    return line;
}

QString remindText(int days)
{
    return QStringLiteral("Remind me %1 day%2 before (and on the day)")
        .arg(days)
        .arg(days == 1 ? QString() : QStringLiteral("s"));
}

QString nextDueLine(const Bill &bill)
{
    const std::optional<Instant> following = next(bill.repeats, bill.due, bill.yearDates);
    if (!following)
        return QStringLiteral("This is a one-time bill, so it will be marked finished.");
    return QStringLiteral("Next one will be due ") + chDate(*following) + QLatin1Char('.');
}

QString websiteUrl(const QString &website)
{
    return website.startsWith(QLatin1String("http")) ? website : QStringLiteral("https://") + website;
}

} // namespace BillTexts

BillsBridge::BillsBridge(QObject *parent)
    : StoreBridge(parent)
{}

QStringList BillsBridge::repeatNames() const
{
    return BridgeInput::rawValues<Repeat>();
}

double BillsBridge::firstSetDate(const QString &text) const
{
    const std::optional<std::vector<MonthDay>> dates = parseYearDates(text);
    const Instant now = m_store ? m_store->now() : Instant::now();
    const std::optional<Instant> first =
        dates ? next(Repeat::setDates, Instant::fromDateTime(now.toLocal().addDays(-1)), *dates) : std::nullopt;
    return first ? double(first->msecs()) : 0;
}

QString BillsBridge::yearDatesProblem(const QString &text)
{
    return parseYearDates(text) ? QString()
                                : QStringLiteral("Write up to %1 days of the year, such as %2.")
                                      .arg(maxYearDates)
                                      .arg(QLatin1String(usTaxDates));
}

QVariantMap BillsBridge::billMap(const Bill &bill, bool overdue, QDate today)
{
    QVariantList history;
    for (auto p = bill.history.rbegin(); p != bill.history.rend() && history.size() < BillTexts::historyShown; ++p)
        history << QVariantMap{{QStringLiteral("date"), double(p->date.msecs())},
                               {QStringLiteral("dateText"), chDate(p->date)},
                               {QStringLiteral("amountText"), Money::s(p->amount)}};
    return {
        {QStringLiteral("id"), idText(bill.id)},
        {QStringLiteral("name"), bill.name},
        {QStringLiteral("amount"), bill.amount.toString()},
        {QStringLiteral("amountText"), Money::s(bill.amount)},
        {QStringLiteral("editAmount"), Money::editText(bill.amount)},
        {QStringLiteral("due"), double(bill.due.msecs())},
        {QStringLiteral("dueText"), chDate(bill.due)},
        {QStringLiteral("dueShort"), chShort(bill.due)},
        {QStringLiteral("dueLine"), BillTexts::dueLine(bill, overdue, today)},
        {QStringLiteral("overdue"), overdue},
        {QStringLiteral("soon"),
         !overdue && bill.active && today.daysTo(bill.due.toLocal().date()) <= BillTexts::soonDays},
        {QStringLiteral("repeats"), rawValue(bill.repeats)},
        {QStringLiteral("yearDates"), yearDatesText(bill.yearDates)},
        {QStringLiteral("once"), bill.repeats == Repeat::once},
        {QStringLiteral("accountId"), bill.accountID ? idText(*bill.accountID) : QString()},
        {QStringLiteral("category"), bill.category},
        {QStringLiteral("autopay"), bill.autopay},
        {QStringLiteral("remindDays"), bill.remindDays},
        {QStringLiteral("website"), bill.website},
        {QStringLiteral("websiteUrl"), bill.website.isEmpty() ? QString() : BillTexts::websiteUrl(bill.website)},
        {QStringLiteral("websiteLine"),
         bill.website.isEmpty() ? QString() : QStringLiteral("Open %1 to pay.").arg(bill.website)},
        {QStringLiteral("note"), bill.note},
        {QStringLiteral("active"), bill.active},
        {QStringLiteral("nextLine"), BillTexts::nextDueLine(bill)},
        {QStringLiteral("paymentCount"), int(bill.history.size())},
        {QStringLiteral("history"), history},
    };
}

void BillsBridge::reload()
{
    m_active.clear();
    m_finished.clear();
    m_upcoming.clear();
    m_overdue.clear();
    m_recentPayments.clear();
    m_categories.clear();
    Decimal overdueTotal;
    std::vector<Bill> activeBills;
    if (m_store) {
        const QDate today = m_store->now().toLocal().date();
        activeBills = m_store->activeBills();
        for (const Bill &bill : activeBills) {
            const bool late = m_store->isOverdue(bill);
            const QVariantMap map = billMap(bill, late, today);
            m_active << map;
            if (late) {
                m_overdue << map;
                overdueTotal += bill.amount;
            }
        }
        for (const Bill &bill : m_store->upcomingBills(14))
            m_upcoming << billMap(bill, m_store->isOverdue(bill), today);
        for (const Bill &bill : m_store->book().bills)
            if (!bill.active)
                m_finished << billMap(bill, false, today);

        struct Paid
        {
            const Bill *bill;
            const Bill::Payment *payment;
        };
        std::vector<Paid> paid;
        for (const Bill &bill : m_store->book().bills)
            for (const Bill::Payment &payment : bill.history)
                paid.push_back({&bill, &payment});
        std::stable_sort(paid.begin(), paid.end(),
                         [](const Paid &a, const Paid &b) { return a.payment->date > b.payment->date; });
        for (size_t i = 0; i < paid.size() && i < size_t(BillTexts::recentShown); ++i)
            m_recentPayments << QVariantMap{{QStringLiteral("name"), paid[i].bill->name},
                                            {QStringLiteral("date"), double(paid[i].payment->date.msecs())},
                                            {QStringLiteral("dateText"), chDate(paid[i].payment->date)},
                                            {QStringLiteral("amountText"), Money::s(paid[i].payment->amount)}};
        m_categories = m_store->categories(false);
    }
    m_overdueTotalText = Money::s(overdueTotal);
    m_monthlyAverageText = Money::s(BillTexts::monthlyAverage(activeBills));
    emit changed();
}

std::optional<Bill> BillsBridge::find(const QString &id) const
{
    const QUuid uuid(id);
    return !m_store || uuid.isNull() ? std::nullopt : findById(m_store->book().bills, uuid);
}

QVariantMap BillsBridge::bill(const QString &id) const
{
    const std::optional<Bill> found = find(id);
    if (!found)
        return {};
    return billMap(*found, m_store->isOverdue(*found), m_store->now().toLocal().date());
}

QVariantMap BillsBridge::newBill() const
{
    Bill fresh;
    fresh.due = m_store ? m_store->now() : Instant::now();
    const QDate today = fresh.due.toLocal().date();
    QVariantMap map = billMap(fresh, false, today);
    map[QStringLiteral("id")] = QString();
    map[QStringLiteral("editAmount")] = QString();
    return map;
}

bool BillsBridge::saveBill(const QVariantMap &fields)
{
    if (!m_store)
        return false;
    const QString name = fields.value(QStringLiteral("name")).toString();
    const std::optional<Decimal> amount = Money::parse(fields.value(QStringLiteral("amount")).toString());
    const std::optional<Instant> due = BridgeInput::instant(fields.value(QStringLiteral("due")));
    const std::optional<Repeat> repeats = fromRawValue<Repeat>(fields.value(QStringLiteral("repeats")).toString());
    if (name.isEmpty() || !amount || !due || !repeats)
        return false;

    // Starts from the stored bill, so what the editor does not show (history, active) is kept.
    Bill bill = find(fields.value(QStringLiteral("id")).toString()).value_or(Bill{});
    const QUuid id(fields.value(QStringLiteral("id")).toString());
    if (!id.isNull())
        bill.id = id;
    bill.name = name;
    bill.amount = *amount;
    bill.due = *due;
    bill.repeats = *repeats;
    bill.yearDates.clear();
    if (bill.repeats == Repeat::setDates) {
        const auto dates = parseYearDates(fields.value(QStringLiteral("yearDates")).toString());
        if (!dates)
            return false;
        bill.yearDates = *dates;
    }
    bill.accountID = BridgeInput::account(fields.value(QStringLiteral("accountId")).toString());
    if (fields.contains(QStringLiteral("category")))
        bill.category = fields.value(QStringLiteral("category")).toString();
    bill.autopay = fields.value(QStringLiteral("autopay")).toBool();
    if (fields.contains(QStringLiteral("remindDays")))
        bill.remindDays = std::max(0, fields.value(QStringLiteral("remindDays")).toInt());
    bill.website = fields.value(QStringLiteral("website")).toString();
    bill.note = fields.value(QStringLiteral("note")).toString();
    // A failed write still closes the editor: the Book holds the bill, and the status line says why it is not saved.
    return m_store->save(bill).changed;
}

bool BillsBridge::pay(const QString &id, const QString &amountText, double date, const QString &accountId)
{
    const std::optional<Bill> found = find(id);
    const std::optional<Decimal> amount = Money::parse(amountText);
    const std::optional<Instant> on = BridgeInput::instant(date);
    if (!found || !amount || !on)
        return false;
    return m_store->pay(*found, amount, *on, BridgeInput::account(accountId)).changed;
}

void BillsBridge::skip(const QString &id)
{
    if (const std::optional<Bill> found = find(id))
        std::ignore = m_store->skip(*found);
}

void BillsBridge::deleteBill(const QString &id)
{
    if (const std::optional<Bill> found = find(id))
        std::ignore = m_store->deleteBill(*found);
}

QString BillsBridge::remindText(int days) const
{
    return BillTexts::remindText(days);
}
