#pragma once

#include <QString>

// `coinhall --render-screens DIR`: draws the root view with every screen and every
// sheet, in every look, at 100% and 200% zoom, into PNG files in `dir`
// (<look>-<zoom>-<view>.png), from a Book of demo data in a temporary folder. The
// user's books and settings are never read or written. Works without a display
// (offscreen unless QT_QPA_PLATFORM says otherwise). Makes its own QGuiApplication;
// returns the exit status.
int renderScreens(int &argc, char **argv, const QString &dir);
