// coinhall encrypt and coinhall decrypt: the books' encryption from the command line.
#include "commands.h"

namespace CommandLine {

int encrypt(const QString &dir, const QStringList &arguments, int in, std::FILE *out, std::FILE *err)
{
    if (!arguments.isEmpty())
        return usageError(err, QStringLiteral("encrypt takes no arguments; it reads the new passphrase twice."));
    // Read before the books are opened, so that a mistyped one changes nothing.
    const std::optional<Sealed::Secret> first = Sealed::Secret::readLine(in, "New passphrase: ");
    const std::optional<Sealed::Secret> again = Sealed::Secret::readLine(in, "The new passphrase again: ");
    if (!first || first->empty()) {
        print(err, QStringLiteral("A passphrase cannot be empty, so nothing was changed."));
        return ExitStatus::failed;
    }
    if (!again || !(*first == *again)) {
        print(err, QStringLiteral("The two passphrases differ, so nothing was changed."));
        return ExitStatus::failed;
    }
    int status = ExitStatus::ok;
    const std::unique_ptr<Store> store = openForWriting(dir, err, status);
    if (!store)
        return status;
    if (!store->loadError().isEmpty())
        print(err, store->status());
    const Saved done = store->encryptWith(*first);
    print(done ? out : err, store->status());
    return done ? ExitStatus::ok : ExitStatus::failed;
}

int decrypt(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    if (!arguments.isEmpty())
        return usageError(err, QStringLiteral("decrypt takes no arguments."));
    if (!unsealing().passphrase) {
        print(err, QStringLiteral("Your books are not encrypted."));
        return ExitStatus::failed;
    }
    int status = ExitStatus::ok;
    const std::unique_ptr<Store> store = openForWriting(dir, err, status);
    if (!store)
        return status;
    const Saved done = store->decrypt();
    print(done ? out : err, store->status());
    return done ? ExitStatus::ok : ExitStatus::failed;
}

} // namespace CommandLine
