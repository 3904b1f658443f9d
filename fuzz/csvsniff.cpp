// How a bank CSV is written, found from any bytes: the encoding, the separator, a decimal
// comma, day-first dates; then the rows read that way turned into lines.
#include "bankfiles/csvimporter.h"
#include "fuzzcheck.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QUuid>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::string file = bytes.toStdString();
    const std::optional<CSVImporter> importer = CSVImporter::fromBytes(bytes);
    if (!importer)
        return 0;

    // Every part of the reading is found, from the few there are.
    const CSVImporter::Reading &reading = importer->reading();
    FUZZ_CHECK(reading.encoding && reading.separator && reading.decimalComma && reading.dayFirst, file);
    FUZZ_CHECK(QStringList({"UTF-8", "UTF-16LE", "UTF-16BE", "Windows-1252"}).contains(*reading.encoding), file);
    FUZZ_CHECK(*reading.separator == u',' || *reading.separator == u';' || *reading.separator == u'\t', file);
    FUZZ_CHECK(importer->readingText().startsWith(*reading.encoding), file);
    // Valid UTF-8 without zero bytes or a UTF-16 mark stays UTF-8.
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString asUtf8 = utf8.decode(bytes);
    if (!utf8.hasError() && !bytes.contains('\0') && !bytes.startsWith("\xFF\xFE") && !bytes.startsWith("\xFE\xFF"))
        FUZZ_CHECK(*reading.encoding == u"UTF-8", file);

    // Reading again with what was found as the user's word gives the same.
    const std::optional<CSVImporter> again = CSVImporter::fromBytes(bytes, reading);
    FUZZ_CHECK(again && again->reading() == reading && again->headers() == importer->headers() &&
                   again->rows() == importer->rows() && again->mapping() == importer->mapping(),
               file);
    (void)importer->datesAmbiguous();

    // An amount read in the file's style reads back from its own text written that way.
    const bool comma = *reading.decimalComma;
    const CSVImporter::Mapping m = importer->mapping();
    int looked = 0;
    for (const QStringList &row : importer->rows())
        for (const std::optional<int> &column : {m.amount, m.debit, m.credit}) {
            if (!column || *column >= row.size() || ++looked > 64)
                continue;
            const std::optional<Decimal> amount = CSVImporter::amount(row[*column], comma);
            if (!amount)
                continue;
            QString text = amount->toString();
            if (comma)
                text.replace(u'.', u',');
            FUZZ_CHECK(CSVImporter::amount(text, comma) == amount, file + "\n" + text.toStdString());
        }

    // Every row is a line, already in or unreadable; a second import adds nothing.
    const QUuid account = QUuid::fromString(QLatin1String("{6A1F0C4E-2B7D-4C1A-9E3F-5D2B8A7C6E10}"));
    const CSVImporter::Conversion first = importer->transactions(account, {}, {});
    FUZZ_CHECK(first.newTransactions.size() + size_t(first.skipped) + size_t(first.bad) ==
                   size_t(importer->rows().size()),
               file);
    for (const Transaction &t : first.newTransactions)
        FUZZ_CHECK(!t.amount.isZero() && !t.payee.isEmpty() && t.date.inIsoRange(), file);
    const CSVImporter::Conversion second = importer->transactions(account, first.newTransactions, {});
    FUZZ_CHECK(second.newTransactions.empty(), file);
    return 0;
}
