#include "bankfiles/bankfile.h"

#include "bankfiles/camtreader.h"
#include "bankfiles/ofxreader.h"
#include "bankfiles/qifreader.h"

#include <QFile>

#include <algorithm>

namespace {

// What a file that is plainly no bank download is, from its first bytes; empty when
// it may be one.
QString notABankFile(const QByteArray &bytes)
{
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }))
        return QStringLiteral("the file is empty");
    if (bytes.startsWith("%PDF"))
        return QStringLiteral("it is a PDF document, not a bank download (ask the bank for CSV, OFX or QIF)");
    if (bytes.startsWith("\x89PNG") || bytes.startsWith("\xFF\xD8\xFF") || bytes.startsWith("GIF8"))
        return QStringLiteral("it is a picture, not a bank download");
    if (bytes.startsWith("PK\x03\x04"))
        return QStringLiteral("it is a compressed archive; unpack it and choose the file inside");
    // Text has no zero bytes, except text in UTF-16, which starts with its mark.
    const bool utf16 = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    if (!utf16 && bytes.left(4096).contains('\0'))
        return QStringLiteral("it is not a text file, so it is no bank download Coinhall knows");
    return {};
}

} // namespace

BankFile BankFile::fromFile(const QString &path)
{
    QFile file(path);
    BankFile bank;
    if (!file.open(QIODevice::ReadOnly)) {
        bank.m_error = QStringLiteral("it could not be opened (%1)").arg(file.errorString());
        return bank;
    }
    return fromBytes(file.readAll());
}

BankFile BankFile::fromBytes(const QByteArray &bytes)
{
    BankFile bank;
    bank.m_bytes = bytes;
    bank.read();
    return bank;
}

void BankFile::read()
{
    m_csv.reset();
    m_statement = {};
    m_error = notABankFile(m_bytes);
    if (!m_error.isEmpty())
        return;
    if (OfxReader::looksLike(m_bytes))
        m_statement = OfxReader::read(m_bytes);
    else if (CamtReader::looksLike(m_bytes))
        m_statement = CamtReader::read(m_bytes);
    else if (QifReader::looksLike(m_bytes))
        m_statement = QifReader::read(m_bytes, m_chosen.dayFirst);
    else if (!(m_csv = CSVImporter::fromBytes(m_bytes, m_chosen)))
        m_error = m_chosen.encoding ? QStringLiteral("it is not written in %1").arg(*m_chosen.encoding)
                                    : QStringLiteral("no table of dates and amounts was found in it");
    if (m_error.isEmpty())
        m_error = m_statement.error;
}

QString BankFile::format() const
{
    return !m_error.isEmpty() ? QString() : m_csv ? QStringLiteral("CSV") : m_statement.format;
}

QString BankFile::summary() const
{
    QStringList parts{format()};
    if (m_csv)
        parts << m_csv->readingText();
    if (!m_statement.account.isEmpty())
        parts << QStringLiteral("account ") + m_statement.account;
    if (!m_statement.currency.isEmpty())
        parts << m_statement.currency;
    return m_error.isEmpty() ? parts.join(QStringLiteral(" · ")) : QString();
}

bool BankFile::datesAmbiguous() const
{
    return m_csv ? m_csv->datesAmbiguous() : m_statement.datesAmbiguous;
}

void BankFile::setDayFirst(bool dayFirst)
{
    CSVImporter::Reading chosen = m_chosen;
    chosen.dayFirst = dayFirst;
    readAgain(chosen);
}

void BankFile::setReading(const CSVImporter::Reading &chosen)
{
    readAgain({chosen.encoding, chosen.separator, chosen.decimalComma, m_chosen.dayFirst});
}

void BankFile::readAgain(const CSVImporter::Reading &chosen)
{
    if (chosen == m_chosen)
        return;
    // A table read again keeps the columns the user chose, unless other cells now
    // stand between the separators.
    const std::optional<CSVImporter::Mapping> columns = m_csv ? std::optional(m_csv->mapping()) : std::nullopt;
    const qsizetype headers = m_csv ? m_csv->headers().size() : 0;
    const QChar separator = m_csv ? m_csv->reading().separator.value_or(u',') : QChar();
    m_chosen = chosen;
    read();
    if (m_csv && columns && m_csv->reading().separator.value_or(u',') == separator && m_csv->headers().size() == headers)
        m_csv->setMapping(*columns);
}

QString BankFile::refusal(const QString &bookCurrency) const
{
    const QString currency = m_statement.currency.toUpper();
    if (currency.isEmpty() || currency == bookCurrency.toUpper())
        return {};
    return QStringLiteral("its amounts are in %1, and these books are kept in %2").arg(currency, bookCurrency);
}

BankImport::Conversion BankFile::preview(const QUuid &account, const std::vector<Transaction> &book, bool flip) const
{
    if (m_csv)
        return m_csv->preview(account, book, flip);
    BankImport::Conversion conversion = BankImport::convert(m_statement, account, book);
    if (flip)
        BankImport::flipSigns(conversion.newTransactions);
    return conversion;
}
