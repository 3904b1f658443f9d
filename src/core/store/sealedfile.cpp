#include "store/sealedfile.h"

#include <QFile>

#include <sodium.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include <termios.h>
#include <unistd.h>

namespace Sealed {

namespace {

constexpr char magic[8] = {'C', 'H', 'S', 'E', 'A', 'L', 'E', 'D'};
constexpr int formatVersion = 1;
constexpr std::uint32_t chunkSize = 64 * 1024;
constexpr std::size_t streamKeySize = crypto_secretstream_xchacha20poly1305_KEYBYTES;
constexpr std::size_t keyCheckSize = 16;
constexpr std::size_t chunkOverhead = crypto_secretstream_xchacha20poly1305_ABYTES;
constexpr std::size_t streamHeaderOffset = 68;
static_assert(streamHeaderOffset + crypto_secretstream_xchacha20poly1305_HEADERBYTES == headerSize);
static_assert(saltSize == crypto_pwhash_SALTBYTES);

// What a header may ask for: a file that asks more is not one Coinhall wrote, and
// deriving its key would hold the machine up or run it out of memory.
constexpr std::uint32_t mostOps = 32;
constexpr std::uint64_t mostMemory = std::uint64_t(1) << 30;

void ensureSodium()
{
    // Thread-safe once; libsodium itself allows repeated calls.
    static const bool ready = sodium_init() >= 0;
    if (!ready)
        throw std::bad_alloc();
}

template <typename T> T readLE(const unsigned char *p)
{
    T value = 0;
    for (std::size_t i = sizeof(T); i-- > 0;)
        value = T(value << 8) | T(p[i]);
    return value;
}

template <typename T> void writeLE(unsigned char *p, T value)
{
    for (std::size_t i = 0; i < sizeof(T); ++i, value = T(value >> 8))
        p[i] = static_cast<unsigned char>(value & 0xff);
}

std::uint64_t chunkCount(std::uint64_t plainSize, std::uint32_t chunk)
{
    // An empty file is one empty final chunk.
    return plainSize == 0 ? 1 : (plainSize + chunk - 1) / chunk;
}

void setProblem(QString *problem, const QString &text)
{
    if (problem)
        *problem = text;
}

} // namespace

// -- Secret ------------------------------------------------------------------

Secret::Secret(std::size_t size)
{
    ensureSodium();
    if (size == 0)
        return;
    m_data = static_cast<unsigned char *>(sodium_malloc(size));
    if (!m_data)
        throw std::bad_alloc();
    sodium_memzero(m_data, size);
    m_size = size;
}

Secret::Secret(const char *bytes, std::size_t size)
    : Secret(size)
{
    if (size > 0)
        std::memcpy(m_data, bytes, size);
}

Secret::~Secret()
{
    // sodium_free zeroes the bytes before giving the pages back.
    if (m_data)
        sodium_free(m_data);
}

Secret::Secret(Secret &&other) noexcept
    : m_data(std::exchange(other.m_data, nullptr))
    , m_size(std::exchange(other.m_size, 0))
{}

Secret &Secret::operator=(Secret &&other) noexcept
{
    if (this != &other) {
        if (m_data)
            sodium_free(m_data);
        m_data = std::exchange(other.m_data, nullptr);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

bool Secret::operator==(const Secret &other) const
{
    return m_size == other.m_size && (m_size == 0 || sodium_memcmp(m_data, other.m_data, m_size) == 0);
}

std::optional<Secret> Secret::readLine(int fd, const char *prompt)
{
    termios saved{};
    const bool terminal = ::isatty(fd) && ::tcgetattr(fd, &saved) == 0;
    if (terminal) {
        if (prompt) {
            (void)!::write(STDERR_FILENO, prompt, std::strlen(prompt));
        }
        termios quiet = saved;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(fd, TCSAFLUSH, &quiet);
    }
    Secret line(256);
    std::size_t used = 0;
    bool readSome = false;
    bool failed = false;
    for (;;) {
        unsigned char c = 0;
        const ssize_t got = ::read(fd, &c, 1);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            failed = true;
        if (got <= 0)
            break;
        readSome = true;
        if (c == '\n')
            break;
        if (used == line.size()) {
            Secret longer(line.size() * 2);
            std::memcpy(longer.data(), line.data(), used);
            line = std::move(longer);
        }
        line.data()[used++] = c;
        c = 0;
    }
    if (terminal) {
        ::tcsetattr(fd, TCSAFLUSH, &saved);
        (void)!::write(STDERR_FILENO, "\n", 1);
    }
    if (failed || (!readSome && !terminal))
        return std::nullopt;
    if (used > 0 && line.data()[used - 1] == '\r')
        --used;
    return Secret(reinterpret_cast<const char *>(line.data()), used);
}

Secret Secret::fromText(const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    Secret exact(utf8.constData(), std::size_t(utf8.size()));
    // The conversion's own buffer is this function's; wiped before it is freed.
    sodium_memzero(utf8.data(), std::size_t(utf8.size()));
    return exact;
}

// -- Cost and header ------------------------------------------------------------

Cost Cost::standard()
{
    return {std::uint32_t(crypto_pwhash_OPSLIMIT_INTERACTIVE), std::uint64_t(crypto_pwhash_MEMLIMIT_MODERATE)};
}

Cost Cost::cheapest()
{
    return {std::uint32_t(crypto_pwhash_argon2id_OPSLIMIT_MIN), std::uint64_t(crypto_pwhash_argon2id_MEMLIMIT_MIN)};
}

std::uint64_t Header::fileSize() const
{
    return headerSize + plainSize + chunkCount(plainSize, chunkSize) * chunkOverhead;
}

bool looksSealed(QByteArrayView bytes)
{
    return bytes.size() >= qsizetype(sizeof magic) && std::memcmp(bytes.data(), magic, sizeof magic) == 0;
}

std::optional<Header> readHeader(QByteArrayView bytes, QString *problem)
{
    if (!looksSealed(bytes)) {
        setProblem(problem, QStringLiteral("not an encrypted money file"));
        return std::nullopt;
    }
    if (bytes.size() < qsizetype(headerSize)) {
        setProblem(problem, QStringLiteral("the file is cut short"));
        return std::nullopt;
    }
    const auto *p = reinterpret_cast<const unsigned char *>(bytes.data());
    Header h;
    h.version = readLE<std::uint16_t>(p + 8);
    if (h.version != formatVersion) {
        setProblem(problem,
                   QStringLiteral("encrypted in a way this Coinhall does not know (version %1)").arg(h.version));
        return std::nullopt;
    }
    h.cost.opslimit = readLE<std::uint32_t>(p + 12);
    h.cost.memlimit = readLE<std::uint64_t>(p + 16);
    std::memcpy(h.salt.data(), p + 24, saltSize);
    h.chunkSize = readLE<std::uint32_t>(p + 40);
    h.plainSize = readLE<std::uint64_t>(p + 44);
    std::memcpy(h.keyCheck.data(), p + 52, keyCheckSize);
    const bool soundCost = p[10] == crypto_pwhash_ALG_ARGON2ID13 && p[11] == 0 &&
                           h.cost.opslimit >= crypto_pwhash_argon2id_OPSLIMIT_MIN && h.cost.opslimit <= mostOps &&
                           h.cost.memlimit >= crypto_pwhash_argon2id_MEMLIMIT_MIN && h.cost.memlimit <= mostMemory;
    // A size beyond any file keeps fileSize() from overflowing.
    const bool soundSizes = h.chunkSize >= 1024 && h.chunkSize <= (16u << 20) && h.plainSize < (std::uint64_t(1) << 48);
    if (!soundCost || !soundSizes) {
        setProblem(problem, QStringLiteral("its header is damaged"));
        return std::nullopt;
    }
    return h;
}

QString wholeness(QByteArrayView file)
{
    QString problem;
    const std::optional<Header> header = readHeader(file, &problem);
    if (!header)
        return problem;
    if (std::uint64_t(file.size()) < header->fileSize())
        return QStringLiteral("the file is cut short");
    if (std::uint64_t(file.size()) > header->fileSize())
        return QStringLiteral("the file has bytes beyond its end");
    return {};
}

QString wholenessOfFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    QString problem;
    const std::optional<Header> header = readHeader(file.read(qint64(headerSize)), &problem);
    if (!header)
        return problem;
    if (std::uint64_t(file.size()) != header->fileSize())
        return std::uint64_t(file.size()) < header->fileSize() ? QStringLiteral("the file is cut short")
                                                               : QStringLiteral("the file has bytes beyond its end");
    return {};
}

// -- Key -----------------------------------------------------------------------

Key::Key(Cost cost, const std::array<unsigned char, saltSize> &salt)
    : m_cost(cost)
    , m_salt(salt)
    , m_material(streamKeySize + keyCheckSize)
{}

bool Key::derive(const Secret &passphrase)
{
    static const char none = 0;
    const char *bytes = passphrase.empty() ? &none : reinterpret_cast<const char *>(passphrase.data());
    return crypto_pwhash(m_material.data(), m_material.size(), bytes, passphrase.size(), m_salt.data(), m_cost.opslimit,
                         std::size_t(m_cost.memlimit), crypto_pwhash_ALG_ARGON2ID13) == 0;
}

std::shared_ptr<const Key> Key::fresh(const Secret &passphrase, Cost cost)
{
    ensureSodium();
    std::array<unsigned char, saltSize> salt{};
    randombytes_buf(salt.data(), salt.size());
    std::shared_ptr<Key> key(new Key(cost, salt));
    if (!key->derive(passphrase))
        return nullptr;
    return key;
}

std::shared_ptr<const Key> Key::forHeader(const Secret &passphrase, const Header &header)
{
    ensureSodium();
    std::shared_ptr<Key> key(new Key(header.cost, header.salt));
    if (!key->derive(passphrase))
        return nullptr;
    return key;
}

bool Key::fits(const Header &header) const
{
    return header.cost == m_cost && sodium_memcmp(header.salt.data(), m_salt.data(), saltSize) == 0;
}

bool Key::opens(const Header &header) const
{
    return fits(header) && sodium_memcmp(header.keyCheck.data(), m_material.data() + streamKeySize, keyCheckSize) == 0;
}

// -- Sealing and opening ----------------------------------------------------------

QByteArray seal(QByteArrayView plain, const Key &key)
{
    ensureSodium();
    Header h;
    h.chunkSize = chunkSize;
    h.plainSize = std::uint64_t(plain.size());
    QByteArray out(qsizetype(h.fileSize()), Qt::Uninitialized);
    auto *p = reinterpret_cast<unsigned char *>(out.data());
    std::memcpy(p, magic, sizeof magic);
    writeLE<std::uint16_t>(p + 8, formatVersion);
    p[10] = crypto_pwhash_ALG_ARGON2ID13;
    p[11] = 0;
    writeLE<std::uint32_t>(p + 12, key.m_cost.opslimit);
    writeLE<std::uint64_t>(p + 16, key.m_cost.memlimit);
    std::memcpy(p + 24, key.m_salt.data(), saltSize);
    writeLE<std::uint32_t>(p + 40, h.chunkSize);
    writeLE<std::uint64_t>(p + 44, h.plainSize);
    std::memcpy(p + 52, key.m_material.data() + streamKeySize, keyCheckSize);

    crypto_secretstream_xchacha20poly1305_state state;
    crypto_secretstream_xchacha20poly1305_init_push(&state, p + streamHeaderOffset, key.m_material.data());
    const auto *in = reinterpret_cast<const unsigned char *>(plain.data());
    unsigned char *to = p + headerSize;
    const std::uint64_t chunks = chunkCount(h.plainSize, h.chunkSize);
    for (std::uint64_t i = 0; i < chunks; ++i) {
        const std::uint64_t from = i * h.chunkSize;
        const std::uint64_t length = std::min<std::uint64_t>(h.chunkSize, h.plainSize - from);
        const bool last = i + 1 == chunks;
        crypto_secretstream_xchacha20poly1305_push(
            &state, to, nullptr, in + from, length, i == 0 ? p : nullptr, i == 0 ? headerSize : 0,
            last ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : crypto_secretstream_xchacha20poly1305_TAG_MESSAGE);
        to += length + chunkOverhead;
    }
    sodium_memzero(&state, sizeof state);
    return out;
}

Opened open(QByteArrayView sealed, const Key &key, QByteArray *plain, QString *problem)
{
    ensureSodium();
    if (!looksSealed(sealed))
        return Opened::notSealed;
    const QString whole = wholeness(sealed);
    if (!whole.isEmpty()) {
        setProblem(problem, whole);
        return Opened::damaged;
    }
    const Header h = *readHeader(sealed);
    if (!key.fits(h))
        return Opened::otherKey;
    if (!key.opens(h))
        return Opened::wrongPassphrase;

    const auto *p = reinterpret_cast<const unsigned char *>(sealed.data());
    crypto_secretstream_xchacha20poly1305_state state;
    if (crypto_secretstream_xchacha20poly1305_init_pull(&state, p + streamHeaderOffset, key.m_material.data()) != 0) {
        setProblem(problem, QStringLiteral("its header is damaged"));
        return Opened::damaged;
    }
    QByteArray out(qsizetype(h.plainSize), Qt::Uninitialized);
    auto *to = reinterpret_cast<unsigned char *>(out.data());
    const unsigned char *from = p + headerSize;
    const std::uint64_t chunks = chunkCount(h.plainSize, h.chunkSize);
    bool sound = true;
    for (std::uint64_t i = 0; i < chunks && sound; ++i) {
        const std::uint64_t length = std::min<std::uint64_t>(h.chunkSize, h.plainSize - i * h.chunkSize);
        unsigned char tag = 0;
        unsigned long long got = 0;
        const bool last = i + 1 == chunks;
        sound = crypto_secretstream_xchacha20poly1305_pull(&state, to, &got, &tag, from, length + chunkOverhead,
                                                           i == 0 ? p : nullptr, i == 0 ? headerSize : 0) == 0 &&
                got == length &&
                tag == (last ? crypto_secretstream_xchacha20poly1305_TAG_FINAL
                             : crypto_secretstream_xchacha20poly1305_TAG_MESSAGE);
        to += length;
        from += length + chunkOverhead;
    }
    sodium_memzero(&state, sizeof state);
    if (!sound) {
        setProblem(problem, QStringLiteral("the file was changed or damaged"));
        return Opened::damaged;
    }
    *plain = std::move(out);
    return Opened::ok;
}

Opened open(QByteArrayView sealed, const Secret &passphrase, QByteArray *plain, std::shared_ptr<const Key> *key,
            QString *problem)
{
    if (!looksSealed(sealed))
        return Opened::notSealed;
    const QString whole = wholeness(sealed);
    if (!whole.isEmpty()) {
        setProblem(problem, whole);
        return Opened::damaged;
    }
    std::shared_ptr<const Key> derived = Key::forHeader(passphrase, *readHeader(sealed));
    if (!derived) {
        setProblem(problem, QStringLiteral("there is not enough memory to open it"));
        return Opened::noMemory;
    }
    const Opened opened = open(sealed, *derived, plain, problem);
    if (opened == Opened::ok && key)
        *key = std::move(derived);
    return opened;
}

} // namespace Sealed
