#include "help/selftest.h"

#include "bankfiles/csvimporter.h"
#include "help/helptexts.h"
#include "model/money.h"
#include "model/moneyfile.h"
#include "model/repeat.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QSaveFile>
#include <QUuid>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

std::int64_t s_passed = 0;
std::int64_t s_failed = 0;

// Counts one more; a counter that would overflow stops the program rather than wrap.
void increment(std::int64_t &counter)
{
    if (counter == std::numeric_limits<std::int64_t>::max())
        std::abort();
    ++counter;
}

void printLine(std::FILE *out, const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
}

void fail(std::FILE *out, const QString &label)
{
    increment(s_failed);
    printLine(out, QStringLiteral("FAIL  ") + label);
}

Decimal d(const char *text)
{
    return *Decimal::fromString(std::string_view(text));
}

// The sample bank download: an information line above the header, a description
// with a comma in quotes, and one line whose date cannot be read.
constexpr char sampleBankFile[] = "Bank export,,\n"
                                  "Posting Date,Description,Amount\n"
                                  "01/05/2026,\"COFFEE, DOWNTOWN\",-4.50\n"
                                  "01/06/2026,PAYROLL,1500.00\n"
                                  "not a date,BAD,1\n";

void moneyChecks(std::FILE *out)
{
    using CoinhallSelfTest::check;
    const std::optional<Decimal> dollars = Money::parse(QStringLiteral("$1,234.56"));
    check(out, QStringLiteral("parse $1,234.56"), dollars && *dollars == d("1234.56"));
    check(out, QStringLiteral("parse (45.10) as negative"), Money::parse(QStringLiteral("(45.10)")) == d("-45.10"));
    check(out, QStringLiteral("parse 12.00- as negative"), Money::parse(QStringLiteral("12.00-")) == d("-12"));
    check(out, QStringLiteral("parse rejects text"), !Money::parse(QStringLiteral("abc")));
    Money::setCode(QStringLiteral("USD"));
    check(out, QStringLiteral("format USD"), Money::s(d("1234.5")).contains(QLatin1String("1,234.50")));
    // Half-even and half-up are both right here; what matters is two places next to the input.
    const Decimal cents = d("2.675").rounded2();
    check(out, QStringLiteral("rounding to cents"), cents == d("2.68") || cents == d("2.67"));
}

void repeatChecks(std::FILE *out)
{
    using CoinhallSelfTest::check;
    const QDateTime start = QDate(2026, 1, 31).startOfDay();
    const Instant date = Instant::fromDateTime(start);
    const std::optional<Instant> monthly = next(Repeat::monthly, date);
    check(out, QStringLiteral("monthly repeat moves forward"), monthly && *monthly > date);
    check(out, QStringLiteral("one-time bill does not repeat"), !next(Repeat::once, date));
    const std::optional<Instant> weekly = next(Repeat::weekly, date);
    check(out, QStringLiteral("weekly = 7 days"), weekly && start.date().daysTo(weekly->toLocal().date()) == 7);
}

void bookChecks(std::FILE *out)
{
    using CoinhallSelfTest::check;
    Book book;
    Account account;
    account.name = QStringLiteral("Test checking");
    Transaction tx;
    tx.accountID = account.id;
    tx.amount = d("-19.99");
    tx.payee = QStringLiteral("Test");
    tx.category = QStringLiteral("Shopping");
    tx.date = Instant::now();
    book.accounts.push_back(account);
    book.transactions.push_back(tx);
    const MoneyFile::Decoded decoded = MoneyFile::decode(MoneyFile::encode(book).toStdString());
    check(out, QStringLiteral("book saves and loads"),
          decoded.book && decoded.book->transactions.size() == 1 &&
              decoded.book->transactions.front().amount == d("-19.99"));

    const std::vector<Category> defaults = Category::defaults();
    check(out, QStringLiteral("default categories present"),
          defaults.size() >= 20 &&
              std::any_of(defaults.begin(), defaults.end(), [](const Category &c) { return c.income; }));
}

void bankFileChecks(std::FILE *out, const QString &folder)
{
    using CoinhallSelfTest::check;
    // Failures to make the folder or write the file show up as a file that does not open.
    QDir().mkpath(folder);
    const QString path = folder + QStringLiteral("/bank.csv");
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(sampleBankFile);
        file.commit();
    }

    const std::optional<CSVImporter> importer = CSVImporter::fromFile(path);
    if (!importer) {
        fail(out, QStringLiteral("CSV file opens"));
        return;
    }
    check(out, QStringLiteral("CSV header found below info lines"),
          !importer->headers().isEmpty() && importer->headers().first() == QLatin1String("Posting Date"));
    const QList<QStringList> &rows = importer->rows();
    check(out, QStringLiteral("CSV quoted comma kept in one field"),
          !rows.isEmpty() && rows.first().size() >= 2 && rows.first().at(1) == QLatin1String("COFFEE, DOWNTOWN"));

    const QUuid account = QUuid::createUuid();
    const CSVImporter::Conversion first =
        importer->transactions(account, {}, [](const QString &, const Decimal &amount) {
            return amount > Decimal() ? QStringLiteral("Paycheck") : QStringLiteral("Other spending");
        });
    check(out, QStringLiteral("CSV imports 2 rows, 1 bad"), first.newTransactions.size() == 2 && first.bad == 1);
    const CSVImporter::Conversion again =
        importer->transactions(account, first.newTransactions,
                               [](const QString &, const Decimal &) { return QStringLiteral("Other spending"); });
    check(out, QStringLiteral("CSV re-import skips duplicates"), again.newTransactions.empty() && again.skipped == 2);
}

void helpChecks(std::FILE *out)
{
    using CoinhallSelfTest::check;
    QStringList chapters;
    for (const HelpChapter &chapter : helpChapters())
        chapters.append(chapter.title + QLatin1Char(' ') + chapter.text);
    const QString joined = chapters.join(QLatin1Char(' '));
    check(out, QStringLiteral("help never says bare \"Quillfern Coinhall\""),
          !joined.contains(QLatin1String("Quillfern Coinhall")));
    const QString domain = QFSCredit::website().host();
    check(out, QStringLiteral("help credits Quillfern with the link"),
          joined.contains(QLatin1String("Quillfern")) && !domain.isEmpty() && joined.contains(domain));

    const QString name = AppInfo::displayName();
    check(out, QStringLiteral("display name ") + name,
          !name.contains(QLatin1String("Quillfern")) || name.contains(QLatin1String("QFS Coinhall")));
}

} // namespace

namespace CoinhallSelfTest {

void check(std::FILE *out, const QString &label, bool ok)
{
    if (!ok) {
        fail(out, label);
        return;
    }
    increment(s_passed);
    printLine(out, QStringLiteral("PASS  ") + label);
}

std::int64_t passed()
{
    return s_passed;
}

std::int64_t failed()
{
    return s_failed;
}

QString resultLine()
{
    if (s_failed == 0)
        return QStringLiteral("RESULT: ALL %1 CHECKS PASSED").arg(s_passed);
    return QStringLiteral("RESULT: %1 CHECK(S) FAILED").arg(s_failed);
}

int run(std::FILE *out)
{
    printLine(out, QStringLiteral("QFS Coinhall self-test (") + QFSCredit::fullName() + QLatin1Char(')'));
    moneyChecks(out);
    repeatChecks(out);
    bookChecks(out);
    const QString folder = QDir::tempPath() + QStringLiteral("/CoinhallSelfTest-") +
                           QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    bankFileChecks(out, folder);
    helpChecks(out);
    printLine(out, resultLine());
    std::fflush(out);
    QDir(folder).removeRecursively();
    return s_failed == 0 ? 0 : 1;
}

} // namespace CoinhallSelfTest
