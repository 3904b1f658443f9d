// Inputs the fuzzers (fuzz/) turned up, each pinned as found, named after its fault.
#include "bankfilestesting.h"

#include <QUuid>

// A row dated in year 20000 was imported, and the money file then holds a date it
// writes as "20000-01-01T05:00:00Z" and cannot read back: the next start set the
// whole file aside. Such a row is now a bad row, like any other unreadable date.
TEST(FuzzFinds, BankDatePastYear9999IsABadRow)
{
    EXPECT_EQ(local(CSVImporter::date(QStringLiteral("01/01/20000"))), "none");
    EXPECT_EQ(local(CSVImporter::date(QStringLiteral("Jan 1, 12345"))), "none");
    EXPECT_EQ(local(CSVImporter::date(QStringLiteral("12/31/9999"))), "9999-12-31 00:00");

    CSVImporter importer = csv("Date,Description,Amount\n"
                               "01/01/20000,Typo,5\n"
                               "12/31/9999,Far ahead,6\n");
    const CSVImporter::Conversion converted = importer.transactions(QUuid::createUuid(), {}, bySign);
    EXPECT_EQ(converted.bad, 1);
    EXPECT_EQ(converted.newTransactions.size(), 1u); // the money file holds it (model's FuzzFinds)
}
