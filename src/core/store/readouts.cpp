// The header's read-outs: the Store's figures as the screens show them.
#include "store/store.h"

#include "model/money.h"

#include <algorithm>

QString Store::totalText() const
{
    return Money::s(totalBalance());
}

QString Store::royaltiesDueText() const
{
    return Money::s(royaltiesExpected());
}

int Store::dueSoonCount() const
{
    return int(upcomingBills(14).size());
}

int Store::overdueCount() const
{
    const std::vector<Bill> bills = activeBills();
    return int(std::count_if(bills.begin(), bills.end(), [this](const Bill &b) { return isOverdue(b); }));
}
