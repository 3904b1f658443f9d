#pragma once

#include <QString>

#include <functional>

class QQmlEngine;
class QQuickWindow;
class SingleCopy;
class Store;

// What a window process is made of once its window is up.
struct WindowParts
{
    Store &store;
    QQuickWindow &window;
    SingleCopy &singleCopy;
};

// Opens the one main window on the books in `dataDir` (empty: the default folder)
// and runs until it is closed. Makes the QGuiApplication itself, so call it before
// any other application object exists. A second copy raises the first and returns 0.
// `shown`, when set, runs once the window is up, just before the event loop starts.
int runWindow(int &argc, char **argv, const QString &dataDir,
              const std::function<void(const WindowParts &)> &shown = {});

// What every process that shows Coinhall's QML needs once its QGuiApplication
// exists: the application's names, the controls' style and the embedded type faces.
void prepareWindowApplication();

// Makes the QML module and `store` (as the singleton "Store") available to `engine`.
void connectEngine(QQmlEngine &engine, Store &store);
