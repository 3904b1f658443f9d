// coinhall check: whether the money file is sound.
#include "commands.h"

#include <QDir>

namespace CommandLine {

// "OK: 2 accounts, 10 transactions, 1 bills, 0 royalties", or the first problem.
int check(const QString &dir, std::FILE *out, std::FILE *err)
{
    const MoneyFileState state = readMoneyFile(dir);
    if (!state.exists) {
        print(err, QStringLiteral("There is no money file at %1.").arg(QDir::toNativeSeparators(state.path)));
        return ExitStatus::failed;
    }
    if (!state.readError.isEmpty()) {
        print(err, state.problem());
        return ExitStatus::failed;
    }
    if (state.sealed && !unsealing().key) {
        // Told without the passphrase: the header is sound and the size is the one it gives.
        const QString damage = Sealed::wholenessOfFile(state.path);
        if (!damage.isEmpty()) {
            print(out, QStringLiteral("The money file is encrypted and damaged: %1.").arg(damage));
            return ExitStatus::failed;
        }
        print(out, QStringLiteral("OK: the money file is encrypted and whole (not decrypted; give its passphrase "
                                  "with --passphrase-fd to check what it holds)"));
        return ExitStatus::ok;
    }
    if (!state.book) {
        print(out, state.decodeError);
        return ExitStatus::failed;
    }
    const Book &book = *state.book;
    print(out, QStringLiteral("OK: %1 accounts, %2 transactions, %3 bills, %4 royalties")
                   .arg(book.accounts.size())
                   .arg(book.transactions.size())
                   .arg(book.bills.size())
                   .arg(book.royalties.size()));
    return ExitStatus::ok;
}

} // namespace CommandLine
