// The QIF reader on any bytes: an export of another program, a bank's download in an
// old dialect, or a file that is no QIF at all.
#include "bankfiles/qifreader.h"
#include "fuzzcheck.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

namespace {

bool isUnicode(const QString &text)
{
    return QStringView(text).isValidUtf16();
}

// The lines written back as one bank section, month first with four-digit years.
QByteArray written(const Statement &s)
{
    QByteArray out = "!Type:Bank\n";
    for (const StatementLine &l : s.lines) {
        out += "D" + l.day.toString(QStringLiteral("MM/dd/yyyy")).toUtf8() + "\nT" + l.amount.toString().toUtf8() +
               "\nP" + l.payee.toUtf8() + "\n";
        if (!l.category.isEmpty())
            out += "L" + l.category.toUtf8() + "\n";
        out += "^\n";
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QifReader::looksLike(bytes);
    const Statement s = QifReader::read(bytes);
    const std::string file = bytes.toStdString();
    FUZZ_CHECK(s.format == QLatin1String("QIF") && s.currency.isEmpty() && s.bad >= 0, file);
    FUZZ_CHECK(s.error.isEmpty() || (s.lines.empty() && s.bad == 0), file);
    bool unicode = isUnicode(s.account);
    for (const StatementLine &l : s.lines) {
        FUZZ_CHECK(l.day.isValid() && l.reference.isEmpty() && l.formerPayee.isEmpty(), file);
        FUZZ_CHECK(!l.payee.isEmpty() && l.payee.trimmed() == l.payee && l.category.trimmed() == l.category, file);
        for (const QString *text : {&l.payee, &l.category})
            FUZZ_CHECK(!text->contains(QLatin1Char('\n')) && !text->contains(QLatin1Char('\r')), file);
        unicode = unicode && isUnicode(l.payee) && isUnicode(l.category);
    }

    // Month first is what the reader took when the file could not tell.
    if (s.datesAmbiguous) {
        const Statement monthFirst = QifReader::read(bytes, false);
        FUZZ_CHECK(monthFirst.lines == s.lines && monthFirst.bad == s.bad && !monthFirst.datesAmbiguous, file);
    }

    // The lines written back as QIF read back as they are.
    if (!unicode)
        return 0;
    const QByteArray again = written(s);
    const Statement reread = QifReader::read(again);
    FUZZ_CHECK(reread.lines == s.lines && reread.bad == 0 && reread.error.isEmpty(),
               file + "\n--\n" + again.toStdString());
    return 0;
}
