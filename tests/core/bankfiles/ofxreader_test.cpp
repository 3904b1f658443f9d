// OFX and QFX downloads: the lines, days, amounts, payees and FITIDs the files write.
#include "bankfiles/ofxreader.h"
#include "helpers/testing.h"

#include <QDir>

#include <random>

namespace {

using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

// "OFX USD 1234 bad=0" (or the error), then "2023-01-15 | -4.5 | Corner Shop | T1" a line.
Lines described(const Statement &s)
{
    Lines out{s.error.isEmpty()
                  ? (s.format + u' ' + s.currency + u' ' + s.account).toStdString() + " bad=" + std::to_string(s.bad)
                  : "error: " + s.error.toStdString()};
    for (const StatementLine &l : s.lines)
        out.push_back((l.day.toString(Qt::ISODate) + QStringLiteral(" | ") + l.amount.toString() +
                       QStringLiteral(" | ") + l.payee + QStringLiteral(" | ") + l.reference)
                          .toStdString());
    return out;
}

const char *const sgmlHeader = "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\n"
                               "CHARSET:1252\nCOMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";

// OFX 1.02 as banks send it: leaves without end tags, times with their own offsets.
const QByteArray checking = QByteArray(sgmlHeader) + R"(<OFX>
<SIGNONMSGSRSV1><SONRS>
<STATUS><CODE>0<SEVERITY>INFO</STATUS>
<DTSERVER>20230201120000[-5:EST]
<LANGUAGE>ENG
</SONRS></SIGNONMSGSRSV1>
<BANKMSGSRSV1><STMTTRNRS><TRNUID>1
<STATUS><CODE>0<SEVERITY>INFO</STATUS>
<STMTRS><CURDEF>USD
<BANKACCTFROM><BANKID>021000021<ACCTID>XXXXXX4321<ACCTTYPE>CHECKING</BANKACCTFROM>
<BANKTRANLIST><DTSTART>20230101<DTEND>20230131
<STMTTRN><TRNTYPE>POS<DTPOSTED>20230115233000[-8:PST]<TRNAMT>-4.50<FITID>T1<NAME>Corner Shop &amp; Deli<MEMO>POS 1234</STMTTRN>
<STMTTRN><TRNTYPE>POS<DTPOSTED>20230115233000[-8:PST]<TRNAMT>-4.50<FITID>T2<NAME>Corner Shop &amp; Deli<MEMO>POS 1234</STMTTRN>
<STMTTRN><TRNTYPE>PAYMENT<DTPOSTED>20230116003000.000[+10:AEST]<TRNAMT>-61.20<FITID>T3
<PAYEE><NAME>City Water<ADDR1>1 Main St<CITY>Springfield<STATE>IL<POSTALCODE>62701<PHONE>555-0100</PAYEE>
<MEMO>Account 889</STMTTRN>
<STMTTRN><TRNTYPE>FEE<DTPOSTED>20230120<TRNAMT>-1,50<FITID>T4<MEMO>Card fee</STMTTRN>
<STMTTRN><TRNTYPE>CHECK<DTPOSTED>20230125<TRNAMT>-25.00<FITID>T5<CHECKNUM>1001</STMTTRN>
<STMTTRN><TRNTYPE>DIRECTDEP<DTPOSTED>20230131<TRNAMT>+1500.00<FITID>T6<NAME>Payroll</STMTTRN>
<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20230131<TRNAMT>-9.99<FITID>T&#56;<NAME>Streaming</STMTTRN>
<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20230131<TRNAMT>1,234.56<FITID>T9<NAME>Thousands</STMTTRN>
</BANKTRANLIST>
<LEDGERBAL><BALAMT>1407.30<DTASOF>20230131</LEDGERBAL>
</STMTRS></STMTTRNRS></BANKMSGSRSV1>
</OFX>
)";

// OFX 2.x: a checking account without lines, the savings account's lines, a card's.
const QByteArray savings = R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?>
<?OFX OFXHEADER="200" VERSION="211" SECURITY="NONE" OLDFILEUID="NONE" NEWFILEUID="NONE"?>
<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0</CODE><SEVERITY>INFO</SEVERITY></STATUS>
<DTSERVER>20240302</DTSERVER><LANGUAGE>ENG</LANGUAGE></SONRS></SIGNONMSGSRSV1>
<BANKMSGSRSV1><STMTTRNRS><TRNUID>1</TRNUID><STATUS><CODE>0</CODE><SEVERITY>INFO</SEVERITY></STATUS><STMTRS>
  <CURDEF>EUR</CURDEF><BANKACCTFROM><BANKID>50010517</BANKID><ACCTID>DE00111</ACCTID><ACCTTYPE>CHECKING</ACCTTYPE></BANKACCTFROM>
  <BANKTRANLIST><DTSTART>20240201</DTSTART><DTEND>20240229</DTEND></BANKTRANLIST>
  <LEDGERBAL><BALAMT>0</BALAMT><DTASOF>20240229</DTASOF></LEDGERBAL></STMTRS></STMTTRNRS>
<STMTTRNRS><TRNUID>2</TRNUID><STATUS><CODE>0</CODE><SEVERITY>INFO</SEVERITY></STATUS><STMTRS>
  <CURDEF>EUR</CURDEF><BANKACCTFROM><BANKID>50010517</BANKID><ACCTID>DE00222</ACCTID><ACCTTYPE>SAVINGS</ACCTTYPE></BANKACCTFROM>
  <BANKTRANLIST><DTSTART>20240201</DTSTART><DTEND>20240229</DTEND>
    <STMTTRN><TRNTYPE>INT</TRNTYPE><DTPOSTED>20240229120000[+1:CET]</DTPOSTED><TRNAMT>0.37</TRNAMT>
      <FITID>S-1</FITID><NAME><![CDATA[Zinsen <Q1>]]></NAME></STMTTRN>
    <STMTTRN><TRNTYPE>XFER</TRNTYPE><DTPOSTED>20240201</DTPOSTED><TRNAMT>-200.00</TRNAMT>
      <FITID>S-2</FITID><NAME>Übertrag</NAME></STMTTRN></BANKTRANLIST>
  <LEDGERBAL><BALAMT>5000.37</BALAMT><DTASOF>20240229</DTASOF></LEDGERBAL></STMTRS></STMTTRNRS></BANKMSGSRSV1>
<CREDITCARDMSGSRSV1><CCSTMTTRNRS><TRNUID>3</TRNUID><STATUS><CODE>0</CODE><SEVERITY>INFO</SEVERITY></STATUS><CCSTMTRS>
  <CURDEF>EUR</CURDEF><CCACCTFROM><ACCTID>************9876</ACCTID></CCACCTFROM>
  <BANKTRANLIST><DTSTART>20240201</DTSTART><DTEND>20240229</DTEND>
    <STMTTRN><TRNTYPE>DEBIT</TRNTYPE><DTPOSTED>20240210</DTPOSTED><TRNAMT>-12.90</TRNAMT><FITID>C-1</FITID></STMTTRN>
  </BANKTRANLIST><LEDGERBAL><BALAMT>-12.90</BALAMT><DTASOF>20240229</DTASOF></LEDGERBAL></CCSTMTRS></CCSTMTTRNRS>
</CREDITCARDMSGSRSV1></OFX>
)";

const QByteArray investments = QByteArray(sgmlHeader) + R"(<OFX>
<SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20230120<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1>
<INVSTMTMSGSRSV1><INVSTMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS>
<INVSTMTRS><DTASOF>20230120<CURDEF>USD<INVACCTFROM><BROKERID>broker.example<ACCTID>77</INVACCTFROM>
<INVTRANLIST><DTSTART>20230101<DTEND>20230120
<INVBANKTRAN><STMTTRN><TRNTYPE>CREDIT<DTPOSTED>20230105<TRNAMT>100.00<FITID>X1<NAME>Deposit</STMTTRN>
<SUBACCTFUND>CASH</INVBANKTRAN>
</INVTRANLIST></INVSTMTRS></INVSTMTTRNRS></INVSTMTMSGSRSV1>
</OFX>
)";

const std::string damaged = "error: it is damaged or holds no bank or card statement";

} // namespace

TEST(OfxReader, KnowsOfxFromItsHeaderAlone)
{
    for (const QByteArray &ofx : {checking, savings, "\xEF\xBB\xBF\r\n<OFX>\n<SIGNONMSGSRSV1>"_ba})
        EXPECT_TRUE(OfxReader::looksLike(ofx)) << ofx.left(40).toStdString();
    for (const QByteArray &other : {""_ba, "Date,Description,Amount\n"_ba, "!Type:Bank\nD1/2/2024\n"_ba,
                                    "<?xml version=\"1.0\"?>\n<Document><BkToCstmrStmt>"_ba})
        EXPECT_FALSE(OfxReader::looksLike(other)) << other.toStdString();
}

// Each line's day as written, before any offset; the file's sign; NAME, else PAYEE's
// name, else MEMO, else the check number; two alike lines both kept by their FITIDs.
// T8's FITID is written as a character reference, so libofx's own amount and day are
// taken; "1,234.56" is no amount libofx reads right, so it counts as bad.
TEST(OfxReader, ReadsTheLinesAsTheBankWroteThem)
{
    EXPECT_EQ(described(OfxReader::read(checking)),
              (Lines{"OFX USD XXXXXX4321 bad=1", "2023-01-15 | -4.5 | Corner Shop & Deli | T1",
                     "2023-01-15 | -4.5 | Corner Shop & Deli | T2", "2023-01-16 | -61.2 | City Water | T3",
                     "2023-01-20 | -1.5 | Card fee | T4", "2023-01-25 | -25 | Check 1001 | T5",
                     "2023-01-31 | 1500 | Payroll | T6", "2023-01-31 | -9.99 | Streaming | T8"}));
}

TEST(OfxReader, QfxIsOfxWithIntuitsSignOnTags)
{
    QByteArray qfx = checking;
    qfx.replace("<LANGUAGE>ENG\n", "<LANGUAGE>ENG\n<INTU.BID>3000\n<INTU.USERID>me\n");
    const Statement statement = OfxReader::read(qfx);
    EXPECT_EQ(statement.format, "QFX");
    EXPECT_EQ(statement.lines, OfxReader::read(checking).lines);
}

TEST(OfxReader, TakesTheFirstAccountWithLinesAndLeavesTheOthersOut)
{
    EXPECT_EQ(described(OfxReader::read(savings)),
              (Lines{"OFX EUR DE00222 bad=0", "2024-02-29 | 0.37 | Zinsen <Q1> | S-1",
                     "2024-02-01 | -200 | Übertrag | S-2"}));
}

TEST(OfxReader, RefusesInvestmentsAndDamageQuietly)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(described(OfxReader::read(investments)),
              Lines{"error: it holds only an investment account, which Coinhall does not track"});
    for (const QByteArray &bad : {""_ba, "OFXHEADER:100\n\n<OFX><SIGNONMSGSRSV1>"_ba,
                                  checking.left(checking.indexOf("<STMTTRN>")), "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"_ba})
        EXPECT_EQ(described(OfxReader::read(bad)), Lines{damaged}) << bad.toStdString();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Cut and scrambled downloads: never a crash; always lines, bad lines or a reason.
TEST(OfxReader, SurvivesDamagedFiles)
{
    std::mt19937 random(24);
    for (const QByteArray &file : {checking, savings}) {
        for (int i = 0; i < 100; ++i) {
            QByteArray bytes = file.left(i < 40 ? file.size() * i / 40 : file.size());
            for (int n = i < 40 ? 0 : i % 8 + 1; n > 0; --n)
                bytes[random() % bytes.size()] = char(random() % 256);
            const Statement statement = OfxReader::read(bytes);
            EXPECT_TRUE(!statement.lines.empty() || statement.bad > 0 || !statement.error.isEmpty())
                << bytes.toStdString();
        }
    }
}

// A long download is handed to libofx in pieces: every line once, in the file's order.
TEST(OfxReader, ReadsALongListWhole)
{
    QByteArray ofx = checking.first(checking.indexOf("<STMTTRN>"));
    constexpr int count = 6500;
    for (int i = 0; i < count; ++i)
        ofx += "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20230110<TRNAMT>-" + QByteArray::number(i) + ".25<FITID>L" +
               QByteArray::number(i) + "<NAME>Shop " + QByteArray::number(i % 7) + "</STMTTRN>\n";
    ofx += checking.sliced(checking.indexOf("</BANKTRANLIST>"));
    const Statement statement = OfxReader::read(ofx);
    ASSERT_EQ(statement.lines.size(), size_t(count));
    EXPECT_EQ(statement.account, u"XXXXXX4321");
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(statement.lines[size_t(i)].reference, (u"L"_s + QString::number(i))) << i;
    EXPECT_EQ(statement.lines.back().amount.toString(), "-6499.25");
}
