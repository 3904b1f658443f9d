// A bank file of any format, found from its content, through the one conversion.
#include "bankfiles/bankfile.h"
#include "helpers/testing.h"

#include <QDir>
#include <QDirIterator>

#include <tuple>

#include <gtest/gtest.h>

// Every real download of ../shared/bankfiles: what an OFX, QFX, QIF or CAMT.053 file
// says (its count, first and last line, each read by eye in the file; the CSV files'
// lines are corpus_test's), and that every file imports once: a second import of it
// adds nothing.
TEST(BankFile, RealDownloadsReadAsWrittenAndImportOnce)
{
    if (!QDir(QStringLiteral(COINHALL_BANK_CORPUS)).exists())
        GTEST_SKIP() << "no corpus at " COINHALL_BANK_CORPUS;
    struct Download
    {
        const char *file; // the end of its name
        const char *summary;
        size_t count;
        const char *first, *last; // "day | amount | payee | category | reference"
    };
    const Download downloads[] = {
        {"ch_raiffeisen_ticino_dt_offset_iso20022.xml", "CAMT.053 · account CHxxxxxxxxxxxxxxxxxxx · CHF", 16,
         "2017-04-01 | -905.3 | Sistema di addebitamento diretto xxxxxxxxxxxxxxxxxxxxxx AG |  | "
         "210564431020000000024556150000",
         "2017-04-11 | -16.8 | Acquisto/tancomat SOCAR VIA SAN GOTTAR 09.04.2017/10:30 / N. carta Maestro xxxxxxxx |  "
         "| 211092231020000000024556150000"},
        {"ch_sps_v08_iso20022.xml", "CAMT.053 · account 0035-2915203-10-000 · CHF", 1,
         "2023-01-25 | 1284.3 | PAYEE |  | 8082230156M02SJ62/1010",
         "2023-01-25 | 1284.3 | PAYEE |  | 8082230156M02SJ62/1010"},
        {"lt_dnb_iso20022.xml", "CAMT.053 · account LT000000000000000000 · EUR", 4,
         "2015-12-31 | -0.29 | AB DNB Bankas |  | FC1261858984",
         "2015-12-31 | -152.24 | AB DNB Bankas |  | FC1260573115"},
        {"nl_v08_datetime_genkgo.xml", "CAMT.053 · account NL26VAYB8060476890 · EUR", 1,
         "2014-12-31 | 8.85 | NAME NAME |  | AAAASESS-FP-CN_98765/01",
         "2014-12-31 | 8.85 | NAME NAME |  | AAAASESS-FP-CN_98765/01"},
        {"br_nubank_card_ofxtools.ofx", "OFX · account 11111111-UUID-UUID-UUID-111111111111 · BRL", 6,
         "2024-03-23 | -13 | -memo-message- |  | 11111111-UUID-4747-8883-111111111111",
         "2024-03-22 | -959 | -memo-message- |  | 11111111-UUID-427c-8fc0-111111111111"},
        {"ca_checking_bank_medium_ofxparse.ofx", "QFX · account 12300 000012345678 · CAD", 3,
         "2009-04-01 | -6.6 | MCDONALD'S #112 |  | 0000123456782009040100001",
         "2009-04-03 | -22 | CONNIE'S HAIR D |  | 0000123456782009040300005"},
        {"fr_banque_populaire_ofxstatement-french.ofx", "OFX · account 99999999999 · EUR", 13,
         "2022-07-15 | -75 | 130722 CB****9630 |  | 202200700005BD27",
         "2022-06-10 | -250 | PRLV SEPA AVIVA RETRAITE |  | 202200600004BD27"},
        {"au_anz_card_v203_header_sgml_body_ofxparse.ofx", "OFX · account 1234123412341234 · AUD", 1,
         "2017-05-08 | -5.5 | SOME MEMO |  | 201705080001", "2017-05-08 | -5.5 | SOME MEMO |  | 201705080001"},
        {"au_suncorp_checking_ofxparse.ofx", "OFX · account 123456789 · AUD", 1,
         "2013-12-15 | -16.85 | EFTPOS WDL HANDYWAY ALDI STORE |  | 1",
         "2013-12-15 | -16.85 | EFTPOS WDL HANDYWAY ALDI STORE |  | 1"},
        {"decimal_comma_ofxtools.ofx", "OFX · account 999988 · USD", 2, "2005-10-04 | -200 | Check 1000 |  | 00002",
         "2005-10-20 | -300 | ATM |  | 00003"},
        {"checking_ofxtools.ofx", "OFX · account 999988 · USD", 2, "2005-10-04 | -200 | Check 1000 |  | 00002",
         "2005-10-20 | -300 | ATM |  | 00003"},
        {"us_amex_card_beangulp.qfx", "QFX · account 379700001111222 · USD", 12,
         "2013-12-01 | -9.99 | SPOTIFY USA         28770130901 |  | 320133350353869664",
         "2013-12-16 | -7 | LES CAFES 400 LAFAYENEW YORK |  | 320133500088330907"},
        {"us_checking_intu_ofxparse.qfx", "QFX · account 1452687~7 · USD", 3,
         "2011-03-31 | 0.01 | DIVIDEND EARNED FOR PERIOD OF 03 |  | 0000486",
         "2011-04-07 | -25 | RETURNED CHECK FEE, CHECK # 319 |  | 0000488"},
        {"bank_bom_tag_list_nerdbank.qif", "QIF", 29, "2008-01-01 | 1500 | Paycheck | Income.Salary | ",
         "2008-12-10 | -335 | Payment to Credit Card | Liabilities.Credit Card | "},
        {"bank_day_first_ddmmyyyy_jemmyw.qif", "QIF", 3, "2010-01-01 | -10 | Description | Debit | ",
         "2010-12-29 | 30 | Description | Credit | "},
        {"bank_mmddyy_crlf_jemmyw.qif", "QIF", 3, "2010-01-01 | -10 | Description | Debit | ",
         "2010-12-29 | 30 | Description | Credit | "},
        {"bank_payee_memo_actual.qif", "QIF", 4, "2019-01-23 | -10 | Payee Name |  | ",
         "2019-01-23 | -40 | Imported |  | "},
        {"cash_with_invest_account_qifparse.qif", "QIF · account My Cash", 3,
         "2013-10-23 | -6.5 | food:lunch | food:lunch | ", "2013-10-11 | -48 | Imported |  | "},
        {"quicken_apostrophe_years_splits_quiffen.qif", "QIF", 5, "2020-02-14 | 67.5 | T-Mobile | Bills:Cell Phone | ",
         "2020-02-10 | -100 | Amazon.com | Food:Groceries | "},
        {"bank_splits_jemmyw.qif", "QIF · dates either way", 3, "1994-06-01 | -1000 | Bank Of Mortgage |  | ",
         "1994-06-03 | -10 | Anthony Hopkins | Entertain | "},
    };
    auto shown = [](const StatementLine &l) {
        return (l.day.toString(Qt::ISODate) + QStringLiteral(" | ") + l.amount.toString() + QStringLiteral(" | ") +
                l.payee + QStringLiteral(" | ") + l.category + QStringLiteral(" | ") + l.reference)
            .toStdString();
    };
    int seen = 0, described = 0;
    QDirIterator files(QStringLiteral(COINHALL_BANK_CORPUS), {QStringLiteral("*.*")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo info(files.next());
        if (info.suffix() == QLatin1String("md"))
            continue;
        SCOPED_TRACE(info.fileName().toStdString());
        ++seen;
        BankFile file = BankFile::fromFile(info.filePath());
        if (!file.error().isEmpty()) {
            ADD_FAILURE() << file.error().toStdString();
            continue;
        }
        const Statement &s = file.statement();
        for (const Download &d : downloads) {
            if (!info.fileName().endsWith(QLatin1String(d.file)))
                continue;
            ++described;
            const QString summary = file.summary() + (s.datesAmbiguous ? QStringLiteral(" · dates either way") : "");
            EXPECT_EQ(std::tuple(summary, s.lines.size(), s.bad), std::tuple(QString::fromUtf8(d.summary), d.count, 0));
            if (!s.lines.empty()) {
                EXPECT_EQ((std::pair{shown(s.lines.front()), shown(s.lines.back())}),
                          (std::pair<std::string, std::string>{d.first, d.last}));
            }
        }
        const QUuid account = QUuid::createUuid();
        const BankImport::Conversion first = file.preview(account, {}, false);
        EXPECT_GT(first.newTransactions.size(), 0u);
        const BankImport::Conversion again = file.preview(account, first.newTransactions, false);
        EXPECT_EQ(std::pair(again.newTransactions.size(), size_t(again.skipped)),
                  std::pair(size_t(0), first.newTransactions.size()));
    }
    EXPECT_EQ(std::pair(seen, described), std::pair(31, int(std::size(downloads))));
}

// What is no bank download is said in plain words.
TEST(BankFile, WhatIsNoBankDownloadIsSaidPlainly)
{
    for (const auto &[bytes, error] : {
             std::pair<QByteArray, QString>{" \r\n\t", "the file is empty"},
             {"\x89PNG\r\n\x1a\n....", "it is a picture, not a bank download"},
             {"PK\x03\x04rest", "it is a compressed archive; unpack it and choose the file inside"},
             {QByteArray("Date,Amount\0\0", 13), "it is not a text file, so it is no bank download Coinhall knows"},
         })
        EXPECT_EQ(BankFile::fromBytes(bytes).error(), error);
    // UTF-16 text has zero bytes and is text all the same.
    const QByteArray utf16("\xFF\xFE" "D\0a\0t\0e\0,\0A\0\n\0", 16);
    EXPECT_EQ(BankFile::fromBytes(utf16).error(), "");
}
