// Reading CAMT.053 statements: booked entries, signs, days, payees, references, accounts.
#include "bankfiles/camtreader.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace {

// Each line as "2024-03-05 -12.5 Payee #reference".
std::vector<std::string> shown(const Statement &s)
{
    std::vector<std::string> lines;
    for (const StatementLine &l : s.lines)
        lines.push_back((l.day.toString(Qt::ISODate) + u' ' + l.amount.toString() + u' ' + l.payee +
                         QLatin1String(" #") + l.reference)
                            .toStdString());
    return lines;
}

// A statement document of the given version around the statements' XML.
QByteArray camt(const char *version, const char *statements)
{
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.") +
           version + "\"><BkToCstmrStmt><GrpHdr><MsgId>1</MsgId></GrpHdr>" + statements + "</BkToCstmrStmt></Document>";
}

} // namespace

TEST(CamtRead, BookedEntriesOfVersion02)
{
    const Statement s = CamtReader::read(camt("02", R"(
<Stmt><Id>1</Id>
  <Acct><Id><IBAN>DE02120300000000202051</IBAN></Id><Ccy>EUR</Ccy></Acct>
  <Bal><Amt Ccy="EUR">100.00</Amt><CdtDbtInd>CRDT</CdtDbtInd></Bal>
  <Ntry><NtryRef>N1</NtryRef><Amt Ccy="EUR">12.50</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts>
    <BookgDt><Dt>2024-03-05</Dt></BookgDt><ValDt><Dt>2024-03-06</Dt></ValDt><AcctSvcrRef>REF-1</AcctSvcrRef>
    <AddtlNtryInf>Card payment</AddtlNtryInf>
    <NtryDtls><TxDtls><Refs><AcctSvcrRef>TX-1</AcctSvcrRef></Refs><AmtDtls><TxAmt><Amt Ccy="EUR">99</Amt></TxAmt></AmtDtls>
      <RltdPties><Dbtr><Nm>Me</Nm></Dbtr><Cdtr><Nm> Corner
        Cafe </Nm><PstlAdr><AdrLine>Main St</AdrLine></PstlAdr></Cdtr></RltdPties></TxDtls></NtryDtls></Ntry>
  <Ntry><Amt Ccy="EUR">2000</Amt><CdtDbtInd>CRDT</CdtDbtInd><Sts>BOOK</Sts>
    <BookgDt><DtTm>2024-03-31T23:30:00-05:00</DtTm></BookgDt>
    <NtryDtls><TxDtls><Refs><AcctSvcrRef>TX-2</AcctSvcrRef></Refs>
      <RltdPties><Dbtr><Nm>Employer</Nm></Dbtr><Cdtr><Nm>Me</Nm></Cdtr></RltdPties></TxDtls></NtryDtls></Ntry>
  <Ntry><Amt Ccy="EUR">7</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>PDNG</Sts><BookgDt><Dt>2024-04-01</Dt></BookgDt></Ntry>
  <Ntry><NtryRef>N4</NtryRef><Amt Ccy="EUR">30</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts>
    <BookgDt><Dt>2024-04-02+02:00</Dt></BookgDt><AddtlNtryInf>Standing order</AddtlNtryInf>
    <NtryDtls><TxDtls><RmtInf><Ustrd>Rent April</Ustrd><Ustrd>flat 3</Ustrd></RmtInf></TxDtls></NtryDtls></Ntry>
  <Ntry><Amt Ccy="EUR">4</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts><BookgDt><Dt>2024-04-03</Dt></BookgDt>
    <AddtlNtryInf>Account fee</AddtlNtryInf></Ntry>
  <Ntry><Amt Ccy="EUR">5</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts><BookgDt><Dt>2024-04-04</Dt></BookgDt>
    <NtryDtls><TxDtls><AddtlTxInf>ATM</AddtlTxInf></TxDtls></NtryDtls></Ntry>
  <Ntry><Amt Ccy="EUR">300</Amt><CdtDbtInd>CRDT</CdtDbtInd><Sts>BOOK</Sts><BookgDt><Dt>2024-04-05</Dt></BookgDt>
    <AddtlNtryInf>Collected direct debits</AddtlNtryInf>
    <NtryDtls><Btch><NbOfTxs>2</NbOfTxs></Btch>
      <TxDtls><Refs><AcctSvcrRef>B-1</AcctSvcrRef></Refs><Amt Ccy="EUR">100</Amt><RltdPties><Dbtr><Nm>Ann</Nm></Dbtr></RltdPties></TxDtls>
      <TxDtls><Refs><AcctSvcrRef>B-2</AcctSvcrRef></Refs><Amt Ccy="EUR">200</Amt><RltdPties><Dbtr><Nm>Bob</Nm></Dbtr></RltdPties></TxDtls>
    </NtryDtls></Ntry>
  <Ntry><Amt Ccy="EUR">6</Amt><Sts>BOOK</Sts><BookgDt><Dt>2024-04-06</Dt></BookgDt></Ntry>
  <Ntry><Amt Ccy="EUR">-6</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts><BookgDt><Dt>2024-04-06</Dt></BookgDt></Ntry>
  <Ntry><Amt Ccy="EUR">6</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts><BookgDt><Dt>2024-04-31</Dt></BookgDt></Ntry>
</Stmt>)"));
    EXPECT_EQ(s.format, "CAMT.053");
    EXPECT_EQ(s.account, "DE02120300000000202051");
    EXPECT_EQ(s.currency, "EUR");
    EXPECT_EQ(s.bad, 3);
    EXPECT_TRUE(s.error.isEmpty());
    EXPECT_EQ(shown(s), (std::vector<std::string>{
                            "2024-03-05 -12.5 Corner Cafe #REF-1",
                            "2024-03-31 2000 Employer #TX-2",
                            "2024-04-02 -30 Rent April flat 3 #N4",
                            "2024-04-03 -4 Account fee #",
                            "2024-04-04 -5 ATM #",
                            "2024-04-05 300 Collected direct debits #B-1",
                        }));
}

TEST(CamtRead, Version08PartiesStatusCodesAndOneAccount)
{
    const Statement s = CamtReader::read(camt("08", R"(
<Stmt><Acct><Id><Othr><Id>0035-29152</Id></Othr></Id></Acct>
  <Ntry><Amt Ccy="CHF">1284.30</Amt><CdtDbtInd>CRDT</CdtDbtInd><Sts><Cd>BOOK</Cd></Sts>
    <BookgDt><Dt>2023-01-25</Dt></BookgDt>
    <NtryDtls><TxDtls><RltdPties><Dbtr><Pty><Nm>Payer AG</Nm></Pty></Dbtr></RltdPties></TxDtls></NtryDtls></Ntry>
  <Ntry><Amt Ccy="CHF">9</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts><Cd>PDNG</Cd></Sts><BookgDt><Dt>2023-01-26</Dt></BookgDt></Ntry>
</Stmt>
<Stmt><Acct><Id><Othr><Id>0035-29152</Id></Othr></Id></Acct>
  <Ntry><Amt Ccy="CHF">20</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts><Cd>BOOK</Cd></Sts><BookgDt><Dt>2023-01-27</Dt></BookgDt>
    <NtryDtls><TxDtls><RltdPties><Cdtr><Pty><Nm>Shop</Nm></Pty></Cdtr></RltdPties></TxDtls></NtryDtls></Ntry>
</Stmt>
<Stmt><Acct><Id><IBAN>CH9300762011623852957</IBAN></Id></Acct>
  <Ntry><Amt Ccy="CHF">50</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts><Cd>BOOK</Cd></Sts><BookgDt><Dt>2023-01-27</Dt></BookgDt></Ntry>
</Stmt>)"));
    EXPECT_EQ(s.account, "0035-29152");
    EXPECT_EQ(s.currency, "CHF");
    EXPECT_EQ(shown(s), (std::vector<std::string>{"2023-01-25 1284.3 Payer AG #", "2023-01-27 -20 Shop #"}));
}

TEST(CamtRead, DamagedXmlOtherXmlAndNoBookedEntries)
{
    const QByteArray whole = camt("04", "<Stmt><Ntry><Amt Ccy=\"CHF\">5</Amt><CdtDbtInd>DBIT</CdtDbtInd>"
                                        "<Sts>BOOK</Sts><BookgDt><Dt>2024-01-01</Dt></BookgDt></Ntry></Stmt>");
    ASSERT_EQ(CamtReader::read(whole).lines.size(), 1u);
    const Statement cut = CamtReader::read(whole.left(whole.indexOf("</Ntry>")));
    EXPECT_EQ(cut.error, "its XML breaks off at line 2");
    EXPECT_TRUE(cut.lines.empty());
    EXPECT_EQ(CamtReader::read(QByteArray(whole).replace("</Sts>", "</Status>")).error,
              "its XML is damaged at line 2, column 192 (Opening and ending tag mismatch)");
    EXPECT_EQ(CamtReader::read("<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.054.001.02\"/>").error,
              "it is XML, but not a CAMT.053 bank statement");
    const Statement pending = CamtReader::read(QByteArray(whole).replace("BOOK", "PDNG"));
    EXPECT_TRUE(pending.error.isEmpty());
    EXPECT_TRUE(pending.lines.empty());
}

TEST(CamtRead, FoundFromTheRootNamespace)
{
    EXPECT_TRUE(CamtReader::looksLike(camt("08", "")));
    EXPECT_TRUE(CamtReader::looksLike("\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- x --><c:Document "
                                      "xmlns:c=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.02\"/>"));
    EXPECT_FALSE(CamtReader::looksLike("<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.052.001.02\"/>"));
    EXPECT_FALSE(CamtReader::looksLike("<Document><camt.053.001.02/></Document>"));
    EXPECT_FALSE(CamtReader::looksLike("!Type:Bank\n"));
}
