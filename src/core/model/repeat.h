#pragma once

#include "model/instant.h"
#include "model/records.h"

#include <optional>

// The occurrence after `after` on a schedule: nothing for a one-time schedule.
//
// Days, months and years are added to the local date and time, so the time of day
// stays the same across a daylight-saving change, and a month added to the 31st
// lands on the last day of a shorter month. Each date comes from the one before
// it, so a bill due on 31 January is next due on 28 February and then on 28 March.
// There is none past the end of year 9999 (UTC), the last date a money file holds.
std::optional<Instant> next(Repeat repeat, Instant after);
