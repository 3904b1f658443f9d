// Opens a Store on the folder given and adds transactions until it is killed.
// The crash-safety test starts it, kills it at a random moment and reads the file.
#include "store/store.h"

#include <QCoreApplication>

#include <cstdio>
#include <tuple>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return 2;
    Store store({QString::fromLocal8Bit(argv[1])});
    if (!store.writable())
        return 3;
    const Account account = store.book().accounts[0];
    std::puts("ready");
    std::fflush(stdout);
    // Dates go on from the last run, so the test can see that no line went missing.
    for (int i = int(store.book().transactions.size());; ++i) {
        std::ignore = store.add({.date = Instant::fromSecs(1700000000 + i),
                                 .accountID = account.id,
                                 .amount = Decimal(-i),
                                 .payee = QStringLiteral("Line %1 with some text to make the file longer").arg(i),
                                 .category = QStringLiteral("Groceries")});
    }
}
