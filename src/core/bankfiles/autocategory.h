#pragma once

#include "model/decimal.h"
#include "model/records.h"

#include <QHash>
#include <QString>

#include <array>
#include <optional>
#include <vector>

// Guesses the category of an imported bank line from its payee: the user's own
// earlier lines first, then a keyword table, then income or spending by sign.
namespace AutoCategory {

// One keyword (lower case, matched anywhere in the lower-cased payee) and its category.
struct Rule
{
    const char *keyword;
    const char *category;
};

// The keyword table; the first matching row wins, so its order matters. Matching is
// plain containment: "parent" falls under "rent", "coffee" under "fee".
inline constexpr std::array<Rule, 59> rules{{
    {"royalt", "Royalties"},
    {"distrokid", "Royalties"},
    {"tunecore", "Royalties"},
    {"cd baby", "Royalties"},
    {"bmi", "Royalties"},
    {"ascap", "Royalties"},
    {"sesac", "Royalties"},
    {"soundexchange", "Royalties"},
    {"stripe", "Software sales"},
    {"paypal", "Other income"},
    {"rent", "Rent / mortgage"},
    {"mortgage", "Rent / mortgage"},
    {"electric", "Bills & Utilities"},
    {"water", "Bills & Utilities"},
    {"gas co", "Bills & Utilities"},
    {"energy", "Bills & Utilities"},
    {"comcast", "Phone & internet"},
    {"xfinity", "Phone & internet"},
    {"verizon", "Phone & internet"},
    {"at&t", "Phone & internet"},
    {"t-mobile", "Phone & internet"},
    {"spectrum", "Phone & internet"},
    {"insurance", "Insurance"},
    {"geico", "Insurance"},
    {"state farm", "Insurance"},
    {"shell", "Car & gas"},
    {"chevron", "Car & gas"},
    {"exxon", "Car & gas"},
    {"conoco", "Car & gas"},
    {"safeway", "Groceries"},
    {"kroger", "Groceries"},
    {"walmart", "Shopping"},
    {"target", "Shopping"},
    {"amazon", "Shopping"},
    {"netflix", "Subscriptions"},
    {"spotify", "Subscriptions"},
    {"hulu", "Subscriptions"},
    {"apple.com", "Subscriptions"},
    {"adobe", "Software & hosting"},
    {"godaddy", "Software & hosting"},
    {"hostinger", "Software & hosting"},
    {"github", "Software & hosting"},
    {"google ads", "Marketing & ads"},
    {"facebook", "Marketing & ads"},
    {"meta ", "Marketing & ads"},
    {"sweetwater", "Studio gear"},
    {"guitar center", "Studio gear"},
    {"irs", "Taxes"},
    {"tax", "Taxes"},
    {"pharmacy", "Health"},
    {"walgreens", "Health"},
    {"cvs", "Health"},
    {"restaurant", "Dining out"},
    {"mcdonald", "Dining out"},
    {"starbucks", "Dining out"},
    {"fee", "Fees & charges"},
    {"interest charge", "Fees & charges"},
    {"payroll", "Paycheck"},
    {"direct dep", "Paycheck"},
}};

// The category for a payee: that of the first line in `history` (newest first in a
// Book) whose payee is the same ignoring case and whose category is not
// "Transfer"; else the first matching rule; else "Other income" for an amount
// above zero and "Other spending" otherwise.
QString guess(const QString &payee, const Decimal &amount, const std::vector<Transaction> &history);

// The same answers as guess() for one history, for many payees: the history is
// looked through once, and each payee's keyword match is remembered.
class Guesser
{
public:
    // Remembers the category of every payee in `history`; the history may go away after.
    explicit Guesser(const std::vector<Transaction> &history);
    // The same as guess(payee, amount, history).
    QString operator()(const QString &payee, const Decimal &amount) const;

private:
    QHash<QString, QString> m_fromHistory;                      // lower-cased payee -> category
    mutable QHash<QString, std::optional<QString>> m_fromRules; // lower-cased payee -> rule's category
};

} // namespace AutoCategory
