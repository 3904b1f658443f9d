// The CAMT.053 reader on any bytes: a bank's statement, a damaged or cut download, or XML
// of another kind.
#include "bankfiles/camtreader.h"
#include "fuzzcheck.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamWriter>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

namespace {

// The statement written back as CAMT.053.001.02: each line one booked entry.
QByteArray written(const Statement &s)
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.writeStartDocument();
    xml.writeDefaultNamespace(QStringLiteral("urn:iso:std:iso:20022:tech:xsd:camt.053.001.02"));
    xml.writeStartElement(QStringLiteral("Document"));
    xml.writeStartElement(QStringLiteral("BkToCstmrStmt"));
    xml.writeStartElement(QStringLiteral("Stmt"));
    xml.writeStartElement(QStringLiteral("Acct"));
    if (!s.account.isEmpty()) {
        xml.writeStartElement(QStringLiteral("Id"));
        xml.writeTextElement(QStringLiteral("IBAN"), s.account);
        xml.writeEndElement();
    }
    if (!s.currency.isEmpty())
        xml.writeTextElement(QStringLiteral("Ccy"), s.currency);
    xml.writeEndElement();
    for (const StatementLine &l : s.lines) {
        xml.writeStartElement(QStringLiteral("Ntry"));
        xml.writeStartElement(QStringLiteral("Amt"));
        xml.writeAttribute(QStringLiteral("Ccy"), s.currency);
        xml.writeCharacters(l.amount.magnitude().toString());
        xml.writeEndElement();
        xml.writeTextElement(QStringLiteral("CdtDbtInd"),
                             l.amount.isNegative() ? QStringLiteral("DBIT") : QStringLiteral("CRDT"));
        xml.writeTextElement(QStringLiteral("Sts"), QStringLiteral("BOOK"));
        xml.writeStartElement(QStringLiteral("BookgDt"));
        xml.writeTextElement(QStringLiteral("Dt"), l.day.toString(Qt::ISODate));
        xml.writeEndElement();
        if (!l.reference.isEmpty())
            xml.writeTextElement(QStringLiteral("AcctSvcrRef"), l.reference);
        xml.writeTextElement(QStringLiteral("AddtlNtryInf"), l.payee);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const bool looks = CamtReader::looksLike(bytes);
    const Statement s = CamtReader::read(bytes);
    const std::string file = bytes.toStdString();
    FUZZ_CHECK(s.format == QLatin1String("CAMT.053") && s.bad >= 0 && !s.datesAmbiguous, file);
    FUZZ_CHECK(s.error.isEmpty() || (s.lines.empty() && s.bad == 0 && s.account.isEmpty()), file);
    FUZZ_CHECK(!s.error.isEmpty() || looks, file);
    for (const StatementLine &l : s.lines) {
        FUZZ_CHECK(l.day.isValid() && l.category.isEmpty() && l.formerPayee.isEmpty(), file);
        FUZZ_CHECK(!l.payee.isEmpty() && l.payee.simplified() == l.payee && l.reference.simplified() == l.reference,
                   file);
    }

    // The lines written back as a statement read back as they are.
    if (!s.error.isEmpty())
        return 0;
    const QByteArray again = written(s);
    const Statement reread = CamtReader::read(again);
    FUZZ_CHECK(reread.lines == s.lines && reread.account == s.account && reread.currency == s.currency &&
                   reread.bad == 0 && reread.error.isEmpty(),
               file + "\n--\n" + again.toStdString() + "\n--\n" + reread.error.toStdString());
    return 0;
}
