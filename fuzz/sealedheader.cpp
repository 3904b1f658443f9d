// Any bytes as an encrypted money file: the header read, the file judged whole or not
// without a key, and opened with a key. Half the inputs get that key's salt, cost and
// key check grafted into their header, so that the chunks themselves are reached. A
// file that opens must be exactly what its header says; one that does not leaves
// nothing behind; and the input sealed opens to itself, but not with a byte cut off.
#include "fuzzcheck.h"
#include "store/sealedfile.h"

#include <cstdint>
#include <cstring>

namespace {

const Sealed::Key &key()
{
    static const auto made = Sealed::Key::fresh(Sealed::Secret("fuzz", 4), Sealed::Cost::cheapest());
    return *made;
}

// The header fields that name the key (cost, salt; key check), as this key seals them.
const QByteArray &keyFields()
{
    static const QByteArray sealed = Sealed::seal(QByteArrayView(), key());
    return sealed;
}

void check(const QByteArray &bytes)
{
    QString problem;
    const std::optional<Sealed::Header> header = Sealed::readHeader(bytes, &problem);
    FUZZ_CHECK(header.has_value() == problem.isEmpty(), problem.toStdString());
    if (header)
        FUZZ_CHECK(header->fileSize() >= Sealed::headerSize + 17 + header->plainSize, "a size below the header's own");
    const QString whole = Sealed::wholeness(bytes);
    FUZZ_CHECK(whole.isEmpty() == (header && header->fileSize() == std::uint64_t(bytes.size())), whole.toStdString());
    FUZZ_CHECK(Sealed::looksSealed(bytes) || !whole.isEmpty(), "whole without the magic");

    QByteArray plain;
    const Sealed::Opened opened = Sealed::open(bytes, key(), &plain, &problem);
    if (opened == Sealed::Opened::ok) {
        FUZZ_CHECK(whole.isEmpty() && key().opens(*header), "opened what is not whole");
        FUZZ_CHECK(std::uint64_t(plain.size()) == header->plainSize, "a book of another size");
        // The file was sealed with this key: sealing what it holds gives a file of its size.
        FUZZ_CHECK(Sealed::seal(plain, key()).size() == bytes.size(), "sealed again to another size");
    } else {
        FUZZ_CHECK(plain.isEmpty(), "a refused file left bytes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    check(bytes);
    if (bytes.size() >= qsizetype(Sealed::headerSize) && Sealed::looksSealed(bytes)) {
        QByteArray grafted = bytes;
        std::memcpy(grafted.data() + 10, keyFields().constData() + 10, 30); // algorithm, cost, salt
        std::memcpy(grafted.data() + 52, keyFields().constData() + 52, 16); // key check
        check(grafted);
    }

    const QByteArray sealed = Sealed::seal(bytes, key());
    QByteArray plain;
    FUZZ_CHECK(Sealed::open(sealed, key(), &plain) == Sealed::Opened::ok && plain == bytes, "no round trip");
    FUZZ_CHECK(Sealed::open(sealed.chopped(1), key(), &plain) != Sealed::Opened::ok, "a cut file opened");
    return 0;
}
