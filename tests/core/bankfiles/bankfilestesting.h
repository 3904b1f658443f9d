#pragma once

#include "bankfiles/csvimporter.h"
#include "helpers/testing.h"

#include <gtest/gtest.h>

#include <string>

// A date as the user sees it here ("2024-03-05 00:00" local time), or "none".
inline std::string local(const std::optional<Instant> &when)
{
    if (!when)
        return "none";
    return when->toLocal().toString(QStringLiteral("yyyy-MM-dd HH:mm")).toStdString();
}

// An importer over inline CSV text; fails the test when there is none.
inline CSVImporter csv(const char *text)
{
    std::optional<CSVImporter> importer = CSVImporter::fromText(QString::fromUtf8(text));
    if (!importer) {
        ADD_FAILURE() << "no importer for: " << text;
        return *CSVImporter::fromText(QStringLiteral("Date\n"));
    }
    return *importer;
}

// A categoriser that only tells money in from money out.
inline QString bySign(const QString &, const Decimal &amount)
{
    return amount.signum() > 0 ? QStringLiteral("In") : QStringLiteral("Out");
}

// "date=0 description=2 amount=- debit=- credit=- category=-", then " marker=5" when
// there is one.
inline std::string describe(const CSVImporter::Mapping &m)
{
    auto one = [](const char *name, const std::optional<int> &column) {
        return std::string(name) + "=" + (column ? std::to_string(*column) : std::string("-"));
    };
    return one("date", m.date) + " " + one("description", m.description) + " " + one("amount", m.amount) + " " +
           one("debit", m.debit) + " " + one("credit", m.credit) + " " + one("category", m.category) +
           (m.marker ? " " + one("marker", m.marker) : std::string());
}

// A transaction as "2024-03-05 Corner cafe -4.5", its local day only.
inline std::string shown(const Transaction &t)
{
    return local(t.date).substr(0, 10) + " " + t.payee.toStdString() + " " + t.amount.toStdString();
}
