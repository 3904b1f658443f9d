// The CSV splitter and reader on any bytes: a bank download, a spreadsheet saved
// with odd quoting, or a file that is no CSV at all.
#include "bankfiles/csvimporter.h"
#include "fuzzcheck.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

namespace {

// The rows written back as CSV, every cell quoted.
QString written(const QList<QStringList> &rows)
{
    QString out;
    for (const QStringList &row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i > 0)
                out += QLatin1Char(',');
            QString cell = row[i];
            out += QLatin1Char('"') + cell.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        }
        out += QLatin1Char('\n');
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = QString::fromUtf8(bytes);

    // Splitting, then writing the cells back quoted, then splitting again gives the same cells.
    const QList<QStringList> rows = CSVImporter::parse(text);
    for (const QStringList &row : rows) {
        FUZZ_CHECK(!row.isEmpty(), "a row without cells");
        for (const QString &cell : row)
            FUZZ_CHECK(!cell.contains(QLatin1Char('\r')), "a carriage return inside a cell");
    }
    FUZZ_CHECK(CSVImporter::parse(written(rows)) == rows, text.toStdString());

    const std::optional<CSVImporter> importer = CSVImporter::fromUtf8(bytes);
    if (!importer)
        return 0;
    // The guess only names columns the header has.
    const CSVImporter::Mapping m = importer->mapping();
    for (const std::optional<int> &column : {m.date, m.description, m.amount, m.debit, m.credit, m.category})
        FUZZ_CHECK(!column || (*column >= 0 && *column < importer->headers().size()), text.toStdString());
    for (const QString &header : importer->headers())
        FUZZ_CHECK(CSVImporter::trimmedCell(header) == header, header.toStdString());

    // Dates: a few cells per row, read once directly and once through the cache.
    CSVImporter::DateCache cache;
    int looked = 0;
    for (const QStringList &row : importer->rows()) {
        for (const QString &cell : row) {
            if (++looked > 64)
                return 0;
            const std::optional<Instant> when = CSVImporter::date(cell);
            FUZZ_CHECK(cache(cell) == when, cell.toStdString());
            FUZZ_CHECK(cache(cell) == when, cell.toStdString());
        }
    }
    return 0;
}
