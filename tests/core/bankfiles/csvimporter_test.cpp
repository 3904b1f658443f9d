// Reading bank downloads: the encoding and separator, splitting, finding the header,
// guessing the columns, reading the amounts and dates, and turning the rows into lines.
#include "bankfilestesting.h"

#include <QStringEncoder>
#include <QTemporaryDir>

using Rows = QList<QStringList>;
using Lines = std::vector<std::string>;

namespace {

// The lines an import of `importer` into an empty account adds.
Lines imported(const CSVImporter &importer)
{
    Lines lines;
    for (const Transaction &t : importer.transactions(QUuid::createUuid(), {}, bySign).newTransactions)
        lines.push_back(shown(t));
    return lines;
}

} // namespace

// Quotes hold commas, quotes and line breaks, anywhere in a cell, and an unclosed one the
// rest; every line end counts once, the last ends nothing; cells stay untrimmed.
TEST(CsvSplit, QuotesLineEndsAndCells)
{
    const std::pair<const char *, Rows> cases[] = {
        {"a,\"b,c\",d", {{"a", "b,c", "d"}}},
        {"\"say \"\"hi\"\"\"", {{"say \"hi\""}}},
        {"\"two\nlines\",x\ny", {{"two\nlines", "x"}, {"y"}}},
        {"ab\"c,d\"e", {{"abc,de"}}},
        {"\"\",\"\"\"\"", {{"", "\""}}},
        {"x\r\ny\rz", {{"x"}, {"y"}, {"z"}}},
        {"x\r\r\ny\n", {{"x"}, {""}, {"y"}}},
        {"\"in\r\nside\"", {{"in\nside"}}},
        {"a,b,\n\n", {{"a", "b", ""}, {""}}},
        {"", {}},
        {"a,\"open\nrest,of\r\ntext", {{"a", "open\nrest,of\ntext"}}},
        {" 1 , 2 ", {{" 1 ", " 2 "}}},
    };
    for (const auto &[text, rows] : cases)
        EXPECT_EQ(CSVImporter::parse(QString::fromUtf8(text)), rows) << text;
    EXPECT_EQ(CSVImporter::parse(QStringLiteral("a;\"b;c\",1,5\tx"), u';'), (Rows{{"a", "b;c,1,5\tx"}}));
    EXPECT_EQ(CSVImporter::parse(QStringLiteral("a\t\"b\tc\";d"), u'\t'), (Rows{{"a", "b\tc;d"}}));
}

// The separator that gives most rows one cell count of 2 or more; on a tie the one that
// gives more cells: a decimal comma splits every row of a ';' file in two as well.
TEST(CsvSplit, SeparatorFoundFromTheRows)
{
    const std::pair<const char *, char16_t> cases[] = {
        {"Date,Amount\n3/5/2024,1\n", u','},
        {"Datum;Bedrag\n05-03-2024;-1,25\n06-03-2024;2,50\n", u';'},
        {"Datum;Bedrag;Saldo\n05-03-2024;-1,25;7,5\n", u';'},
        {"Datum\tNaam\tBedrag\n05-03-2024\t\"A, B; C\"\t-1\n", u'\t'},
        {"Date,Payee,Amount\n3/5/2024,\"A;B;C;D\",1\n3/6/2024,E;F,2\n", u','},
        {"KNAB EXPORT;;;\nDatum;Naam;Bedrag;\n05-03-2024;A, B;1;\n", u';'},
        {"just one column\n", u','},
    };
    for (const auto &[text, separator] : cases)
        EXPECT_EQ(csv(text).reading().separator, QChar(separator)) << text;
}

TEST(CsvRead, HeaderIsFoundBelowInfoLinesAndBlankRowsAreDropped)
{
    const CSVImporter importer = csv("Account,1234\n"
                                     "\n"
                                     "Balance,99.00\n"
                                     " , ,\t\n"
                                     "Date, Description ,Amount\n"
                                     "\n"
                                     "3/5/2024, Corner cafe ,-4.50\n"
                                     ",,\n"
                                     "3/6/2024,Payroll\n");
    EXPECT_EQ(importer.headers(), (QStringList{"Date", "Description", "Amount"}));
    EXPECT_EQ(importer.rows(), (Rows{{"3/5/2024", " Corner cafe ", "-4.50"}, {"3/6/2024", "Payroll"}}));
    EXPECT_EQ(describe(importer.mapping()), "date=0 description=1 amount=2 debit=- credit=- category=-");
}

TEST(CsvRead, HeaderIsTheFirstRowWithADateTitleInAnyLanguage)
{
    EXPECT_EQ(csv("Bank export,,\nPosted,Payee,Amount\n1,2,3\n").headers().first(), "Posted");
    EXPECT_EQ(csv("Info\nPosted on,x\nUPDATED,y\n").headers(), (QStringList{"UPDATED", "y"}));
    // " Posted" is not "posted": the test looks at the cell before trimming.
    EXPECT_EQ(csv("Info\n Posted,Payee\n").headers(), (QStringList{"Info"}));
    EXPECT_EQ(csv("Info\n Posted,Payee\n").rows(), (Rows{{" Posted", "Payee"}}));
    EXPECT_EQ(csv("Payee,Amount\nA,1\n").rows(), (Rows{{"A", "1"}})); // no date title: first row
    // The titles in other languages are isDateHeader's, which CsvGuess walks through.
    EXPECT_EQ(csv("Konto;1\nBuchungstag;Betrag\n").headers().first(), "Buchungstag");
}

TEST(CsvRead, FilesAreUtf8WithoutTheByteOrderMark)
{
    const auto withBom = CSVImporter::fromUtf8(QByteArray("\xEF\xBB\xBF"
                                                          "Date,Amount\r\n3/5/2024,1\r\n"));
    ASSERT_TRUE(withBom);
    EXPECT_EQ(withBom->headers(), (QStringList{"Date", "Amount"}));
    // A mark that is not at the very start is an ordinary character of its cell.
    const auto inner = CSVImporter::fromUtf8(QByteArray("Date,\xEF\xBB\xBF"
                                                        "Amount\n"));
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->headers().at(1), QStringView(u"\uFEFFAmount"));

    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray("Date,Caf\xE9\n"))); // Latin-1, not UTF-8
    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray(" , \n\n,,\n")));
    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray()));

    QTemporaryDir dir;
    EXPECT_FALSE(CSVImporter::fromFile(dir.filePath(QStringLiteral("missing.csv"))));
    EXPECT_FALSE(CSVImporter::fromFile(dir.path()));
    // Files that read are the bank corpus (corpus_test.cpp).
}

// The byte-order mark's encoding, else UTF-8 when the bytes are UTF-8, else UTF-16 when
// ICU finds it, else Windows-1252 (0x80 is the euro sign there, a control in Latin-1).
TEST(CsvRead, EncodingFromTheMarkOrTheBytes)
{
    const QString text = QStringLiteral("Datum;Omschrijving;Bedrag\r\n13-01-2026;Caf\u00e9 \u20ac;-1,25\r\n");
    QStringEncoder le(QStringEncoder::Utf16LE), be(QStringEncoder::Utf16BE);
    const std::pair<QByteArray, const char *> cases[] = {
        {QByteArray("\xFF\xFE") + QByteArray(le.encode(text)), "UTF-16LE"},
        {QByteArray("\xFE\xFF") + QByteArray(be.encode(text)), "UTF-16BE"},
        {QByteArray(le.encode(text)), "UTF-16LE"},
        {"\xEF\xBB\xBF" + text.toUtf8(), "UTF-8"},
        {text.toUtf8(), "UTF-8"},
        {"Datum;Omschrijving;Bedrag\r\n13-01-2026;Caf\xE9 \x80;-1,25\r\n", "Windows-1252"},
    };
    for (const auto &[bytes, encoding] : cases) {
        const auto importer = CSVImporter::fromBytes(bytes);
        ASSERT_TRUE(importer) << encoding;
        EXPECT_EQ(importer->reading().encoding, QString::fromLatin1(encoding));
        EXPECT_EQ(imported(*importer), (Lines{"2026-01-13 Café € -1.25"})) << encoding;
    }
}

// What was found, as the preview shows it, and the same bytes read again with any of it
// overridden; an encoding nobody knows, or bytes that are not the UTF-8 asked for, read as
// nothing.
TEST(CsvRead, ReadingIsShownAndCanBeOverridden)
{
    const QByteArray bytes = "Buchungstag;Verwendungszweck;Betrag\n"
                             "02.01.26;Geb\xFChr;-1.234,56\n"
                             "03.01.26;Miete;-700,00\n";
    const auto found = CSVImporter::fromBytes(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->readingText(), "Windows-1252 · separated by ; · decimal comma");
    EXPECT_EQ(imported(*found), (Lines{"2026-01-02 Gebühr -1234.56", "2026-01-03 Miete -700"}));

    const auto latin9 = CSVImporter::fromBytes(bytes, {.encoding = QStringLiteral("ISO-8859-15"), .dayFirst = true});
    ASSERT_TRUE(latin9);
    EXPECT_EQ(latin9->readingText(), "ISO-8859-15 · separated by ; · decimal comma · dates day first");
    const auto points = CSVImporter::fromBytes(bytes, {.separator = u',', .decimalComma = false});
    ASSERT_TRUE(points);
    EXPECT_EQ(points->headers(), (QStringList{"Buchungstag;Verwendungszweck;Betrag"}));
    EXPECT_EQ(points->readingText(), "Windows-1252 · separated by , · decimal point");

    EXPECT_FALSE(CSVImporter::fromBytes(bytes, {.encoding = QStringLiteral("UTF-8")}));
    EXPECT_FALSE(CSVImporter::fromBytes(bytes, {.encoding = QStringLiteral("no such encoding")}));
    EXPECT_EQ(csv("Date\tAmount\n3/5/2024\t1\n").readingText(), "separated by tabs · decimal point");
}

TEST(CsvGuess, TitlesInSixLanguagesExactAmountAndEarliestDescriptionKeywordWin)
{
    auto guess = [](QStringList headers) { return describe(CSVImporter::guess(headers)); };
    EXPECT_EQ(guess({"Posted", "Transaction Date", "Amount (USD)", "Amount", "Memo", "Payee"}),
              "date=0 description=5 amount=3 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Details", "Posting Date", "Description", "Amount", "Type", "Balance"}),
              "date=1 description=2 amount=3 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Date", "Amount (USD)", "Original amount"}),
              "date=0 description=- amount=1 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Date", "AMOUNT", "Amount"}), "date=0 description=- amount=1 debit=- credit=- category=-");
    // One column may take two roles.
    EXPECT_EQ(guess({"Deposit Date", "Merchant Name", "Debit/Credit", "Category"}),
              "date=0 description=1 amount=- debit=2 credit=0 category=3 marker=2");
    EXPECT_EQ(guess({"Date", "Withdrawal Amt.", "Deposit Amt.", "Money out", "Money in"}),
              "date=0 description=- amount=- debit=1 credit=2 category=-");
    EXPECT_EQ(guess({"When", "What", "How much"}), "date=- description=- amount=- debit=- credit=- category=-");

    EXPECT_EQ(guess({"Auftragskonto", "Buchungstag", "Valutadatum", "Buchungstext", "Verwendungszweck",
                     "Lastschrift Ursprungsbetrag", "Beguenstigter/Zahlungspflichtiger", "Betrag", "Kategorie"}),
              "date=1 description=6 amount=7 debit=- credit=- category=8");
    EXPECT_EQ(guess({"Buchungsdatum", "Betrag", "Auftraggeber IBAN", "Empfängername", "Text"}),
              "date=0 description=3 amount=1 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Kontonummer", "Text", "Datum", "Soll", "Haben"}),
              "date=2 description=1 amount=- debit=3 credit=4 category=-");
    EXPECT_EQ(guess({"Date opération", "Libellé", "Débit", "Crédit"}),
              "date=0 description=1 amount=- debit=2 credit=3 category=-");
    EXPECT_EQ(guess({"Fecha", "Fecha valor", "Concepto", "Importe (EUR)"}),
              "date=0 description=2 amount=3 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Data", "Valuta", "Addebiti", "Accrediti", "Descrizione operazioni"}),
              "date=0 description=4 amount=- debit=2 credit=3 category=-");
    EXPECT_EQ(guess({"Datum", "Naam / Omschrijving", "Af Bij", "Bedrag (EUR)"}),
              "date=0 description=1 amount=3 debit=- credit=- category=- marker=2");
    EXPECT_EQ(guess({"Transactiedatum", "CreditDebet", "Bedrag", "Tegenrekeninghouder", "Omschrijving"}),
              "date=0 description=3 amount=2 debit=- credit=1 category=- marker=1");
    EXPECT_EQ(guess({"Data", "Histórico", "Data do Balancete", "Valor"}),
              "date=0 description=1 amount=3 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Buchungstag", "Betrag", "S/H"}),
              "date=0 description=- amount=1 debit=- credit=- category=- marker=2");
    EXPECT_EQ(guess({"Data export", "Metadata"}), "date=0 description=- amount=- debit=- credit=- category=-");
}

// The nine patterns, each where it is the first to match; month first for ambiguous
// dates, day first only above 12; local midnight on both sides of the clock change; then
// the European forms, day first with a year of two or four digits.
TEST(CsvDate, PatternsInOrderThenInternetDateTime)
{
    const std::pair<const char *, const char *> cases[] = {
        {"03/05/2024", "2024-03-05 00:00"},
        {" 3/5/2024\t", "2024-03-05 00:00"},
        {"2024-03-05", "2024-03-05 00:00"},
        {"25/12/2024", "2024-12-25 00:00"},
        {"Mar 5, 2024", "2024-03-05 00:00"},
        {"sep 30, 2024", "2024-09-30 00:00"},
        {"2024/03/05", "2024-03-05 00:00"},
        {"03-05-2024", "2024-03-05 00:00"},
        {"2024-03-05T10:00:00Z", "2024-03-05 05:00"},
        {"2024-07-05T10:00:00+02:00", "2024-07-05 04:00"},
        {"13/04/2024", "2024-04-13 00:00"},
        {"2024-03-10", "2024-03-10 00:00"}, // New York's clocks go forward that night
        {"05.03.2024", "2024-03-05 00:00"},
        {"5.3.2024", "2024-03-05 00:00"},
        {"05.03.24", "2024-03-05 00:00"},
        {"21-06-2019", "2019-06-21 00:00"},
        {"20240305", "2024-03-05 00:00"},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(local(CSVImporter::date(QString::fromUtf8(text))), expected) << text;
    // A two-digit year is taken literally by the four-digit patterns before it.
    EXPECT_EQ(CSVImporter::date(QStringLiteral("3/5/24"))->toUtc().date().year(), 24);
}

TEST(CsvDate, DayFirstReadsSlashesAndDashesTheOtherWay)
{
    const std::pair<const char *, const char *> cases[] = {
        {"03/05/2024", "2024-05-03 00:00"}, {"3/5/24", "2024-05-03 00:00"},
        {"31/12/17", "2017-12-31 00:00"},   {"03-05-2024", "2024-05-03 00:00"},
        {"2024-03-05", "2024-03-05 00:00"}, {"Mar 5, 2024", "2024-03-05 00:00"},
        {"05.03.24", "2024-03-05 00:00"},   {"12/31/2024", "none"},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(local(CSVImporter::date(QString::fromUtf8(text), true)), expected) << text;
}

TEST(CsvDate, StrictReadingRejectsTheRest)
{
    for (const char *text : {"02/30/2024", "13/13/2024", "not a date", "", " \t ", "2024-03-05 extra", "2024-3-5",
                             "Sept 5, 2024", "Mar 5,2024", "2024-03-05T10:00:00.5Z", "2024-03-05T10:00Z", "-3/5/2024",
                             "32.1.2024", "5.3.202", "1.1.99999", "2024030", "202403051", "2024.03.05"})
        EXPECT_EQ(local(CSVImporter::date(QString::fromUtf8(text))), "none") << text;
}

// One reading for the whole column: a date that can only be day first makes every date
// of the file day first, a balance row's too; otherwise month first, as before.
TEST(CsvDate, OneDateDecidesTheWholeColumn)
{
    const CSVImporter dayFirst = csv("Date,Description,Amount\n02/01/2026,A,-1\n13/01/2026,B,-2\n");
    EXPECT_EQ(imported(dayFirst), (Lines{"2026-01-02 A -1", "2026-01-13 B -2"}));
    EXPECT_FALSE(dayFirst.datesAmbiguous());

    const CSVImporter monthFirst = csv("Date,Description,Amount\n02/01/2026,A,-1\n");
    EXPECT_EQ(imported(monthFirst), (Lines{"2026-02-01 A -1"}));
    EXPECT_TRUE(monthFirst.datesAmbiguous());
    EXPECT_FALSE(csv("Date,Amount\n02/01/2026,-1\n01/31/2026,1\n").datesAmbiguous());
    EXPECT_FALSE(csv("Date,Amount\n02.01.2026,-1\n01/01/2026,1\n").datesAmbiguous());

    EXPECT_EQ(imported(csv("Data;Descrizione;Importo\n31/12/17;SALDO INIZIALE;1\n01/08/18;Bonifico;-1\n")),
              (Lines{"2018-08-01 Bonifico -1"})); // the balance row decides
    // The user's word wins.
    EXPECT_EQ(imported(*CSVImporter::fromText(QStringLiteral("Date,Description,Amount\n02/01/2026,A,-1\n"),
                                              {.dayFirst = true})),
              (Lines{"2026-01-02 A -1"}));
}

// A decimal comma when some amount of the columns can only be read so and none only with a
// decimal point; thousands in groups of three, between dots or blanks.
TEST(CsvAmount, DecimalCommaWhenTheColumnsUseIt)
{
    const std::pair<const char *, const char *> cases[] = {
        {"-1.234,56", "-1234.56"}, {"1 234,56", "1234.56"}, {"1\u00a0234,5", "1234.5"},
        {"1\u202f234", "1234"},    {"12,5-", "-12.5"},      {"(3,00)", "-3"},
        {"$1.234.567", "1234567"}, {"0,01", "0.01"},        {"1.23,4", "none"},
        {"1.2345", "none"},        {"1,2,3", "none"},       {"1.234 567", "none"},
        {"12.5", "none"},          {"1,5e3", "none"},       {"", "none"},
    };
    for (const auto &[text, expected] : cases) {
        const auto amount = CSVImporter::amount(QString::fromUtf8(text), true);
        EXPECT_EQ(amount ? amount->toStdString() : "none", expected) << text;
    }
    EXPECT_EQ(CSVImporter::amount(QStringLiteral("-1\u00a0234.50"), false), d("-1234.5"));

    const std::pair<const char *, bool> files[] = {
        {"Date;Amount\n3/5/2024;1,250\n3/6/2024;-12,50\n", true},
        {"Date;Amount\n3/5/2024;1.250\n3/6/2024;1.234.567\n", true},
        {"Date,Amount\n3/5/2024,\"1,250\"\n3/6/2024,-12.50\n", false},
        {"Date;Amount\n3/5/2024;1,50\n3/6/2024;1,234.50\n", false}, // not consistent
        {"Date;Amount\n3/5/2024;1.250\n", false},
        {"Date;Debit;Credit\n3/5/2024;;1 250,00\n", true},
    };
    for (const auto &[text, comma] : files)
        EXPECT_EQ(csv(text).reading().decimalComma, comma) << text;
}

// Banks that write amounts unsigned say beside them which way the money went (debit and
// credit columns: importer_test's).
TEST(CsvConversion, MarkerAndDebitCreditColumnsGiveTheSign)
{
    EXPECT_EQ(imported(csv("\"Datum\",\"Naam / Omschrijving\",\"Af Bij\",\"Bedrag (EUR)\"\n"
                           "\"20200213\",\"Kosten\",\"Af\",\"1,25\"\n"
                           "\"20200213\",\"Terug\",\"Bij\",\"1,25\"\n"
                           "\"20200214\",\"Nul\",\"Bij\",\"0,00\"\n"
                           "\"20200214\",\"Onbekend\",\"?\",\"-2,00\"\n")),
              (Lines{"2020-02-13 Kosten -1.25", "2020-02-13 Terug 1.25", "2020-02-14 Onbekend -2"}));
    EXPECT_EQ(imported(csv("Buchungstag;Verwendungszweck;Betrag;S/H\n"
                           "02.01.2026;Miete;700,00;S\n"
                           "03.01.2026;Gehalt;1.500,00;H\n"
                           "04.01.2026;Storno;-5,00;H\n")),
              (Lines{"2026-01-02 Miete -700", "2026-01-03 Gehalt 1500", "2026-01-04 Storno 5"}));
}

// Opening and closing balances are no lines, whichever description column says so; they
// count with the unreadable rows.
TEST(CsvConversion, BalanceRowsAreLeftOut)
{
    const CSVImporter importer = csv("Data;Descrizione operazioni;Importo\n"
                                     "31/12/17;SALDO INIZIALE;100,95\n"
                                     "01/08/18;Saldo del conto corrente;-1,00\n"
                                     "02/08/18;Saldo;1,00\n"
                                     "31/08/18;|SALDO FINALE;\n");
    EXPECT_EQ(imported(importer), (Lines{"2018-08-01 Saldo del conto corrente -1"}));
    EXPECT_EQ(importer.transactions(QUuid::createUuid(), {}, bySign).bad, 3);
    for (const char *balance : {"S A L D O", "Saldo Anterior", "Opening balance", "CLOSING BALANCE", "Anfangssaldo",
                                "Endsaldo", "Solde initial", "Balance brought forward"})
        EXPECT_EQ(imported(csv((std::string("Date,Payee,Memo,Amount\n3/5/2024,,") + balance + ",1\n").c_str())),
                  Lines{})
            << balance;
}

// Chase's Details column holds DEBIT or CREDIT; the payee is in Description. A line an
// earlier Coinhall imported with the payee DEBIT is still already in; an empty description
// takes the next description column.
TEST(CsvConversion, EarlierDescriptionChoiceStillCountsAsAlreadyIn)
{
    const CSVImporter chase = csv("Details,Posting Date,\"Description\",Amount,Type,Balance,Check or Slip #,\n"
                                  "DEBIT,3/18/2016,\"Payment to card\",-2680.89,ACCT_XFER,3409.86,,\n"
                                  "CREDIT,3/15/2016,\"EMPLOYER INC DIRECT DEP\",2590.73,ACH_CREDIT,6090.75,,\n");
    const QUuid account = QUuid::createUuid();
    const auto first = chase.transactions(account, {}, bySign);
    ASSERT_EQ(first.newTransactions.size(), 2u);
    EXPECT_EQ(shown(first.newTransactions[0]), "2016-03-18 Payment to card -2680.89");

    Transaction earlier = first.newTransactions[1];
    earlier.payee = QStringLiteral("CREDIT");
    earlier.importHash = BankImport::importHash(account, earlier.date, earlier.amount, earlier.payee);
    const auto again = chase.transactions(account, {earlier}, bySign);
    EXPECT_EQ(std::tuple(again.newTransactions.size(), again.skipped), std::tuple(1u, 1));
    EXPECT_EQ(shown(again.newTransactions[0]), "2016-03-18 Payment to card -2680.89");

    CSVImporter chosen = chase; // the user's column still rules
    CSVImporter::Mapping mapping = chase.mapping();
    mapping.description = 0;
    chosen.setMapping(mapping);
    EXPECT_EQ(imported(chosen), (Lines{"2016-03-18 DEBIT -2680.89", "2016-03-15 CREDIT 2590.73"}));

    const CSVImporter blank = csv("Date,Payee,Memo,Amount\n3/7/2025,,Cash deposit,300\n");
    const Transaction before{.date = local(2025, 3, 7), .amount = d("300"), .payee = QStringLiteral("Imported")};
    Transaction earlierBlank = before;
    earlierBlank.importHash = BankImport::importHash(account, before.date, before.amount, before.payee);
    EXPECT_EQ(imported(blank), (Lines{"2025-03-07 Cash deposit 300"}));
    EXPECT_EQ(blank.transactions(account, {earlierBlank}, bySign).skipped, 1);
}
