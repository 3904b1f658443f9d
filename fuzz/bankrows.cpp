// The conversion of bank rows into transactions, with any cells and any column
// mapping. The input's first line picks the columns: six characters for date,
// description, amount, debit, credit and category, each a column digit or "-" for
// none. The rest is the CSV file.
#include "bankfiles/autocategory.h"
#include "bankfiles/csvimporter.h"
#include "bankfiles/importer.h"
#include "fuzzcheck.h"
#include "model/moneyfile.h"

#include <QByteArray>
#include <QUuid>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

namespace {

std::optional<int> column(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c == '!')
        return -1; // a position no row has
    return std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype lineEnd = input.indexOf('\n');
    if (lineEnd < 0)
        return 0;
    const QByteArray picks = input.left(lineEnd).leftJustified(6, '-');
    std::optional<CSVImporter> importer = CSVImporter::fromUtf8(input.mid(lineEnd + 1));
    if (!importer)
        return 0;
    importer->setMapping(
        {column(picks[0]), column(picks[1]), column(picks[2]), column(picks[3]), column(picks[4]), column(picks[5])});

    const QUuid account = QUuid::fromString(QLatin1String("{6A1F0C4E-2B7D-4C1A-9E3F-5D2B8A7C6E10}"));
    const CSVImporter::Conversion first = importer->transactions(account, {}, {});
    const std::string file = input.toStdString();
    FUZZ_CHECK(first.newTransactions.size() + size_t(first.skipped) + size_t(first.bad) ==
                   size_t(importer->rows().size()),
               file);
    for (const Transaction &t : first.newTransactions) {
        FUZZ_CHECK(t.accountID == account && !t.amount.isZero() && !t.payee.isEmpty(), file);
        FUZZ_CHECK(t.kind == (t.amount.signum() > 0 ? TxKind::deposit : TxKind::expense), file);
        FUZZ_CHECK(t.importHash == BankImport::importHash(account, t.date, t.amount, t.payee), file);
        FUZZ_CHECK(!t.category.isEmpty(), file);
    }

    // Every line survives a save: the money file with them reads back the same.
    Book book;
    book.transactions = first.newTransactions;
    const QByteArray saved = MoneyFile::encode(book);
    const MoneyFile::Decoded reread = MoneyFile::decode(std::string_view(saved.constData(), size_t(saved.size())));
    FUZZ_CHECK(reread.book && reread.book->transactions == book.transactions, file + "\n" + reread.error.toStdString());

    // The usual categorizer over an empty Book answers as the plain guess does.
    const AutoCategory::Guesser guesser({});
    const CSVImporter::Conversion guessed = importer->transactions(
        account, {}, [&](const QString &payee, const Decimal &amount) { return guesser(payee, amount); });
    FUZZ_CHECK(guessed.newTransactions.size() == first.newTransactions.size(), file);
    for (size_t i = 0; i < guessed.newTransactions.size(); ++i)
        FUZZ_CHECK(guessed.newTransactions[i].category == first.newTransactions[i].category, file);

    // Importing the same file again adds nothing.
    const CSVImporter::Conversion again = importer->transactions(account, first.newTransactions, {});
    FUZZ_CHECK(again.newTransactions.empty(), file);
    FUZZ_CHECK(size_t(again.skipped) == first.newTransactions.size() + size_t(first.skipped), file);
    FUZZ_CHECK(again.bad == first.bad, file);

    // Flipping signs twice gives the lines back.
    std::vector<Transaction> flipped = first.newTransactions;
    BankImport::flipSigns(flipped);
    BankImport::flipSigns(flipped);
    FUZZ_CHECK(flipped == first.newTransactions, file);
    return 0;
}
