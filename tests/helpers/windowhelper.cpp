// Starts the window exactly as coinhall does, then does one of the things the
// process tests need to watch from outside:
//   windowhelper DIR changes FIRST  keeps changing the books the way the editors do
//                                   and prints "<kind> <n> <lines> <payments> <note>"
//                                   after each change returns (n counts up from FIRST):
//                                   the Book's lines, the payments of "Rent" and the
//                                   note on "Edited" as saved;
//   windowhelper DIR watch          minimizes its window, prints "ready", and on a
//                                   raise request prints whether it came forward;
//   windowhelper DIR status         prints the window's status line once it is drawn
//                                   and quits.
// A Book for "changes" has the bill "Rent" first, a line with the payee "Edited" and
// at least two active accounts.
#include "singlecopy.h"
#include "store/store.h"
#include "window.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <tuple>

namespace {

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

void atFirstFrame(QQuickWindow &window, std::function<void()> then)
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [connection, then] {
        QObject::disconnect(*connection);
        then();
    });
}

// One change of the kind that number `n` stands for, made through the Store.
QString change(Store &store, qint64 n)
{
    const Book &book = store.book();
    switch (n % 4) {
    case 0:
        std::ignore = store.add({.date = store.now(),
                                 .accountID = book.accounts.at(0).id,
                                 .amount = Decimal(-(n % 1000) - 1),
                                 .payee = QStringLiteral("Change %1").arg(n),
                                 .category = QStringLiteral("Groceries")});
        return QStringLiteral("add");
    case 1:
        for (const Transaction &t : book.transactions) {
            if (t.payee == QLatin1String("Edited")) {
                Transaction edited = t;
                edited.note = QString::number(n);
                std::ignore = store.update(edited);
                return QStringLiteral("update");
            }
        }
        return QStringLiteral("no-edited-line");
    case 2:
        for (const Bill &bill : book.bills) {
            if (bill.name == QLatin1String("Rent")) {
                std::ignore = store.pay(bill, std::nullopt, store.now(), std::nullopt);
                return QStringLiteral("pay");
            }
        }
        return QStringLiteral("no-bill");
    default:
        std::ignore = store.transfer(book.accounts.at(0).id, book.accounts.at(1).id, Decimal(n % 1000 + 1), store.now(),
                                     QStringLiteral("Change %1").arg(n));
        return QStringLiteral("transfer");
    }
}

void keepChanging(Store &store, qint64 n)
{
    const QString kind = change(store, n);
    // A large Book is written on another thread: the change is told once it is on disk.
    store.finishSaving();
    const Book &book = store.book();
    const auto edited = std::find_if(book.transactions.begin(), book.transactions.end(),
                                     [](const Transaction &t) { return t.payee == QLatin1String("Edited"); });
    say(QStringLiteral("%1 %2 %3 %4 %5")
            .arg(kind)
            .arg(n)
            .arg(book.transactions.size())
            .arg(book.bills.at(0).history.size())
            .arg(edited == book.transactions.end() ? -1 : edited->note.toLongLong()));
    QTimer::singleShot(0, &store, [&store, n] { keepChanging(store, n + 1); });
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const QString dir = QString::fromLocal8Bit(argv[1]);
    const QString mode = QString::fromLocal8Bit(argv[2]);
    const qint64 first = argc > 3 ? QByteArray(argv[3]).toLongLong() : 0;
    int windowArgc = 1;

    return runWindow(windowArgc, argv, dir, [&](const WindowParts &parts) {
        Store &store = parts.store;
        QQuickWindow &window = parts.window;
        if (mode == QLatin1String("changes")) {
            if (!store.writable()) {
                say(QStringLiteral("not writable"));
                QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(3); });
                return;
            }
            QTimer::singleShot(0, &store, [&store, first] { keepChanging(store, first); });
        } else if (mode == QLatin1String("watch")) {
            // Connected after the program's own handler, so this sees the window after it acted.
            QObject::connect(&parts.singleCopy, &SingleCopy::raiseRequested, &window, [&window] {
                say(QStringLiteral("raised minimized=%1 visible=%2")
                        .arg(window.windowStates().testFlag(Qt::WindowMinimized))
                        .arg(window.isVisible()));
            });
            atFirstFrame(window, [&window] {
                window.setWindowStates(Qt::WindowMinimized);
                say(QStringLiteral("ready minimized=%1").arg(window.windowStates().testFlag(Qt::WindowMinimized)));
            });
        } else if (mode == QLatin1String("status")) {
            atFirstFrame(window, [&window] {
                QObject *line = window.findChild<QObject *>(QStringLiteral("statusLine"));
                say(line ? QStringLiteral("status: ") + line->property("text").toString()
                         : QStringLiteral("no status line"));
                QTimer::singleShot(0, qApp, &QCoreApplication::quit);
            });
        }
    });
}
