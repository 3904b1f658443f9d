#pragma once

#include <QStringList>

#include <cstdio>

// The command line for people who script their books. Runs the subcommand named
// in `arguments` (without the program name) and returns the exit status.
int runCommandLine(const QStringList &arguments, std::FILE *out = stdout, std::FILE *err = stderr);

// Whether the arguments ask for the command line rather than the window.
bool wantsCommandLine(const QStringList &arguments);
