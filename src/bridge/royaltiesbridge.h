#pragma once

#include "model/period.h"
#include "model/records.h"
#include "storelink.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <utility>
#include <vector>

class Store;

// The texts and sums of the royalties screen, apart from QML so they can be tested alone.
namespace RoyaltyTexts {

// The payer as the "Expected" list shows it: " · FOLLOWING UP" added while the user follows it up.
QString payerLine(const Royalty &royalty);
// The work and the period joined by " · ", leaving out whichever is empty.
QString workLine(const Royalty &royalty);
// The received amount against the expected one: "+$18.75 vs expected", "-$5.00 vs
// expected", "$0.00 vs expected"; a missing received amount counts as zero.
QString versusExpected(const Royalty &royalty);
// A schedule as it reads in "The next <name> statement": "weekly", "biweekly",
// "monthly", "quarterly", "yearly"; empty for a one-time schedule.
QString scheduleName(Repeat repeat);
// The receive sheet's explanation, with the line about the next statement for a repeating royalty.
QString receiveExplanation(const Royalty &royalty);
// The royalties received in `year`, summed per exact payer text, largest total first
// (equal totals keep the order in which the payers first appear).
std::vector<std::pair<QString, Decimal>> paidByPayer(const std::vector<Royalty> &royalties, const ClosedRange &year);

} // namespace RoyaltyTexts

// The Store's royalties for QML: the lists and totals of the royalties screen as
// display texts, and the royalty operations of its sheets. Amounts come in as the
// text the user typed and go to the Store as exact decimals. Follows every change.
//
// A royalty reaches QML as a map: "id", "payer", "payerLine", "followingUp",
// "source", "work", "period", "workLine", "expectedAmount" (exact decimal text),
// "expectedText", "editExpected", "expectedDate" (ms since the epoch),
// "expectedDateText", "status", "received", "receivedText", "editReceived",
// "receivedDate" (ms, or 0 when none), "receivedDateText", "versus", "accountId",
// "note", "repeats", "once" and "explanation".
class RoyaltiesBridge : public StoreBridge
{
    Q_OBJECT
    QML_ELEMENT
    // The royalties not yet received, soonest expected first.
    Q_PROPERTY(QVariantList expected READ expected NOTIFY changed FINAL)
    // The received royalties, newest received first.
    Q_PROPERTY(QVariantList received READ received NOTIFY changed FINAL)
    // Who paid this calendar year: "payer", "totalText", largest first.
    Q_PROPERTY(QVariantList payers READ payers NOTIFY changed FINAL)
    // The current calendar year, as the Store's clock has it.
    Q_PROPERTY(int year READ year NOTIFY changed FINAL)
    // The amounts received this year, as money text.
    Q_PROPERTY(QString receivedThisYearText READ receivedThisYearText NOTIFY changed FINAL)
    // The expected amounts still to come, as money text.
    Q_PROPERTY(QString stillExpectedText READ stillExpectedText NOTIFY changed FINAL)
    // The ten kinds of royalty in picker order.
    Q_PROPERTY(QStringList sourceNames READ sourceNames CONSTANT FINAL)
    // The six schedules in picker order.
    Q_PROPERTY(QStringList repeatNames READ repeatNames CONSTANT FINAL)

public:
    explicit RoyaltiesBridge(QObject *parent = nullptr);

    QVariantList expected() const { return m_expected; }
    QVariantList received() const { return m_received; }
    QVariantList payers() const { return m_payers; }
    int year() const { return m_year; }
    QString receivedThisYearText() const { return m_receivedThisYearText; }
    QString stillExpectedText() const { return m_stillExpectedText; }
    QStringList sourceNames() const;
    QStringList repeatNames() const;

    // The stored royalty with this id as a map; an empty map when there is none.
    Q_INVOKABLE QVariantMap royalty(const QString &id) const;
    // A new royalty's map: the record defaults, expected now, an empty payer and amount.
    Q_INVOKABLE QVariantMap newRoyalty() const;
    // Saves a royalty from the editor's fields ("id", empty for a new one, "payer",
    // "source", "work", "period", "amount" (the expected amount as typed),
    // "expectedDate", "repeats", "accountId", "followingUp", "got" (the received
    // amount as typed), "note"). An empty expected amount counts as zero and an
    // empty "got" leaves the received amount as it was. False, with nothing saved, when the payer is empty or a
    // non-empty amount text is no amount.
    Q_INVOKABLE bool saveRoyalty(const QVariantMap &fields);
    // Marks the royalty received: `amountText` (as typed, above zero) on the day of
    // `date` into the account. False, with nothing changed, for a text that is no
    // amount above zero or a royalty that is gone.
    Q_INVOKABLE bool receive(const QString &id, const QString &amountText, double date, const QString &accountId);
    // Whether the typed text is an amount above zero, the only kind a receipt takes.
    Q_INVOKABLE bool canReceive(const QString &amountText) const;
    // Removes the royalty; a deposit booked for it stays.
    Q_INVOKABLE void deleteRoyalty(const QString &id);

    // The map QML gets for a royalty.
    static QVariantMap royaltyMap(const Royalty &royalty);

Q_SIGNALS:
    void changed();

private:
    void reload() override;
    std::optional<Royalty> find(const QString &id) const;

    QVariantList m_expected;
    QVariantList m_received;
    QVariantList m_payers;
    int m_year = 0;
    QString m_receivedThisYearText;
    QString m_stillExpectedText;
};
