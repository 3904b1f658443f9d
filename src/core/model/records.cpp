#include "model/records.h"

QUuid newId()
{
    return QUuid::createUuid();
}

QString iconName(AccountKind kind)
{
    switch (kind) {
    case AccountKind::checking:
        return QStringLiteral("building.columns");
    case AccountKind::savings:
        return QStringLiteral("banknote");
    case AccountKind::credit:
        return QStringLiteral("creditcard");
    case AccountKind::cash:
        return QStringLiteral("dollarsign.circle");
    case AccountKind::business:
        return QStringLiteral("briefcase");
    case AccountKind::payment:
        return QStringLiteral("iphone");
    case AccountKind::other:
        return QStringLiteral("wallet.pass");
    }
    return QStringLiteral("wallet.pass");
}

bool Category::countsByDefault(const QString &name, bool income)
{
    return income && name != QLatin1String("Refunds") && name != QLatin1String("Transfer");
}

bool Category::countsForSetAside() const
{
    return setAside.value_or(countsByDefault(name, income));
}

std::vector<Category> Category::defaults()
{
    static const char *const income[] = {
        "Royalties",          "Software sales", "Music sales", "Gigs & bookings",
        "Web design clients", "Paycheck",       "Refunds",     "Other income",
    };
    static const char *const spending[] = {
        "Rent / mortgage", "Bills & Utilities", "Phone & internet",   "Insurance",      "Car & gas",       "Groceries",
        "Dining out",      "Subscriptions",     "Software & hosting", "Studio gear",    "Marketing & ads", "Health",
        "Taxes",           "Debt payments",     "Shopping",           "Fees & charges", "Other spending",  "Transfer",
    };
    std::vector<Category> categories;
    categories.reserve(std::size(income) + std::size(spending));
    for (const char *name : income)
        categories.push_back({QString::fromUtf8(name), true, std::nullopt, std::nullopt});
    for (const char *name : spending)
        categories.push_back({QString::fromUtf8(name), false, std::nullopt, std::nullopt});
    return categories;
}
