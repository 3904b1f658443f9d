#pragma once

#include <QString>

// Opens the one main window on the books in `dataDir` (empty: the default folder)
// and runs until it is closed. Makes the QGuiApplication itself.
int runWindow(int &argc, char **argv, const QString &dataDir);
