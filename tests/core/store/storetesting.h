#pragma once

#include "helpers/testing.h"
#include "model/moneyfile.h"
#include "store/store.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

// A line of `amount` filed under Groceries; fields in Transaction's order.
inline Transaction line(const Account &account, const char *iso, const char *amount, const char *payee = "Payee",
                        TxKind kind = TxKind::expense)
{
    return {newId(), at(iso), account.id, d(amount), QString::fromUtf8(payee), QStringLiteral("Groceries"),
            {},      false,   kind};
}

inline Book decodeFile(const QString &path)
{
    const QByteArray bytes = readAll(path);
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    EXPECT_TRUE(decoded.book.has_value()) << decoded.error.toStdString();
    return decoded.book.value_or(Book{});
}

// One account holding `lines` equal lines, as an earlier run may have saved it.
inline Book studioBook(int lines = 0)
{
    Book book;
    book.accounts.push_back({.name = QStringLiteral("Studio"), .kind = AccountKind::business, .opening = d("100")});
    for (int i = 0; i < lines; ++i)
        book.transactions.push_back(line(book.accounts[0], "2025-03-04T09:00:00Z", "-12.5", "Corner shop"));
    return book;
}

// One text field of each record, in order.
template <class Record> std::vector<QString> each(const std::vector<Record> &records, QString Record::*field)
{
    std::vector<QString> out;
    for (const Record &r : records)
        out.push_back(r.*field);
    return out;
}

// The permission bits in octal ("600"), or "missing"; a link's own.
inline std::string modeOf(const QString &path)
{
    struct stat st = {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return "missing";
    return QString::number(st.st_mode & 0777, 8).toStdString();
}

// Lowers one resource limit while it lives; even root cannot pass it. SIGXFSZ is ignored
// meanwhile, so that with RLIMIT_FSIZE writes past the limit fail with "File too large",
// as on a full disk.
class Limit
{
public:
    Limit(int resource, rlim_t value)
        : m_resource(resource)
        , m_signal(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(m_resource, &m_original);
        rlimit limit = m_original;
        limit.rlim_cur = value;
        setrlimit(m_resource, &limit);
    }
    ~Limit()
    {
        setrlimit(m_resource, &m_original);
        std::signal(SIGXFSZ, m_signal);
    }

private:
    int m_resource;
    void (*m_signal)(int);
    rlimit m_original{};
};

// The name of the backup made `days` after today by the computer's date.
inline QString backupName(int days = 0)
{
    return QStringLiteral("coinhall-%1.json").arg(QDate::currentDate().addDays(days).toString(Qt::ISODate));
}

// A books folder of its own that no Store has opened yet, with the unlock preference
// off. `dir` is where Store::defaultDir() looks when the data folder is `temp`.
class FolderTest : public ::testing::Test
{
protected:
    FolderTest()
    {
        QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall")).remove(QStringLiteral("requireUnlock"));
    }

    QString path(const QString &name) const { return dir + QLatin1Char('/') + name; }
    QString file() const { return path(QStringLiteral("coinhall.json")); }
    QString backup(int days = 0) const { return path(QStringLiteral("Backups/") + backupName(days)); }
    // Writes a file in the folder, making the folders on the way.
    void put(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        writeAll(path(name), bytes);
    }
    // The files set aside as coinhall.json.<kind>-<stamp>.
    QStringList keptAside(const QString &kind = QStringLiteral("unreadable")) const
    {
        return QDir(dir).entryList({QStringLiteral("coinhall.json.") + kind + QStringLiteral("-*")});
    }

    QTemporaryDir temp;
    QString dir = temp.path() + QStringLiteral("/QFS Coinhall");
};

// A Store on a folder of its own whose clock reads `today`, with its two starting
// accounts at hand and its bookChanged signals counted.
class StoreTest : public ::testing::Test
{
protected:
    explicit StoreTest(Instant now = Instant::now())
        : today(now)
    {
        store.setClock([this] { return today; });
        QObject::connect(&store, &Store::bookChanged, [this] { ++changes; });
    }

    Book onDisk() const { return decodeFile(temp.path() + QStringLiteral("/coinhall.json")); }
    std::vector<QString> payees() const { return each(store.book().transactions, &Transaction::payee); }

    Instant today;
    QTemporaryDir temp;
    Store store{{temp.path()}};
    Account checking = store.book().accounts[0];
    Account savings = store.book().accounts[1];
    int changes = 0; // bookChanged signals so far
};
