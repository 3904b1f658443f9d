#pragma once

#include <QString>
#include <QStringList>

#include <cstdio>
#include <memory>

class Authenticator;

// Exit statuses of the command line.
namespace ExitStatus {
constexpr int ok = 0;
constexpr int failed = 1;       // an unreadable file, a failed save, an unsound money file, a refused password
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
// The value of --open (what the window shows first): "money-in", "money-out", "import",
// "bills", or empty.
QString openArgument(const QStringList &arguments);

// Where the command line asks for the owner's password when the books ask for
// unlocking: the password is read as one line from `in` (without echo on a
// terminal) and checked by `authenticator`, this platform's own when null.
struct CommandLineUnlock
{
    std::FILE *in = stdin;
    std::shared_ptr<Authenticator> authenticator;
};

// The command line for people who script their books. Runs the subcommand named
// in `arguments` (without the program name) and returns the exit status.
int runCommandLine(const QStringList &arguments, std::FILE *out = stdout, std::FILE *err = stderr,
                   const CommandLineUnlock &unlock = {});
