#pragma once

#include <QString>
#include <QStringList>

#include <cstdio>

// Exit statuses of the command line.
namespace ExitStatus {
constexpr int ok = 0;
constexpr int failed = 1;       // an unreadable file, a failed save, an unsound money file
constexpr int usage = 2;        // wrong arguments or an unknown account
constexpr int heldByWindow = 3; // another Coinhall holds the money file; nothing was changed
} // namespace ExitStatus

// Whether any argument is exactly "--selftest": then nothing else is looked at.
bool wantsSelfTest(const QStringList &arguments);

// Whether the arguments (without the program name) ask for the command line
// rather than the window: a command, "--help" or "--version".
bool wantsCommandLine(const QStringList &arguments);

// The folder given with "--data-dir", made absolute; empty when there is none.
QString dataDirArgument(const QStringList &arguments);

// The command line for people who script their books. Runs the subcommand named
// in `arguments` (without the program name) and returns the exit status.
int runCommandLine(const QStringList &arguments, std::FILE *out = stdout, std::FILE *err = stderr);
