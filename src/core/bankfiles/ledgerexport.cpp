// The journal export: the Book written for plain-text accounting tools.
#include "bankfiles/ledgerexport.h"

#include "bankfiles/export.h"

#include <QDateTime>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <vector>

namespace {

// Every run of blanks as one space, without blanks at the ends.
QString oneLine(const QString &text)
{
    QString out;
    out.reserve(text.size());
    bool blank = false;
    for (const QChar c : text) {
        if (c.isSpace()) {
            blank = !out.isEmpty();
            continue;
        }
        if (blank)
            out += QLatin1Char(' ');
        blank = false;
        out += c;
    }
    return out;
}

// A payee as an entry's description: on one line, no ";" (a comment in hledger), and
// no leading "*", "!" or "(", which would be read as a mark or a code; those take
// their full-width twins.
QString description(const QString &payee)
{
    QString text = oneLine(payee).replace(QLatin1Char(';'), QLatin1Char(','));
    if (!text.isEmpty()) {
        if (text.front() == QLatin1Char('*'))
            text.front() = QChar(0xFF0A);
        else if (text.front() == QLatin1Char('!'))
            text.front() = QChar(0xFF01);
        else if (text.front() == QLatin1Char('('))
            text.front() = QChar(0xFF08);
    }
    return text;
}

// The amount's exact text with at least two places: "12.50", "1200.00", "-0.125".
QByteArray amountText(const Decimal &amount)
{
    QByteArray text = QByteArray::fromStdString(amount.toStdString());
    const qsizetype point = text.indexOf('.');
    if (point < 0)
        text += ".00";
    else if (text.size() - point == 2)
        text += '0';
    return text;
}

// The currency after each amount: the code as it is when it is letters only, which
// both tools read bare, else in double quotes.
QByteArray commodity(const QString &code)
{
    if (code.isEmpty())
        return {};
    const bool letters = std::all_of(code.begin(), code.end(), [](QChar c) {
        return (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || (c >= QLatin1Char('a') && c <= QLatin1Char('z'));
    });
    if (letters)
        return ' ' + code.toUtf8();
    return " \"" + oneLine(code).remove(QLatin1Char('"')).toUtf8() + '"';
}

// Names made unique within one top account: a second name that comes out the same
// as an earlier one gets " (2)", " (3)", ... so two texts never share a balance.
class Names
{
public:
    explicit Names(const char *top)
        : m_top(top)
    {}

    QByteArray take(const QString &segment)
    {
        QString name = segment;
        for (int n = 2; m_used.contains(name); ++n)
            name = segment + QStringLiteral(" (%1)").arg(n);
        m_used.insert(name);
        return m_top + name.toUtf8();
    }

private:
    QByteArray m_top;
    QSet<QString> m_used;
};

// The local calendar day of an instant as "yyyy-MM-dd", worked out once per day:
// the lines come in date order, so most fall in the day of the line before.
class Days
{
public:
    const QByteArray &text(Instant when)
    {
        if (when.msecs() < m_start || when.msecs() >= m_end) {
            const QDate day = when.toLocal().date();
            m_text = day.toString(Qt::ISODate).toLatin1();
            m_start = QDateTime(day, QTime(0, 0), Qt::LocalTime).toMSecsSinceEpoch();
            m_end = QDateTime(day.addDays(1), QTime(0, 0), Qt::LocalTime).toMSecsSinceEpoch();
            if (when.msecs() < m_start || when.msecs() >= m_end) // a day without its midnight
                m_start = m_end = when.msecs();
        }
        return m_text;
    }

private:
    std::int64_t m_start = 0;
    std::int64_t m_end = 0;
    QByteArray m_text;
};

void posting(QByteArray &out, bool cleared, const QByteArray &account, const Decimal &amount,
             const QByteArray &currency)
{
    out += cleared ? "    * " : "    ";
    out += account;
    // The amount in a column where it can; at least two spaces end the account name.
    for (qsizetype pad = 40 - account.size(); pad > 0; --pad)
        out += ' ';
    out += "  ";
    out += amountText(amount);
    out += currency;
    out += '\n';
}

void header(QByteArray &out, const QByteArray &day, bool cleared, const QString &payee, const QString &note)
{
    out += day;
    if (cleared)
        out += " *";
    const QString text = description(payee);
    if (!text.isEmpty())
        out += ' ' + text.toUtf8();
    const QString comment = oneLine(note);
    if (!comment.isEmpty())
        out += "  ; " + comment.toUtf8();
    out += '\n';
}

} // namespace

QString LedgerExport::accountSegment(const QString &name, const QString &empty)
{
    QString segment =
        oneLine(name).replace(QLatin1Char(';'), QLatin1Char(',')).replace(QLatin1Char(':'), QChar(0x2236));
    return segment.isEmpty() ? empty : segment;
}

QByteArray LedgerExport::journal(const Book &book)
{
    const QByteArray currency = commodity(book.currency);

    const std::vector<const Transaction *> lines = linesOldestFirst(book);

    Names assets("Assets:");
    QHash<QUuid, QByteArray> accountNames;
    for (const Account &a : book.accounts)
        if (!accountNames.contains(a.id)) // the first account with an id is the one the ledger finds
            accountNames.insert(a.id, assets.take(accountSegment(a.name, QStringLiteral("Account"))));
    QByteArray unknownAccount; // for lines whose account is gone, named only when needed
    auto accountOf = [&](const Transaction &t) -> const QByteArray & {
        const auto found = accountNames.constFind(t.accountID);
        if (found != accountNames.cend())
            return *found;
        if (unknownAccount.isEmpty())
            unknownAccount = assets.take(QStringLiteral("Unknown account"));
        return unknownAccount;
    };

    Names incomeNames("Income:"), spendingNames("Expenses:");
    QHash<QString, QByteArray> incomeCategories, spendingCategories;
    auto categoryOf = [&](const QString &category, bool income) -> const QByteArray & {
        QHash<QString, QByteArray> &known = income ? incomeCategories : spendingCategories;
        auto found = known.find(category);
        if (found == known.end())
            found = known.insert(
                category,
                (income ? incomeNames : spendingNames).take(accountSegment(category, QStringLiteral("No category"))));
        return *found;
    };
    QSet<QString> incomeFlagged;
    for (const Category &c : book.categories)
        if (c.income)
            incomeFlagged.insert(c.name);

    // Transfer sides by id, to write both sides of a pair as one entry.
    QHash<QUuid, const Transaction *> transferSides;
    for (const Transaction *t : lines)
        if (t->kind == TxKind::transfer)
            transferSides.insert(t->id, t);
    QSet<QUuid> written;

    QByteArray out;
    out.reserve(qsizetype(lines.size()) * 150 + 1024);
    out += "; Coinhall transactions as a plain-text accounting journal.\n\n";
    Days days;

    Decimal openingTotal;
    QByteArray openings;
    for (const Account &a : book.accounts)
        if (!a.opening.isZero() && accountNames.value(a.id) == accountOf(Transaction{.accountID = a.id})) {
            posting(openings, false, accountOf(Transaction{.accountID = a.id}), a.opening, currency);
            openingTotal += a.opening;
        }
    if (!openings.isEmpty()) {
        header(out, days.text(lines.empty() ? Instant() : lines.front()->date), true,
               QStringLiteral("Opening balances"), {});
        out += openings;
        posting(out, false, "Equity:Opening Balances", openingTotal.negated(), currency);
        out += '\n';
    }

    for (const Transaction *t : lines) {
        if (t->kind == TxKind::transfer) {
            if (written.contains(t->id))
                continue;
            const Transaction *other = t->transferPairID ? transferSides.value(*t->transferPairID) : nullptr;
            if (other && (other == t || other->transferPairID != t->id))
                other = nullptr; // not a pair: a side on its own
            const Transaction *out1 = t, *in1 = other;
            if (other && t->amount.signum() > 0)
                std::swap(out1, in1); // the entry is told from the sending side
            const bool allCleared = t->cleared && (!other || other->cleared);
            header(out, days.text(t->date), allCleared, out1->payee,
                   out1->note.isEmpty() && in1 ? in1->note : out1->note);
            Decimal sum = t->amount;
            if (in1) {
                posting(out, !allCleared && in1->cleared, accountOf(*in1), in1->amount, currency);
                sum += other->amount;
                written.insert(other->id);
            }
            posting(out, !allCleared && out1->cleared, accountOf(*out1), out1->amount, currency);
            // A side without its twin, or sides that disagree, balance against equity
            // so that each account still holds exactly its lines.
            if (!sum.isZero())
                posting(out, false, "Equity:Unmatched transfers", sum.negated(), currency);
            out += '\n';
            continue;
        }
        const bool income = t->amount.signum() > 0 || (t->amount.isZero() && incomeFlagged.contains(t->category));
        header(out, days.text(t->date), t->cleared, t->payee, t->note);
        if (income) {
            posting(out, false, accountOf(*t), t->amount, currency);
            posting(out, false, categoryOf(t->category, true), t->amount.negated(), currency);
        } else {
            posting(out, false, categoryOf(t->category, false), t->amount.negated(), currency);
            posting(out, false, accountOf(*t), t->amount, currency);
        }
        out += '\n';
    }
    return out;
}
