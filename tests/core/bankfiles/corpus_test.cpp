// Realistic bank downloads from tests/data/bank, each with the import it must give
// (dates in New York time, the test programs' zone), and the real downloads of real banks.
#include "bankfiles/autocategory.h"
#include "bankfilestesting.h"

#include <QDir>
#include <QFile>

namespace {

struct Expected
{
    QStringList headers;
    std::string mapping;
    std::string counts;
    std::vector<std::string> lines;
};

Expected readExpected(const QString &path)
{
    Expected e;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ADD_FAILURE() << "cannot read " << path.toStdString();
        return e;
    }
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        QStringList cells = line.split(u'\t');
        const QString tag = cells.takeFirst();
        if (tag == QLatin1String("# headers"))
            e.headers = cells;
        else if (tag == QLatin1String("# mapping"))
            e.mapping = cells.join(u' ').toStdString();
        else if (tag == QLatin1String("# counts"))
            e.counts = cells.join(u' ').toStdString();
        else
            e.lines.push_back(line.toStdString());
    }
    return e;
}

class BankCorpus : public ::testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(BankCorpus, ImportsAsExpected)
{
    const QString base = QStringLiteral(COINHALL_TEST_DATA "/bank/") + QString::fromUtf8(GetParam());
    const Expected expected = readExpected(base + QStringLiteral(".expected.tsv"));
    const std::optional<CSVImporter> importer = CSVImporter::fromFile(base + QStringLiteral(".csv"));
    ASSERT_TRUE(importer);
    EXPECT_EQ(importer->headers(), expected.headers);
    EXPECT_EQ(describe(importer->mapping()), expected.mapping);

    const auto result = importer->transactions(QUuid::createUuid(), {}, AutoCategory::Guesser({}));
    EXPECT_EQ("new=" + std::to_string(result.newTransactions.size()) + " skipped=" + std::to_string(result.skipped) +
                  " bad=" + std::to_string(result.bad),
              expected.counts);
    std::vector<std::string> lines;
    for (const Transaction &t : result.newTransactions) {
        lines.push_back(local(t.date) + "\t" + t.payee.toStdString() + "\t" + t.amount.toStdString() + "\t" +
                        t.category.toStdString());
        EXPECT_EQ(t.kind, t.amount.signum() > 0 ? TxKind::deposit : TxKind::expense) << lines.back();
    }
    EXPECT_EQ(lines, expected.lines);
}

INSTANTIATE_TEST_SUITE_P(Files, BankCorpus,
                         ::testing::Values("harbor_checking", "maple_card", "riverbend_savings", "pinecone_business",
                                           "lumen_pay", "thistle_uk"));

// Every CSV of ../shared/bankfiles, read where it lies (never copied here: the licences
// differ): the reading found, how many lines and unreadable rows (balance and zero-amount
// rows among them), the first and last line as read by eye from the file, and a second import that
// adds nothing. The card file shows charges as money in, so it is imported flipped.
TEST(RealBankCsv, EveryFileImportsItsLinesOnce)
{
    struct File
    {
        const char *name, *reading, *counts, *first, *last;
        bool flip = false;
    };
    const File files[] = {
        {"at_ing_diba_soll_haben_latin1_ofxstatement-austrian.csv",
         "Windows-1252 · separated by ; · decimal comma · dates day first", "new=6 bad=0",
         "2013-12-31 Habenzinsen 12.23", "2013-08-13 Prämie Foo 10"},
        {"at_oberbank_latin1_ofxstatement-austrian.csv",
         "Windows-1252 · separated by ; · decimal comma · dates day first", "new=5 bad=0",
         "2017-03-15 Zahlungsreferenz, Empfängername, Adresszeile1, Adresszeile2 -11",
         "2017-03-15 Auftraggebername 10"},
        {"be_fintro_dutch_headers.csv", "UTF-8 · separated by ; · decimal comma · dates day first", "new=4 bad=0",
         "2017-02-27 MET KAART 5555 04XX XXXX X100 2 MODEMAKERS /02/2017 UITGEVOERD OP 26-02 VALUTADATUM : 26/02/2017 "
         "-191.13",
         "2017-02-24 MET KAART 5555 04XX XXXX X200 0 CONSULTING   24-02-2017 VALUTADATUM : 24/02/2017 -7000.97"},
        {"br_banco_do_brasil_latin1_reckon.csv", "Windows-1252 · separated by , · decimal point", "new=22 bad=1",
         "2012-11-01 Transferência on line - 01/11 4885     256620-6 XXXXXXXXXXXXX 100",
         "2012-11-05 Pagamento de Título - XXXXXXXXXXXXXXXXXXX -100"},
        {"de_sparkasse_freiburg_latin1_yy.csv", "Windows-1252 · separated by ; · decimal comma · dates day first",
         "new=17 bad=1",
         "2018-04-03 1u1 Telecom GmbH                                                      Elgendorfer Str. 57 -22.59",
         "2018-03-21 KREDITKARTENABRECHNUNG -16.49"},
        {"it_bancoposta_addebiti_accrediti.csv", "UTF-8 · separated by ; · decimal comma · dates day first",
         "new=8 bad=2",
         "2018-08-01 VOSTRA DISPOS. DI BONIFICO TRN XXXXXXXXXXXXXXXXXXXXXXXXXXXXIT BENEF Lorenzo Giudici PER Buon "
         "compleanno! -100",
         "2018-08-05 BONIFICO A Lorenzo Giudici per Spese famiglia TRN EA24072422101349481110052910IT -500.5"},
        {"nl_ing_af_bij_ofxstatement-dutch.csv", "UTF-8 · separated by , · decimal comma", "new=5 bad=1",
         "2020-02-13 Kosten OranjePakket met korting -1.25", "2019-12-13 Kosten OranjePakket -0.31"},
        {"nl_knab_semicolon_ofxstatement-dutch.csv", "UTF-8 · separated by ; · decimal comma · dates day first",
         "new=28 bad=0", "2019-06-21 Gert Janssen (FR) -827.75", "2019-01-07 Knab 7.02"},
        {"us_card_charges_positive_reckon.csv", "UTF-8 · separated by , · decimal point", "new=1 bad=0",
         "2017-07-06 TRIPLE T CAR WASH CHAMPAIGN    IL -27", "2017-07-06 TRIPLE T CAR WASH CHAMPAIGN    IL -27", true},
        {"us_chase_checking_beangulp.csv", "UTF-8 · separated by , · decimal point", "new=6 bad=0",
         "2016-03-18 Payment to Chafe card ending in 1234 03/18 -2680.89",
         "2016-03-04 BOOGLE           WALLET     US000NEI9T      WEB ID: C234567890 -1300"},
        {"us_fidelity_cash_account.csv", "UTF-8 · separated by , · decimal point", "new=12 bad=0",
         "2026-01-26 OBFUSCATED DESCRIPTION -681.59", "2025-12-30 OBFUSCATED DESCRIPTION -979.51"},
    };
    const QDir folder(QStringLiteral(COINHALL_BANK_CORPUS "/csv"));
    if (!folder.exists())
        GTEST_SKIP() << "no corpus at " COINHALL_BANK_CORPUS;
    EXPECT_EQ(size_t(folder.entryList(QDir::Files).size()), std::size(files));
    for (const File &file : files) {
        SCOPED_TRACE(file.name);
        const std::optional<CSVImporter> importer =
            CSVImporter::fromFile(folder.filePath(QString::fromUtf8(file.name)));
        ASSERT_TRUE(importer);
        EXPECT_EQ(importer->readingText(), file.reading);
        const QUuid account = QUuid::createUuid();
        const auto first = importer->preview(account, {}, file.flip);
        ASSERT_FALSE(first.newTransactions.empty());
        EXPECT_EQ("new=" + std::to_string(first.newTransactions.size()) + " bad=" + std::to_string(first.bad),
                  file.counts);
        EXPECT_EQ(shown(first.newTransactions.front()), file.first);
        EXPECT_EQ(shown(first.newTransactions.back()), file.last);
        const auto again = importer->preview(account, first.newTransactions, file.flip);
        EXPECT_EQ(std::tuple(again.newTransactions.size(), size_t(again.skipped)),
                  std::tuple(size_t(0), first.newTransactions.size()));
    }
}
