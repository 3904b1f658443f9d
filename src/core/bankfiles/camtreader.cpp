#include "bankfiles/camtreader.h"

#include <QXmlStreamReader>

#include <vector>

namespace CamtReader {
namespace {

bool isCamt053(QStringView ns)
{
    const QStringView prefix = u"urn:iso:std:iso:20022:tech:xsd:camt.053.001.";
    if (!ns.startsWith(prefix) || ns.size() == prefix.size())
        return false;
    for (const QChar c : ns.sliced(prefix.size())) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

// One Ntry as read, before it is judged. The Tx fields come from the entry's first
// transaction details that have them.
struct Entry
{
    QString amount, currency, mark, status, booked, valued;
    QString reference, txReference, entryReference;
    QString creditor, debtor, remittance, info, txInfo;
    int transactions = 0;
};

// An amount as the schema writes it: digits with an optional fraction, never signed (the
// credit or debit mark gives the sign) and never with an exponent.
std::optional<Decimal> amountOf(const QString &text)
{
    bool point = false, digits = false;
    for (const QChar c : text) {
        if (c == u'.' && !point)
            point = true;
        else if (c >= u'0' && c <= u'9')
            digits = true;
        else
            return std::nullopt;
    }
    return digits ? Decimal::fromString(text) : std::nullopt;
}

// The calendar day a Dt ("2017-04-01", "2017-04-01+02:00") or DtTm
// ("2014-12-31T13:15:00+01:00") names, as written: an offset never moves it.
QDate dayOf(const QString &text)
{
    if (text.size() > 10 && !QStringView(u"T+-Z").contains(text[10]))
        return {};
    return QDate::fromString(text.left(10), Qt::ISODate);
}

QString errorOf(const QXmlStreamReader &xml)
{
    if (xml.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        return QStringLiteral("its XML breaks off at line %1").arg(xml.lineNumber());
    QString why = xml.errorString();
    if (why.endsWith(u'.'))
        why.chop(1);
    return QStringLiteral("its XML is damaged at line %1, column %2 (%3)")
        .arg(xml.lineNumber())
        .arg(xml.columnNumber())
        .arg(why);
}

class Reader
{
public:
    explicit Reader(Statement &out)
        : m_out(out)
    {}

    void start(const QXmlStreamReader &xml)
    {
        const QString name = xml.name().toString();
        const QString parent = m_path.empty() ? QString() : m_path.back();
        m_path.push_back(name);
        m_text.clear();
        if (m_entryDepth == 0 && name == u"Stmt" && parent == u"BkToCstmrStmt") {
            m_account.clear();
            m_currency.clear();
            m_keep = true;
            m_statementDepth = m_path.size();
        } else if (m_entryDepth == 0 && name == u"Ntry" && parent == u"Stmt") {
            m_entry = Entry();
            m_entryDepth = m_path.size();
        } else if (m_entryDepth > 0) {
            const QString below = pathBelow(m_entryDepth);
            if (below == u"Amt")
                m_entry.currency = xml.attributes().value(QLatin1String("Ccy")).toString().simplified();
            else if (below == u"NtryDtls/TxDtls")
                ++m_entry.transactions;
        }
    }

    void end()
    {
        const QString text = m_text.simplified();
        m_text.clear();
        if (m_entryDepth > 0) {
            if (m_path.size() == m_entryDepth) {
                finishEntry();
                m_entryDepth = 0;
            } else if (!text.isEmpty()) {
                entryField(pathBelow(m_entryDepth), text);
            }
        } else if (m_statementDepth > 0 && m_path.size() > m_statementDepth) {
            const QString below = pathBelow(m_statementDepth);
            if (below == u"Acct/Id/IBAN" || below == u"Acct/Id/Othr/Id")
                m_account = text;
            else if (below == u"Acct/Ccy")
                m_currency = text;
            else if (below == u"Acct")
                accountRead();
        }
        if (m_path.size() == m_statementDepth)
            m_statementDepth = 0;
        m_path.pop_back();
    }

    void characters(QStringView text) { m_text += text; }

private:
    // The open elements below the one at `depth`: "BookgDt/Dt".
    QString pathBelow(size_t depth) const
    {
        QString below;
        for (size_t i = depth; i < m_path.size(); ++i) {
            if (!below.isEmpty())
                below += u'/';
            below += m_path[i];
        }
        return below;
    }

    // A file may hold statements of several accounts; it is read as the first one's.
    void accountRead()
    {
        if (!m_anyAccount) {
            m_anyAccount = true;
            m_out.account = m_account;
            m_out.currency = m_currency;
        }
        m_keep = m_account == m_out.account;
    }

    void entryField(const QString &below, const QString &text)
    {
        const QStringView details = u"NtryDtls/TxDtls/";
        if (below.startsWith(details))
            transactionField(QStringView(below).sliced(details.size()), text);
        else if (below == u"Amt")
            m_entry.amount = text;
        else if (below == u"CdtDbtInd")
            m_entry.mark = text;
        else if (below == u"Sts" || below == u"Sts/Cd")
            m_entry.status = text;
        else if (below == u"BookgDt/Dt" || below == u"BookgDt/DtTm")
            m_entry.booked = text;
        else if (below == u"ValDt/Dt" || below == u"ValDt/DtTm")
            m_entry.valued = text;
        else if (below == u"AcctSvcrRef")
            m_entry.reference = text;
        else if (below == u"NtryRef")
            m_entry.entryReference = text;
        else if (below == u"AddtlNtryInf")
            m_entry.info = text;
    }

    // A field of the entry's transaction details: the first details that have it count.
    void transactionField(QStringView below, const QString &text)
    {
        auto first = [&](QString &field) {
            if (field.isEmpty())
                field = text;
        };
        if (below == u"Refs/AcctSvcrRef")
            first(m_entry.txReference);
        else if (below == u"RltdPties/Cdtr/Nm" || below == u"RltdPties/Cdtr/Pty/Nm")
            first(m_entry.creditor);
        else if (below == u"RltdPties/Dbtr/Nm" || below == u"RltdPties/Dbtr/Pty/Nm")
            first(m_entry.debtor);
        else if (below == u"AddtlTxInf")
            first(m_entry.txInfo);
        else if (below == u"RmtInf/Ustrd" && (m_entry.remittance.isEmpty() || m_remittanceOf == m_entry.transactions)) {
            // Unstructured remittance comes in lines of 140 characters: one text.
            m_entry.remittance += (m_entry.remittance.isEmpty() ? QString() : QStringLiteral(" ")) + text;
            m_remittanceOf = m_entry.transactions;
        }
    }

    void finishEntry()
    {
        const Entry &e = m_entry;
        if (!m_keep)
            return;
        if (m_out.currency.isEmpty())
            m_out.currency = e.currency;
        if (e.status.compare(u"BOOK", Qt::CaseInsensitive) != 0)
            return; // pending or information only: not yet the account's
        const std::optional<Decimal> amount = amountOf(e.amount);
        const QDate day = dayOf(e.booked.isEmpty() ? e.valued : e.booked);
        const bool debit = e.mark == u"DBIT";
        if (!amount || (!debit && e.mark != u"CRDT") || !day.isValid()) {
            ++m_out.bad;
            return;
        }

        // One amount booked for several transactions (a batch) is best named by the
        // bank's own words for it.
        const QString &counterparty = debit ? e.creditor : e.debtor;
        const bool batch = e.transactions > 1;
        const std::initializer_list<QString> single = {counterparty, e.remittance, e.info, e.txInfo};
        const std::initializer_list<QString> several = {e.info, counterparty, e.remittance, e.txInfo};
        QString payee;
        for (const QString &candidate : batch ? several : single) {
            if (payee.isEmpty())
                payee = candidate;
        }
        if (payee.isEmpty())
            payee = QStringLiteral("Imported");
        QString reference = e.reference;
        for (const QString &candidate : {e.txReference, e.entryReference}) {
            if (reference.isEmpty())
                reference = candidate;
        }
        m_out.lines.push_back({day, debit ? amount->negated() : *amount, payee, {}, reference, {}});
    }

    Statement &m_out;
    std::vector<QString> m_path; // local names of the open elements, the root first
    QString m_text;
    QString m_account, m_currency; // of the statement being read
    bool m_anyAccount = false;
    bool m_keep = true;
    size_t m_statementDepth = 0; // the depth of the open Stmt, 0 outside one
    Entry m_entry;
    size_t m_entryDepth = 0; // the depth of the open Ntry, 0 outside one
    int m_remittanceOf = 0;  // which transaction details the remittance text is from
};

} // namespace

bool looksLike(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            return isCamt053(xml.namespaceUri());
    }
    return false;
}

Statement read(const QByteArray &bytes)
{
    Statement out;
    out.format = QStringLiteral("CAMT.053");
    Reader reader(out);
    QXmlStreamReader xml(bytes);
    bool root = true;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            if (root && !isCamt053(xml.namespaceUri())) {
                out.error = QStringLiteral("it is XML, but not a CAMT.053 bank statement");
                return out;
            }
            root = false;
            reader.start(xml);
            break;
        case QXmlStreamReader::EndElement:
            reader.end();
            break;
        case QXmlStreamReader::Characters:
            reader.characters(xml.text());
            break;
        default:
            break;
        }
    }
    if (xml.hasError()) {
        const QString error = errorOf(xml);
        out = Statement();
        out.format = QStringLiteral("CAMT.053");
        out.error = error;
    }
    return out;
}

} // namespace CamtReader
