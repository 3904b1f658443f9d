#include "helpers/testing.h"
#include "model/money.h"

#include <gtest/gtest.h>

#include <random>

TEST(DateText, UsesLocaleAndNewYorkTime)
{
    const auto texts = [](const char *iso) { return QStringList{chDate(at(iso)), chShort(at(iso)), chMonth(at(iso))}; };
    EXPECT_EQ(texts("2025-03-04T09:00:00Z"), (QStringList{"Mar 4, 2025", "Mar 4", "March 2025"}));
    // Still the old year in New York.
    EXPECT_EQ(texts("2025-01-01T03:00:00Z"), (QStringList{"Dec 31, 2024", "Dec 31", "December 2024"}));
}

TEST(InstantIso, WritesUtcWholeSeconds)
{
    EXPECT_EQ(Instant::fromSecs(1741078800).isoText(), "2025-03-04T09:00:00Z");
    EXPECT_EQ(Instant::fromMSecs(1999).isoText(), "1970-01-01T00:00:01Z");
    EXPECT_EQ(Instant::fromMSecs(-1).isoText(), "1969-12-31T23:59:59Z");
    EXPECT_EQ(Instant::distantPast().isoText(), "0001-01-01T00:00:00Z");
    EXPECT_EQ(Instant::distantFuture().isoText(), "4001-01-01T00:00:00Z");
}

TEST(InstantIso, ReadsEveryZoneForm)
{
    const std::int64_t nine = 1741078800000;
    EXPECT_EQ(at("2025-03-04T09:00:00Z").msecs(), nine);
    EXPECT_EQ(at("2025-03-04T04:00:00-05:00").msecs(), nine);
    EXPECT_EQ(at("2025-03-04T14:30:00+0530").msecs(), nine);
    EXPECT_EQ(at("2025-03-04T09:00:00.25Z").msecs(), nine + 250);
    EXPECT_EQ(at("2025-03-04T09:00:00.1239Z").msecs(), nine + 123);
    EXPECT_EQ(at("2024-02-29T23:59:59Z").isoText(), "2024-02-29T23:59:59Z");
    EXPECT_EQ(at("1900-03-01T00:00:00Z").isoText(), "1900-03-01T00:00:00Z");
}

TEST(InstantIso, RejectsAnythingElse)
{
    for (const char *bad :
         {"2025-02-30T00:00:00Z", "2023-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2025-03-04T09:00:00",
          "2025-13-01T00:00:00Z", "2025-00-10T00:00:00Z", "2025-03-00T00:00:00Z", "2025-03-04T24:00:00Z",
          "2025-03-04T09:60:00Z", "2025-03-04T09:00:60Z", "2025-03-04 09:00:00Z", "2025-3-4T09:00:00Z",
          "2025-03-04T09:00:00.Z", "2025-03-04T09:00:00+05", "2025-03-04T09:00:00z", "2025-03-04T09:00:00Zjunk",
          "2025-03-04T09:00:00+05:3x", "+025-03-04T09:00:00Z", "garbage"})
        EXPECT_FALSE(Instant::fromIso(bad)) << bad;
    EXPECT_FALSE(Instant::fromIso(""));
}

TEST(InstantIso, AgreesWithQtOverFourMillennia)
{
    std::mt19937_64 rng(7);
    for (int i = 0; i < 5000; ++i) {
        const auto msecs = std::int64_t(rng() % 126000000000000ULL) - 62000000000000LL;
        const Instant when = Instant::fromMSecs(msecs);
        const std::string text = when.isoText();
        const QDateTime utc = QDateTime::fromMSecsSinceEpoch(when.wholeSeconds().msecs(), Qt::UTC);
        EXPECT_EQ(QString::fromStdString(text), utc.toString(Qt::ISODate));
        EXPECT_EQ(Instant::fromIso(text), when.wholeSeconds()) << text;
    }
}
