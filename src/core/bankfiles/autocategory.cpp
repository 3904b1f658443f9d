#include "bankfiles/autocategory.h"

#include <QSet>

namespace AutoCategory {

namespace {

const QString transfer = QStringLiteral("Transfer");

// The rules' categories as shared strings, so the imported lines share them too.
const std::array<QString, rules.size()> &ruleCategories()
{
    static const std::array<QString, rules.size()> names = [] {
        std::array<QString, rules.size()> made;
        for (size_t i = 0; i < rules.size(); ++i)
            made[i] = QString::fromUtf8(rules[i].category);
        return made;
    }();
    return names;
}

std::optional<QString> fromRules(const QString &lowerPayee)
{
    for (size_t i = 0; i < rules.size(); ++i)
        if (lowerPayee.contains(QLatin1String(rules[i].keyword)))
            return ruleCategories()[i];
    return std::nullopt;
}

QString bySign(const Decimal &amount)
{
    static const QString income = QStringLiteral("Other income");
    static const QString spending = QStringLiteral("Other spending");
    return amount.signum() > 0 ? income : spending;
}

} // namespace

QString guess(const QString &payee, const Decimal &amount, const std::vector<Transaction> &history)
{
    const QString lower = payee.toLower();
    for (const Transaction &t : history)
        if (t.category != transfer && t.payee.toLower() == lower)
            return t.category;
    if (auto category = fromRules(lower))
        return *category;
    return bySign(amount);
}

Guesser::Guesser(const std::vector<Transaction> &history)
{
    // A payee usually recurs many times in a Book; each spelling is lower-cased once.
    QSet<QString> seen;
    for (const Transaction &t : history) {
        if (t.category == transfer || seen.contains(t.payee))
            continue;
        seen.insert(t.payee);
        const QString lower = t.payee.toLower();
        if (!m_fromHistory.contains(lower)) // the first line for a payee is the one guess() finds
            m_fromHistory.insert(lower, t.category);
    }
}

QString Guesser::operator()(const QString &payee, const Decimal &amount) const
{
    const QString lower = payee.toLower();
    if (const auto found = m_fromHistory.constFind(lower); found != m_fromHistory.constEnd())
        return *found;
    auto known = m_fromRules.constFind(lower);
    if (known == m_fromRules.constEnd())
        known = m_fromRules.insert(lower, fromRules(lower));
    return known->has_value() ? **known : bySign(amount);
}

} // namespace AutoCategory
