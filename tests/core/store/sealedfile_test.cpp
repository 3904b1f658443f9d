// Encrypted money files: what opens, and that nothing damaged opens as anything.
#include "helpers/testing.h"
#include "store/sealedfile.h"

#include <gtest/gtest.h>

using namespace Sealed;

namespace {

Secret secret(const char *text)
{
    return Secret(text, std::strlen(text));
}

const QByteArray smallBook = R"({"accounts":[],"categories":[],"currency":"EUR","version":1})";

} // namespace

TEST(SealedFile, OpensWithItsPassphraseToTheSameBytes)
{
    const auto key = Key::fresh(secret("correct horse"), Cost::cheapest());
    ASSERT_TRUE(key);
    // Empty, one chunk, chunk-sized and across chunk boundaries.
    for (const qsizetype size : {0, 1, 65536, 65537, 200000}) {
        QByteArray plain(size, 'x');
        for (qsizetype i = 0; i < size; ++i)
            plain[i] = char(i * 7);
        const QByteArray sealed = seal(plain, *key);
        EXPECT_TRUE(looksSealed(sealed));
        EXPECT_EQ(wholeness(sealed), QString()) << size;
        if (size >= 64) {
            EXPECT_EQ(sealed.indexOf(plain.left(64)), -1) << size;
        }

        QByteArray opened;
        std::shared_ptr<const Key> again;
        ASSERT_EQ(open(sealed, secret("correct horse"), &opened, &again), Opened::ok) << size;
        EXPECT_EQ(opened, plain);
        // The key handed back seals files that the first key opens, without deriving again.
        EXPECT_EQ(open(seal(plain, *again), *key, &opened), Opened::ok);
    }
}

TEST(SealedFile, AWrongPassphraseOrAnotherSaltIsToldApartFromDamage)
{
    const auto key = Key::fresh(secret("correct horse"), Cost::cheapest());
    const QByteArray sealed = seal(smallBook, *key);
    QByteArray plain;
    EXPECT_EQ(open(sealed, secret("correct hors"), &plain, nullptr), Opened::wrongPassphrase);
    EXPECT_EQ(open(sealed, secret(""), &plain, nullptr), Opened::wrongPassphrase);
    const auto other = Key::fresh(secret("correct horse"), Cost::cheapest());
    EXPECT_EQ(open(sealed, *other, &plain), Opened::otherKey);
    EXPECT_EQ(open(smallBook, *key, &plain), Opened::notSealed);
    EXPECT_TRUE(plain.isEmpty());
}

// Every single-bit change and every cut of a small sealed file is refused, each
// checked with the key at hand and the header's own derivation where the header
// itself changed.
TEST(SealedFile, EveryBitFlipAndEveryTruncationIsRefused)
{
    const auto key = Key::fresh(secret("pw"), Cost::cheapest());
    const QByteArray sealed = seal(smallBook, *key);
    ASSERT_GT(sealed.size(), qsizetype(headerSize));
    int refused = 0;
    for (qsizetype byte = 0; byte < sealed.size(); ++byte) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray changed = sealed;
            changed[byte] = char(changed[byte] ^ (1 << bit));
            QByteArray plain;
            const Opened withKey = open(changed, *key, &plain);
            ASSERT_NE(withKey, Opened::ok) << "byte " << byte << " bit " << bit;
            if (withKey == Opened::otherKey) { // a changed salt or cost: a derivation of its own
                ASSERT_NE(open(changed, secret("pw"), &plain, nullptr), Opened::ok) << "byte " << byte;
            }
            ASSERT_TRUE(plain.isEmpty());
            ++refused;
        }
    }
    for (qsizetype length = 0; length < sealed.size(); ++length) {
        QByteArray plain;
        ASSERT_NE(open(sealed.left(length), *key, &plain), Opened::ok) << "length " << length;
        if (length >= 8) {
            ASSERT_FALSE(wholeness(sealed.left(length)).isEmpty()) << "length " << length;
        }
    }
    EXPECT_EQ(refused, sealed.size() * 8);
    EXPECT_EQ(wholeness(sealed + 'x'), QStringLiteral("the file has bytes beyond its end"));
}

TEST(SealedFile, AHeaderAskingForAnUnboundedDerivationIsRefusedUnread)
{
    const auto key = Key::fresh(secret("pw"), Cost::cheapest());
    QByteArray sealed = seal(smallBook, *key);
    sealed[23] = char(0x40); // memlimit in the exabytes
    EXPECT_EQ(wholeness(sealed), QStringLiteral("its header is damaged"));
    sealed = seal(smallBook, *key);
    sealed[8] = 2; // a version from a newer Coinhall
    EXPECT_EQ(wholeness(sealed), QStringLiteral("encrypted in a way this Coinhall does not know (version 2)"));
}
