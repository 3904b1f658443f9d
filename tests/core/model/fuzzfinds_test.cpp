// Inputs the fuzzers (fuzz/) turned up, each pinned as found, named after its fault.
#include "model/moneyfile.h"

#include <gtest/gtest.h>

namespace {

MoneyFile::Decoded decode(const QByteArray &json)
{
    return MoneyFile::decode(std::string_view(json.constData(), std::size_t(json.size())));
}

QByteArray oneLineDated(const char *date)
{
    return QByteArray(R"({"accounts": [], "bills": [], "categories": [], "currency": "USD", "royalties": [],
"transactions": [{"accountID": "6F1C2B9E-0A4D-4C1E-9B7A-3D2E1F0A9B8C", "amount": -45.1, "category": "",
"cleared": true, "date": ")") +
           date + R"(", "id": "C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C53", "kind": "expense",
"note": "", "payee": ""}], "version": 2})";
}

} // namespace

// The offset moved the date into year -1 (or 10000), which the file then wrote as
// "-001-12-31T23:30:00Z": a save that the next start could not read.
TEST(FuzzFinds, OffsetThatMovesADateOutOfYears0To9999IsNoDate)
{
    EXPECT_EQ(decode(oneLineDated("0000-01-01T00:30:00+01:00")).error,
              "transactions[0].date: not a date \"0000-01-01T00:30:00+01:00\"");
    EXPECT_EQ(decode(oneLineDated("9999-12-31T23:30:00-01:00")).error,
              "transactions[0].date: not a date \"9999-12-31T23:30:00-01:00\"");

    // The first and last second of the range still read, and are written back alike.
    for (const char *edge : {"0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z", "0000-01-01T01:00:00+01:00"}) {
        const MoneyFile::Decoded decoded = decode(oneLineDated(edge));
        ASSERT_TRUE(decoded.book) << edge << ": " << decoded.error.toStdString();
        const QByteArray saved = MoneyFile::encode(*decoded.book);
        EXPECT_EQ(decode(saved).book, decoded.book) << edge;
    }
}

// RapidJSON 1.1.0 offsets its still-null parse stack on the first key; the sanitizer
// builds leave that one check out of its header (fuzz/ignorelist.txt). The input:
TEST(FuzzFinds, FileCutAfterItsFirstValueParsesFromAnEmptyStack)
{
    EXPECT_EQ(decode("{\"version\": 1,").error, "line 1, column 15: Missing a name for object member.");
}
