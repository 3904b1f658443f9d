#pragma once

#include "model/instant.h"
#include "model/records.h"
#include "platform/notifier.h"

#include <optional>
#include <vector>

// Which bill reminders to schedule: pure logic over a snapshot of the bills.
namespace ReminderPlan {

// Only the soonest bills get reminders, which keeps a rebuild at 60 requests or fewer.
constexpr int billsCovered = 30;

// The requests for `bills` (the active bills, soonest due first): for each of the
// first 30, one on the due day and one `remindDays` days before, at 09:00 local
// time, leaving out every one that would fire at or before `now`.
std::vector<ReminderRequest> requests(const std::vector<Bill> &bills, Instant now);

// 09:00 local time on the day of `day`; when that day has no 09:00 (a clock change),
// the first valid moment after it; when 09:00 happens twice, the first. Nothing
// when the day cannot be worked out.
std::optional<Instant> nineOClock(const QDateTime &day);

} // namespace ReminderPlan
