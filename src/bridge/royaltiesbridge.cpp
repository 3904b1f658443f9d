#include "royaltiesbridge.h"

#include "bridgeinput.h"
#include "model/money.h"
#include "store/store.h"

#include <algorithm>
#include <tuple>

using BridgeInput::idText;

namespace RoyaltyTexts {

QString payerLine(const Royalty &royalty)
{
    return royalty.status == RoyaltyStatus::disputed ? royalty.payer + QStringLiteral(" · FOLLOWING UP")
                                                     : royalty.payer;
}

QString workLine(const Royalty &royalty)
{
    QStringList parts;
    for (const QString &part : {royalty.work, royalty.period})
        if (!part.isEmpty())
            parts << part;
    return parts.join(QStringLiteral(" · "));
}

QString versusExpected(const Royalty &royalty)
{
    const Decimal got = royalty.receivedAmount.value_or(Decimal());
    return Money::signed_(got - royalty.expectedAmount) + QStringLiteral(" vs expected");
}

QString scheduleName(Repeat repeat)
{
    switch (repeat) {
    case Repeat::once:
        return {};
    case Repeat::weekly:
        return QStringLiteral("weekly");
    case Repeat::biweekly:
        return QStringLiteral("biweekly");
    case Repeat::monthly:
        return QStringLiteral("monthly");
    case Repeat::quarterly:
        return QStringLiteral("quarterly");
    case Repeat::yearly:
    case Repeat::setDates: // bills only
        return QStringLiteral("yearly");
    }
    return {};
}

QString receiveExplanation(const Royalty &royalty)
{
    QString text = QStringLiteral("It's added to your income under Royalties.");
    if (royalty.repeats != Repeat::once)
        text += QStringLiteral(" The next ") + scheduleName(royalty.repeats) +
                QStringLiteral(" statement is lined up automatically.");
    return text;
}

std::vector<std::pair<QString, Decimal>> paidByPayer(const std::vector<Royalty> &royalties, const ClosedRange &year)
{
    std::vector<std::pair<QString, Decimal>> totals;
    for (const Royalty &r : royalties) {
        if (r.status != RoyaltyStatus::received || !r.receivedDate || !year.contains(*r.receivedDate))
            continue;
        auto row = std::find_if(totals.begin(), totals.end(), [&](const auto &t) { return t.first == r.payer; });
        if (row == totals.end())
            totals.emplace_back(r.payer, r.receivedAmount.value_or(Decimal()));
        else
            row->second += r.receivedAmount.value_or(Decimal());
    }
    std::stable_sort(totals.begin(), totals.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
    return totals;
}

} // namespace RoyaltyTexts

RoyaltiesBridge::RoyaltiesBridge(QObject *parent)
    : StoreBridge(parent)
{}

QStringList RoyaltiesBridge::sourceNames() const
{
    return BridgeInput::rawValues<RoyaltySource>();
}

QStringList RoyaltiesBridge::repeatNames() const
{
    QStringList names = BridgeInput::rawValues<Repeat>();
    names.removeAll(rawValue(Repeat::setDates)); // a bill's schedule only
    return names;
}

QVariantMap RoyaltiesBridge::royaltyMap(const Royalty &r)
{
    return {
        {QStringLiteral("id"), idText(r.id)},
        {QStringLiteral("payer"), r.payer},
        {QStringLiteral("payerLine"), RoyaltyTexts::payerLine(r)},
        {QStringLiteral("followingUp"), r.status == RoyaltyStatus::disputed},
        {QStringLiteral("source"), rawValue(r.source)},
        {QStringLiteral("work"), r.work},
        {QStringLiteral("period"), r.period},
        {QStringLiteral("workLine"), RoyaltyTexts::workLine(r)},
        {QStringLiteral("expectedAmount"), r.expectedAmount.toString()},
        {QStringLiteral("expectedText"), Money::s(r.expectedAmount)},
        {QStringLiteral("editExpected"), Money::editText(r.expectedAmount)},
        {QStringLiteral("expectedDate"), double(r.expectedDate.msecs())},
        {QStringLiteral("expectedDateText"), chDate(r.expectedDate)},
        {QStringLiteral("status"), rawValue(r.status)},
        {QStringLiteral("received"), r.status == RoyaltyStatus::received},
        {QStringLiteral("receivedText"), r.receivedAmount ? Money::s(*r.receivedAmount) : QString()},
        {QStringLiteral("editReceived"), r.receivedAmount ? Money::editText(*r.receivedAmount) : QString()},
        {QStringLiteral("receivedDate"), r.receivedDate ? double(r.receivedDate->msecs()) : 0.0},
        {QStringLiteral("receivedDateText"), r.receivedDate ? chDate(*r.receivedDate) : QString()},
        {QStringLiteral("versus"), RoyaltyTexts::versusExpected(r)},
        {QStringLiteral("accountId"), r.accountID ? idText(*r.accountID) : QString()},
        {QStringLiteral("note"), r.note},
        {QStringLiteral("repeats"), rawValue(r.repeats)},
        {QStringLiteral("once"), r.repeats == Repeat::once},
        {QStringLiteral("explanation"), RoyaltyTexts::receiveExplanation(r)},
    };
}

void RoyaltiesBridge::reload()
{
    m_expected.clear();
    m_received.clear();
    m_payers.clear();
    Decimal receivedThisYear;
    Decimal stillExpected;
    m_year = 0;
    if (m_store) {
        for (const Royalty &r : m_store->pendingRoyalties())
            m_expected << royaltyMap(r);

        std::vector<Royalty> received;
        std::copy_if(m_store->book().royalties.begin(), m_store->book().royalties.end(), std::back_inserter(received),
                     [](const Royalty &r) { return r.status == RoyaltyStatus::received; });
        // A received royalty without a date sorts as the distant past.
        std::stable_sort(received.begin(), received.end(), [](const Royalty &a, const Royalty &b) {
            return a.receivedDate.value_or(Instant::distantPast()) > b.receivedDate.value_or(Instant::distantPast());
        });
        for (const Royalty &r : received)
            m_received << royaltyMap(r);

        const Instant now = m_store->now();
        for (const auto &[payer, total] :
             RoyaltyTexts::paidByPayer(m_store->book().royalties, Calendar::yearRange(now)))
            m_payers << QVariantMap{{QStringLiteral("payer"), payer}, {QStringLiteral("totalText"), Money::s(total)}};
        m_year = now.toLocal().date().year();
        receivedThisYear = m_store->royaltiesReceivedThisYear();
        stillExpected = m_store->royaltiesExpected();
    }
    m_receivedThisYearText = Money::s(receivedThisYear);
    m_stillExpectedText = Money::s(stillExpected);
    emit changed();
}

std::optional<Royalty> RoyaltiesBridge::find(const QString &id) const
{
    const QUuid uuid(id);
    return !m_store || uuid.isNull() ? std::nullopt : findById(m_store->book().royalties, uuid);
}

QVariantMap RoyaltiesBridge::royalty(const QString &id) const
{
    const std::optional<Royalty> found = find(id);
    return found ? royaltyMap(*found) : QVariantMap();
}

QVariantMap RoyaltiesBridge::newRoyalty() const
{
    Royalty fresh;
    fresh.expectedDate = m_store ? m_store->now() : Instant::now();
    QVariantMap map = royaltyMap(fresh);
    map[QStringLiteral("id")] = QString();
    map[QStringLiteral("editExpected")] = QString();
    return map;
}

bool RoyaltiesBridge::saveRoyalty(const QVariantMap &fields)
{
    if (!m_store)
        return false;
    const QString payer = fields.value(QStringLiteral("payer")).toString();
    const QString expectedText = fields.value(QStringLiteral("amount")).toString().trimmed();
    const QString receivedText = fields.value(QStringLiteral("got")).toString().trimmed();
    const std::optional<Decimal> expected = expectedText.isEmpty() ? Decimal() : Money::parse(expectedText);
    const std::optional<Decimal> received = receivedText.isEmpty() ? std::nullopt : Money::parse(receivedText);
    const std::optional<Instant> expectedDate = BridgeInput::instant(fields.value(QStringLiteral("expectedDate")));
    const std::optional<RoyaltySource> source =
        fromRawValue<RoyaltySource>(fields.value(QStringLiteral("source")).toString());
    const std::optional<Repeat> repeats = fromRawValue<Repeat>(fields.value(QStringLiteral("repeats")).toString());
    if (payer.isEmpty() || !expected || (!receivedText.isEmpty() && !received) || !expectedDate || !source || !repeats ||
        *repeats == Repeat::setDates)
        return false;

    // Starts from the stored royalty, so what the editor does not show is kept.
    Royalty r = find(fields.value(QStringLiteral("id")).toString()).value_or(Royalty{});
    const QUuid id(fields.value(QStringLiteral("id")).toString());
    if (!id.isNull())
        r.id = id;
    r.payer = payer;
    r.source = *source;
    r.work = fields.value(QStringLiteral("work")).toString();
    r.period = fields.value(QStringLiteral("period")).toString();
    r.expectedAmount = *expected;
    r.expectedDate = *expectedDate;
    r.repeats = *repeats;
    r.accountID = BridgeInput::account(fields.value(QStringLiteral("accountId")).toString());
    // The toggle sets "Following up"; clearing it goes back to "Expected".
    const bool followingUp = fields.value(QStringLiteral("followingUp")).toBool();
    if (followingUp)
        r.status = RoyaltyStatus::disputed;
    else if (r.status == RoyaltyStatus::disputed)
        r.status = RoyaltyStatus::expected;
    if (received)
        r.receivedAmount = *received;
    r.note = fields.value(QStringLiteral("note")).toString();
    return m_store->save(r).changed;
}

bool RoyaltiesBridge::canReceive(const QString &amountText) const
{
    const std::optional<Decimal> amount = Money::parse(amountText);
    return amount && amount->signum() > 0;
}

bool RoyaltiesBridge::receive(const QString &id, const QString &amountText, double date, const QString &accountId)
{
    const std::optional<Royalty> found = find(id);
    const std::optional<Instant> on = BridgeInput::instant(date);
    if (!found || !canReceive(amountText) || !on)
        return false;
    return m_store->receive(*found, *Money::parse(amountText), *on, BridgeInput::account(accountId)).changed;
}

void RoyaltiesBridge::deleteRoyalty(const QString &id)
{
    if (const std::optional<Royalty> found = find(id))
        std::ignore = m_store->deleteRoyalty(*found);
}
