// What the commands share: printing, options and opening the books.
#include "commands.h"

#include "model/money.h"
#include "model/moneyfile.h"

#include <QDir>
#include <QFile>

namespace CommandLine {

namespace {
const QString moneyFileName = QStringLiteral("coinhall.json");
} // namespace

void print(std::FILE *to, const QString &text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), to);
}

int usageError(std::FILE *err, const QString &problem)
{
    print(err, problem);
    print(err, QStringLiteral("See coinhall --help."));
    return ExitStatus::usage;
}

Options::Options(const QStringList &arguments, const QStringList &flags, const QStringList &valued)
{
    for (qsizetype i = 0; i < arguments.size() && m_error.isEmpty(); ++i) {
        const QString &a = arguments.at(i);
        if (flags.contains(a)) {
            m_values.insert(a, QString());
        } else if (valued.contains(a)) {
            if (i + 1 >= arguments.size())
                m_error = QStringLiteral("%1 needs a value.").arg(a);
            else
                m_values.insert(a, arguments.at(++i));
        } else if (a.startsWith(QLatin1String("--"))) {
            m_error = QStringLiteral("Unknown option: %1").arg(a);
        } else {
            m_words.append(a);
        }
    }
}

Unsealing &unsealing()
{
    static Unsealing current;
    return current;
}

MoneyFileState readMoneyFile(const QString &dir)
{
    MoneyFileState state;
    state.path = dir + QLatin1Char('/') + moneyFileName;
    QFile file(state.path);
    state.exists = file.exists();
    if (!state.exists)
        return state;
    if (!file.open(QIODevice::ReadOnly)) {
        state.readError = file.errorString();
        return state;
    }
    if (Sealed::looksSealed(file.peek(8))) {
        state.sealed = true;
        if (!unsealing().key) {
            state.decodeError = QStringLiteral("it is encrypted");
            return state;
        }
        QByteArray plain;
        if (Sealed::open(file.readAll(), *unsealing().key, &plain, &state.decodeError) != Sealed::Opened::ok) {
            if (state.decodeError.isEmpty())
                state.decodeError = QStringLiteral("it is encrypted with another passphrase");
            return state;
        }
        MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size())));
        state.book = std::move(decoded.book);
        state.decodeError = decoded.error;
        return state;
    }
    MoneyFile::Decoded decoded = MoneyFile::decodeFile(file);
    state.book = std::move(decoded.book);
    state.decodeError = decoded.error;
    return state;
}

std::unique_ptr<Reading> openForReading(MoneyFileState state, std::FILE *err)
{
    auto reading = std::make_unique<Reading>();
    if (!state.usable()) {
        print(err, state.problem());
        reading->status = ExitStatus::failed;
    } else if (!reading->scratch.isValid()) {
        print(err, QStringLiteral("Could not make a temporary folder: %1").arg(reading->scratch.errorString()));
        reading->status = ExitStatus::failed;
    } else {
        reading->store = std::make_unique<ReadingStore>(reading->scratch.path(), std::move(state.book));
    }
    return reading;
}

std::unique_ptr<Store> openForWriting(const QString &dir, std::FILE *err, int &status)
{
    StoreOptions options{dir};
    options.passphrase = unsealing().passphrase;
    auto store = std::make_unique<Store>(std::move(options));
    if (store->needsPassphrase()) {
        print(err, QStringLiteral("That passphrase did not open your books, so nothing was read or changed."));
        status = ExitStatus::failed;
        return nullptr;
    }
    if (store->writable())
        return store;
    if (store->fromNewerVersion()) {
        print(err, store->status());
        status = ExitStatus::failed;
        return nullptr;
    }
    status = ExitStatus::heldByWindow;
    print(err, QStringLiteral("Coinhall is open with the money file in %1, so nothing was changed. "
                              "Close Coinhall and try again.")
                   .arg(QDir::toNativeSeparators(store->dir())));
    return nullptr;
}

} // namespace CommandLine
