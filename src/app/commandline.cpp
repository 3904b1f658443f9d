#include "commandline.h"

#include "model/moneyfile.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const char usage[] = R"(Usage: coinhall [--data-dir DIR] [COMMAND]

Without a command, Coinhall opens its window.

Commands:
  check          Read the money file without changing it and say whether it is sound.

Options:
  --data-dir DIR Use DIR as the application folder instead of the default.
  --help         Show this text.
  --version      Show the version.
)";

void print(std::FILE *to, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), to);
    std::fputc('\n', to);
}

// "OK: 2 accounts, 10 transactions, 1 bills, 0 royalties", or the first problem.
int check(const QString &dir, std::FILE *out, std::FILE *err)
{
    const QString path = dir + QStringLiteral("/coinhall.json");
    QFile file(path);
    if (!file.exists()) {
        print(err, QStringLiteral("There is no money file at %1.").arg(QDir::toNativeSeparators(path)));
        return 1;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        print(err, QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
        return 1;
    }
    const QByteArray bytes = file.readAll();
    const MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    if (!decoded.book) {
        print(out, decoded.error);
        return 1;
    }
    const Book &book = *decoded.book;
    print(out, QStringLiteral("OK: %1 accounts, %2 transactions, %3 bills, %4 royalties")
                   .arg(book.accounts.size())
                   .arg(book.transactions.size())
                   .arg(book.bills.size())
                   .arg(book.royalties.size()));
    return 0;
}

} // namespace

bool wantsCommandLine(const QStringList &arguments)
{
    for (const QString &a : arguments)
        if (!a.startsWith(QLatin1String("-")) || a == QLatin1String("--help") || a == QLatin1String("--version"))
            return true;
    return false;
}

int runCommandLine(const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    QString dir;
    QStringList rest;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("--data-dir")) {
            if (i + 1 >= arguments.size()) {
                print(err, QStringLiteral("--data-dir needs a folder."));
                return 2;
            }
            dir = QDir(arguments.at(++i)).absolutePath();
        } else if (a == QLatin1String("--help")) {
            std::fputs(usage, out);
            return 0;
        } else if (a == QLatin1String("--version")) {
            print(out, QStringLiteral("QFS Coinhall " COINHALL_VERSION));
            return 0;
        } else {
            rest.append(a);
        }
    }
    if (dir.isEmpty())
        dir = Store::defaultDir();
    if (rest.isEmpty()) {
        std::fputs(usage, err);
        return 2;
    }

    const QString command = rest.takeFirst();
    if (command == QLatin1String("check") && rest.isEmpty())
        return check(dir, out, err);

    print(err, QStringLiteral("Unknown command or option: %1").arg((QStringList{command} + rest).join(QLatin1Char(' '))));
    std::fputs(usage, err);
    return 2;
}
