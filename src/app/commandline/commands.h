#pragma once
// What the commands of the command line share: printing, their options, and the
// books opened for reading or for writing. Each command lives in a file of its own.

#include "commandline.h"

#include "model/money.h"
#include "model/records.h"
#include "store/sealedfile.h"
#include "store/store.h"

#include <QDir>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>
#include <optional>

namespace CommandLine {

// Writes `text` and a line break, as UTF-8.
void print(std::FILE *to, const QString &text);
// Tells what was wrong with the arguments and where to look; returns ExitStatus::usage.
int usageError(std::FILE *err, const QString &problem);

// A subcommand's own arguments: flags, options with a value, and plain words.
class Options
{
public:
    Options(const QStringList &arguments, const QStringList &flags, const QStringList &valued);

    QString error() const { return m_error; }
    bool has(const QString &name) const { return m_values.contains(name); }
    QString value(const QString &name) const { return m_values.value(name); }
    const QStringList &words() const { return m_words; }

private:
    QHash<QString, QString> m_values;
    QStringList m_words;
    QString m_error;
};

// Encrypted books as the command opened them: the passphrase read at its start, and the
// key it gave for reading. Both null for plain books, and for `check` without a passphrase.
struct Unsealing
{
    std::shared_ptr<const Sealed::Secret> passphrase;
    std::shared_ptr<const Sealed::Key> key;
};
// The command's own, set before it runs.
Unsealing &unsealing();

// The money file as it is on disk: absent, a Book, or why it cannot be used.
struct MoneyFileState
{
    QString path;
    bool exists = false;
    bool sealed = false; // encrypted; without unsealing()'s key nothing more is read
    std::optional<Book> book;
    QString readError;   // the file could not be read
    QString decodeError; // the file was read but is not a sound money file

    bool usable() const { return !exists || book.has_value(); }
    QString problem() const
    {
        return readError.isEmpty() ? QStringLiteral("The money file %1 could not be used: %2")
                                         .arg(QDir::toNativeSeparators(path), decodeError)
                                   : QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), readError);
    }
};

// Reads and decodes the money file without changing anything; encrypted books with
// unsealing()'s key.
MoneyFileState readMoneyFile(const QString &dir);

// A Store for questions only. It answers from a Book read out of the application
// folder, but lives in a private temporary folder of its own, so its start (the
// folder, the lock, the day's backup) creates and changes nothing where the user's
// books are. The Book is set in place: there is nothing to save and no one to tell.
class ReadingStore : public Store
{
public:
    ReadingStore(const QString &scratch, std::optional<Book> book)
        : Store(StoreOptions{scratch})
    {
        // Without a money file the Book stays the new one the Store made, with its
        // default accounts, as the window would show it.
        if (book) {
            mutableBook() = std::move(*book);
            Money::setCode(this->book().currency);
        }
    }
};

// The books of a reading command, or the exit status when they cannot be had.
struct Reading
{
    QTemporaryDir scratch;
    std::unique_ptr<ReadingStore> store;
    int status = ExitStatus::ok;
};

// Opens a Store for questions on the Book in `state`; says why when it cannot.
std::unique_ptr<Reading> openForReading(MoneyFileState state, std::FILE *err);

// The Store on the application folder itself, with the window's save, backup and
// lock rules; null, with `status` set and the reason told, when another Coinhall holds
// the money file or a newer Coinhall wrote it. Open it only on a money file found
// usable (or absent): one that cannot be decoded would be set aside for a new Book.
std::unique_ptr<Store> openForWriting(const QString &dir, std::FILE *err, int &status);

// The commands, each given the application folder and its own arguments.
int check(const QString &dir, std::FILE *out, std::FILE *err);
int importFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);
int exportFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);
int report(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);
int remind(const QString &dir, const QStringList &arguments, std::FILE *err);
int listBackups(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);
int restore(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);
// `in` gives the new passphrase, twice; unsealing() the current one.
int encrypt(const QString &dir, const QStringList &arguments, int in, std::FILE *out, std::FILE *err);
int decrypt(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err);

} // namespace CommandLine
