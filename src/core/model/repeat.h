#pragma once

#include "model/instant.h"
#include "model/records.h"

#include <QString>

#include <optional>
#include <span>
#include <vector>

// The occurrence after `after` on a schedule: nothing for a one-time schedule.
//
// Days, months and years are added to the local date and time, so the time of day
// stays the same across a daylight-saving change, and a month added to the 31st
// lands on the last day of a shorter month. Each date comes from the one before
// it, so a bill due on 31 January is next due on 28 February and then on 28 March.
// There is none past the end of year 9999 (UTC), the last date a money file holds.
//
// On set dates each year, the next is the first of `dates` (in calendar order) after
// `after`'s day, at the same time of day: after the year's last pair, the first pair of
// the next year. A day past a month's end is the month's last day, each year anew.
std::optional<Instant> next(Repeat repeat, Instant after, std::span<const MonthDay> dates = {});

// The most pairs a bill's set dates may have.
inline constexpr int maxYearDates = 12;

// "Apr 15, Jun 15, Sep 15, Jan 15" (any order, commas or spaces between pairs, month
// names in English, full or short) as pairs in calendar order; nothing when a pair is
// no real day of some year (Apr 31), a pair comes twice, there are none or more than
// maxYearDates.
std::optional<std::vector<MonthDay>> parseYearDates(const QString &text);
// The pairs as "Jan 15, Apr 15, Jun 15, Sep 15".
QString yearDatesText(std::span<const MonthDay> dates);
// The same in the money file's form: "01-15,04-15,06-15,09-15"; read by parseYearDates too.
QString yearDatesKey(std::span<const MonthDay> dates);
