#pragma once
// Books encrypted at rest: a money file sealed with a key made from the owner's
// passphrase. The cryptography is libsodium's (Argon2id, XChaCha20-Poly1305
// secretstream); this file only lays out the bytes around it.
//
// A sealed file is a header and the secretstream of the plain money file:
//
//   offset  size
//        0     8  magic "CHSEALED"
//        8     2  format version (1), little-endian like every number here
//       10     1  key derivation: 2, Argon2id 1.3
//       11     1  0 (reserved)
//       12     4  Argon2id opslimit
//       16     8  Argon2id memlimit, in bytes
//       24    16  salt
//       40     4  chunk size: plain bytes per chunk
//       44     8  plain size: bytes of the money file inside
//       52    16  key check: the derivation's last 16 bytes, telling a wrong passphrase from damage
//       68    24  secretstream header
//       92     .  the chunks: each chunk-size bytes of the money file plus 17 of tag and
//                 MAC; the last (possibly empty) shorter and tagged final
//
// The 92 bytes of the header are the first chunk's additional data, so a change to
// any of them is found. A file's size follows from its header, so a file cut short,
// or with bytes added, is known as damaged before anything is decrypted; a chunk cut
// off or changed fails its MAC, and the stream must end on the final tag.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace Sealed {

inline constexpr std::size_t headerSize = 92;
inline constexpr std::size_t saltSize = 16;

// Bytes kept out of swap (sodium_malloc: locked, guarded pages) and zeroed when
// freed: passphrases and keys. Never copied; moved only.
class Secret
{
public:
    Secret() = default;
    explicit Secret(std::size_t size); // zero-filled
    Secret(const char *bytes, std::size_t size);
    ~Secret();
    Secret(Secret &&other) noexcept;
    Secret &operator=(Secret &&other) noexcept;
    Secret(const Secret &) = delete;
    Secret &operator=(const Secret &) = delete;

    unsigned char *data() { return m_data; }
    const unsigned char *data() const { return m_data; }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    bool operator==(const Secret &other) const;

    // Reads one line (without its line break) from the file descriptor, a byte at a
    // time so that nothing of it passes through a buffer that is not this one. On a
    // terminal the typing is not shown and `prompt` goes to standard error first.
    // Nothing when the descriptor cannot be read; an empty Secret for an empty line.
    static std::optional<Secret> readLine(int fd, const char *prompt = nullptr);
    // A passphrase typed into the window, as UTF-8. The text's own copy is the
    // caller's to drop.
    static Secret fromText(const QString &text);

private:
    unsigned char *m_data = nullptr;
    std::size_t m_size = 0;
};

// The cost of the key derivation, as the header carries it.
struct Cost
{
    std::uint32_t opslimit = 0;
    std::uint64_t memlimit = 0;

    // About 0.35 s and 256 MiB on the machine Coinhall is built for: slow enough that
    // guessing passphrases costs, quick enough that opening does not drag.
    static Cost standard();
    // The least Argon2id allows: for tests, never for the owner's books.
    static Cost cheapest();
    bool operator==(const Cost &) const = default;
};

// What a sealed file's header says, as read without any key.
struct Header
{
    int version = 0;
    Cost cost;
    std::array<unsigned char, saltSize> salt{};
    std::uint32_t chunkSize = 0;
    std::uint64_t plainSize = 0;
    std::array<unsigned char, 16> keyCheck{};

    // The size of the whole file that this header begins.
    std::uint64_t fileSize() const;
};

// Whether `bytes` begin as a sealed file does (the magic), whole or not. A plain
// money file begins with "{".
bool looksSealed(QByteArrayView bytes);
// Reads the header at the start of `bytes`; nothing, with why in `problem`, when it is
// not one this program can open (too short, another version, a cost out of bounds).
std::optional<Header> readHeader(QByteArrayView bytes, QString *problem = nullptr);
// Whether a sealed file seems whole without opening it: its header is sound and its
// size is the one the header gives. Empty when it does, else what is wrong.
QString wholeness(QByteArrayView file);
// The same for a file on disk, reading only its header.
QString wholenessOfFile(const QString &path);

enum class Opened {
    ok,
    notSealed,       // no sealed file at all
    damaged,         // cut short, changed, or not whole: never a shorter book
    wrongPassphrase, // whole as far as can be told, but not made with this key
    otherKey,        // sealed with another salt or cost: needs its own derivation
    noMemory,        // the key could not be derived: too little memory now
};

class Key;
// Seals a whole money file.
QByteArray seal(QByteArrayView plain, const Key &key);
// Opens a sealed file with `key`; on success `plain` holds the money file inside.
// `problem` tells a damaged file's trouble.
Opened open(QByteArrayView sealed, const Key &key, QByteArray *plain, QString *problem = nullptr);

// A key made from a passphrase with one salt and cost: what seals and opens files
// whose header carries the same salt and cost. Shared, never copied out.
class Key
{
public:
    // Derives the key with a new random salt (sealing from now on); null when memory
    // for the derivation is lacking.
    static std::shared_ptr<const Key> fresh(const Secret &passphrase, Cost cost = Cost::standard());
    // Derives the key that the header names; null when memory for it is lacking.
    static std::shared_ptr<const Key> forHeader(const Secret &passphrase, const Header &header);

    // Whether files sealed with this key carry `header`'s salt and cost.
    bool fits(const Header &header) const;
    // Whether this key is the one the header's key check was made with.
    bool opens(const Header &header) const;

    Cost cost() const { return m_cost; }

private:
    Key(Cost cost, const std::array<unsigned char, saltSize> &salt);
    bool derive(const Secret &passphrase);
    friend QByteArray seal(QByteArrayView plain, const Key &key);
    friend Opened open(QByteArrayView sealed, const Key &key, QByteArray *plain, QString *problem);

    Cost m_cost;
    std::array<unsigned char, saltSize> m_salt;
    Secret m_material; // 32 bytes of stream key, then 16 of key check
};

// Opens a sealed file with a passphrase, deriving the key its header names; the key
// is handed back for the next saves. A damaged header is refused before any derivation.
Opened open(QByteArrayView sealed, const Secret &passphrase, QByteArray *plain, std::shared_ptr<const Key> *key,
            QString *problem = nullptr);

} // namespace Sealed
