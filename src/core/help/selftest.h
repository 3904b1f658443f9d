#pragma once

#include <QString>

#include <cstdint>
#include <cstdio>

// The built-in checks that `coinhall --selftest` runs: money arithmetic, repeat
// schedules, the money file, the default categories, the bank-CSV reader and
// importer, and the help texts. Needs no window, no user data and no settings:
// what it touches is made in memory or in a fresh temporary folder it removes again.
namespace CoinhallSelfTest {
// Runs every check in order, printing the banner, one line per check and the
// result line to `out`. Returns the exit status: 0 when nothing failed, else 1.
// The counters are never reset: call it once per process.
int run(std::FILE *out);
// Counts one finished check and prints "PASS  <label>" or "FAIL  <label>".
void check(std::FILE *out, const QString &label, bool ok);
// The checks passed and failed so far in this process.
std::int64_t passed();
std::int64_t failed();
// "RESULT: ALL <passed> CHECKS PASSED", or "RESULT: <failed> CHECK(S) FAILED".
QString resultLine();
} // namespace CoinhallSelfTest
