// Bank files at the sizes a long-time user reaches: reading and converting a
// 50,000-line download against a Book of 100,000 lines (what the import screen
// does for its preview), and exporting a Book of 1,000,000 lines.
#include "bankfiles/autocategory.h"
#include "bankfiles/bankfile.h"
#include "bankfiles/csvimporter.h"
#include "bankfiles/importer.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <tuple>

namespace {

const QStringList merchants = {
    QStringLiteral("SAFEWAY #%1 PORTLAND OR"),
    QStringLiteral("\"AMAZON.COM*%1, SEATTLE WA\""),
    QStringLiteral("SHELL OIL %1"),
    QStringLiteral("STARBUCKS STORE %1"),
    QStringLiteral("CORNER BAKERY %1"),
    QStringLiteral("ZELLE FROM CLIENT %1"),
    QStringLiteral("SQ *FARMERS MARKET %1"),
    QStringLiteral("UBER TRIP %1"),
    QStringLiteral("GUITAR CENTER #%1"),
    QStringLiteral("CHECK %1"),
};

// Row i of the generated download: newest first, about 70 lines a day.
struct BankRow
{
    QString date, payee, amount;
};

BankRow bankRow(int i)
{
    const QDate day = QDate(2025, 6, 30).addDays(-i / 70);
    const QString payee = merchants[i % merchants.size()].arg(i % 397);
    const int cents = (i * 7919) % 250000 + 1;
    const bool in = i % 10 == 5;
    return {day.toString(QStringLiteral("MM/dd/yyyy")), payee,
            QStringLiteral("%1%2.%3").arg(in ? "" : "-").arg(cents / 100).arg(cents % 100, 2, 10, QLatin1Char('0'))};
}

QByteArray bankFile(int rows)
{
    QByteArray out = "Harborline Credit Union\r\nAccount Number:,XXXXXX4821\r\n\r\n"
                     "Posting Date,Description,Amount,Balance\r\n";
    for (int i = 0; i < rows; ++i) {
        const BankRow r = bankRow(i);
        out += (r.date + u',' + r.payee + u',' + r.amount + QStringLiteral(",1000.00\r\n")).toUtf8();
    }
    return out;
}

// 100,000 lines: half typed, half imported earlier, the oldest 10,000 lines of the
// download among them (so they come out as skipped).
std::vector<Transaction> existingLines(const QUuid &account, int downloadRows)
{
    std::vector<Transaction> lines;
    lines.reserve(100000);
    for (int i = 0; i < 100000; ++i) {
        Transaction t;
        t.accountID = account;
        t.date = Instant::fromSecs(1751241600 - std::int64_t(i) * 900);
        t.amount = Decimal(-(i % 500) - 1);
        t.payee = QStringLiteral("Typed payee %1").arg(i % 2000);
        t.category = QStringLiteral("Groceries");
        if (i % 2 == 1) {
            const int row = downloadRows - 1 - (i / 2) % 10000;
            const BankRow r = bankRow(row);
            const QString payee = r.payee.startsWith(u'"') ? r.payee.mid(1, r.payee.size() - 2) : r.payee;
            t.date = *CSVImporter::date(r.date);
            t.amount = *Decimal::fromString(r.amount);
            t.payee = payee;
            t.importHash = i / 2 < 10000 ? BankImport::importHash(account, t.date, t.amount, payee)
                                         : BankImport::importHash(account, t.date, t.amount, payee + u'x');
        }
        lines.push_back(std::move(t));
    }
    return lines;
}

void importPreview(benchmark::State &state)
{
    const int rows = int(state.range(0));
    QTemporaryDir temp;
    const QString path = temp.filePath(QStringLiteral("activity.csv"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bankFile(rows));
    file.close();
    const QUuid account = QUuid::createUuid();
    const std::vector<Transaction> existing = existingLines(account, rows);

    CSVImporter::Conversion result;
    for (auto _ : state) {
        const std::optional<CSVImporter> importer = CSVImporter::fromFile(path);
        const AutoCategory::Guesser guesser(existing);
        result = importer->transactions(account, existing, guesser);
        benchmark::DoNotOptimize(result);
    }
    state.counters["new"] = double(result.newTransactions.size());
    state.counters["skipped"] = result.skipped;
    state.counters["bad"] = result.bad;
}
BENCHMARK(importPreview)->Arg(50000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);

// The same download as an OFX 1.02 file (SGML, no closing tags on the leaves), as a
// bank's Web Connect hands it out.
QByteArray ofxFile(int rows)
{
    QByteArray out = "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:USASCII\r\n"
                     "CHARSET:1252\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n"
                     "<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20250630"
                     "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><BANKMSGSRSV1><STMTTRNRS><TRNUID>1<STATUS><CODE>0"
                     "<SEVERITY>INFO</STATUS><STMTRS><CURDEF>USD<BANKACCTFROM><BANKID>121000358<ACCTID>4821"
                     "<ACCTTYPE>CHECKING</BANKACCTFROM><BANKTRANLIST><DTSTART>20230101<DTEND>20250630\r\n";
    for (int i = 0; i < rows; ++i) {
        const BankRow r = bankRow(i);
        const QDate day = QDate::fromString(r.date, QStringLiteral("MM/dd/yyyy"));
        QString payee = r.payee;
        payee.remove(u'"').replace(u'&', QStringLiteral("&amp;"));
        out += "<STMTTRN><TRNTYPE>" + QByteArray(r.amount.startsWith(u'-') ? "DEBIT" : "CREDIT") + "<DTPOSTED>" +
               day.toString(QStringLiteral("yyyyMMdd")).toLatin1() + "120000[-7:PDT]<TRNAMT>" + r.amount.toLatin1() +
               "<FITID>" + QByteArray::number(i) + "<NAME>" + payee.toUtf8() + "</STMTTRN>\r\n";
    }
    return out + "</BANKTRANLIST><LEDGERBAL><BALAMT>1000.00<DTASOF>20250630</LEDGERBAL></STMTRS></STMTTRNRS>"
                 "</BANKMSGSRSV1></OFX>\r\n";
}

void importOfxPreview(benchmark::State &state)
{
    const int rows = int(state.range(0));
    const QByteArray bytes = ofxFile(rows);
    const QUuid account = QUuid::createUuid();
    const std::vector<Transaction> existing = existingLines(account, std::max(rows, 10000));
    BankImport::Conversion result;
    for (auto _ : state) {
        const BankFile file = BankFile::fromBytes(bytes);
        result = file.preview(account, existing, false);
        benchmark::DoNotOptimize(result);
    }
    state.counters["new"] = double(result.newTransactions.size());
    state.counters["bad"] = result.bad;
}
BENCHMARK(importOfxPreview)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(importOfxPreview)->Arg(50000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void exportAll(benchmark::State &state)
{
    QTemporaryDir temp;
    Store store({temp.filePath(QStringLiteral("app"))});
    Book book = store.book();
    const QStringList payees = {QStringLiteral("Corner Grocery"), QStringLiteral("Joe's \"Best\" Diner, LLC"),
                                QStringLiteral("Hosting Co"), QStringLiteral("Café Olé")};
    const Instant start = Instant::fromSecs(1751241600);
    const int lines = int(state.range(0));
    book.transactions.reserve(size_t(lines));
    for (int i = 0; i < lines; ++i) {
        Transaction t;
        t.date = start.addSecs(-std::int64_t(i) * 600);
        t.accountID = book.accounts[size_t(i % 2)].id;
        t.amount = *Decimal::fromString(std::to_string(-(i % 9000) - 1) + "." + std::to_string(10 + i % 90));
        t.payee = payees[i % payees.size()];
        t.category = book.categories[size_t(8 + i % 17)].name;
        t.note = i % 5 == 0 ? QStringLiteral("Imported") : QString();
        t.cleared = i % 3 != 0;
        book.transactions.push_back(std::move(t));
    }
    std::ignore = store.setBook(std::move(book));

    const QString path = temp.filePath(QStringLiteral("Coinhall transactions.csv"));
    for (auto _ : state) {
        if (!store.exportCSV(path))
            state.SkipWithError(store.status().toUtf8().constData());
    }
    state.counters["MB"] = double(QFile(path).size()) / 1e6;
}
BENCHMARK(exportAll)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    qputenv("XDG_CONFIG_HOME", QByteArray("/tmp/coinhall-bench-config"));
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
