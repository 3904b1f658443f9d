// The money-file decoder on any bytes. What it accepts must survive a save: the
// encoded Book decodes again to the same Book (dates to the whole second, as the
// file keeps them) and encodes to the same bytes.
#include "model/moneyfile.h"
#include "fuzzcheck.h"

#include <cstdint>
#include <string_view>

namespace {

void toWholeSeconds(Instant &when)
{
    when = when.wholeSeconds();
}

Book asSaved(Book book)
{
    for (Transaction &t : book.transactions)
        toWholeSeconds(t.date);
    for (Bill &b : book.bills) {
        toWholeSeconds(b.due);
        for (Bill::Payment &p : b.history) {
            toWholeSeconds(p.date);
            toWholeSeconds(p.dueDate);
        }
    }
    for (Royalty &r : book.royalties) {
        toWholeSeconds(r.expectedDate);
        if (r.receivedDate)
            toWholeSeconds(*r.receivedDate);
    }
    return book;
}

std::string_view view(const QByteArray &bytes)
{
    return std::string_view(bytes.constData(), std::size_t(bytes.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view json(reinterpret_cast<const char *>(data), size);
    const MoneyFile::Decoded decoded = MoneyFile::decode(json);
    FUZZ_CHECK(decoded.book.has_value() == decoded.error.isEmpty(), decoded.error.toStdString());
    if (!decoded.book)
        return 0;

    const QByteArray saved = MoneyFile::encode(*decoded.book);
    const MoneyFile::Decoded again = MoneyFile::decode(view(saved));
    FUZZ_CHECK(again.book.has_value(),
               "the saved file does not read back: " + again.error.toStdString() + "\n" + saved.toStdString());
    FUZZ_CHECK(*again.book == asSaved(*decoded.book), saved.toStdString());
    FUZZ_CHECK(MoneyFile::encode(*again.book) == saved, saved.toStdString());
    return 0;
}
