// Reading the money file: a streaming, strict reader that fills the Book as the JSON
// goes by and names the place of the first problem.
#include "model/moneyfile.h"
#include "model/repeat.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <thread>

#include <sys/mman.h>
#include <unistd.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// Hex digit values by byte, -1 for anything else.
constexpr std::array<std::int8_t, 256> hexValues = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (int i = 0; i < 10; ++i)
        values[std::size_t('0' + i)] = std::int8_t(i);
    for (int i = 0; i < 6; ++i) {
        values[std::size_t('A' + i)] = std::int8_t(10 + i);
        values[std::size_t('a' + i)] = std::int8_t(10 + i);
    }
    return values;
}();

// The canonical 8-4-4-4-12 form, either case; QUuid::fromString is far slower.
std::optional<QUuid> parseUuid(std::string_view text)
{
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return std::nullopt;
    static constexpr std::uint8_t starts[16] = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
    std::uint8_t bytes[16];
    int invalid = 0;
    for (int i = 0; i < 16; ++i) {
        const int high = hexValues[static_cast<unsigned char>(text[starts[i]])];
        const int low = hexValues[static_cast<unsigned char>(text[starts[i] + 1])];
        invalid |= high | low; // negative once any digit is not hex
        bytes[i] = std::uint8_t(high << 4 | low);
    }
    if (invalid < 0)
        return std::nullopt;
    return QUuid(uint(bytes[0]) << 24 | uint(bytes[1]) << 16 | uint(bytes[2]) << 8 | bytes[3],
                 ushort(bytes[4] << 8 | bytes[5]), ushort(bytes[6] << 8 | bytes[7]), bytes[8], bytes[9], bytes[10],
                 bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]);
}

inline std::uint64_t word8(const char *p)
{
    std::uint64_t w;
    std::memcpy(&w, p, 8);
    return w;
}

// Byte equality for the short keys and texts, eight bytes at a time.
inline bool sameText(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    std::size_t i = 0;
    for (; i + 8 <= a.size(); i += 8)
        if (word8(a.data() + i) != word8(b.data() + i))
            return false;
    for (; i < a.size(); ++i)
        if (a[i] != b[i])
            return false;
    return true;
}

// no terminating zero. Peek() gives '\0' at the end, which the reader takes as end.
struct ViewStream
{
    using Ch = char;

    Ch Peek() const { return m_next != m_end ? *m_next : '\0'; }
    Ch Take() { return m_next != m_end ? *m_next++ : '\0'; }
    std::size_t Tell() const { return std::size_t(m_next - m_begin); }

    // Write side of the stream concept, only used by in-situ parsing.
    Ch *PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    std::size_t PutEnd(Ch *) { return 0; }

    const char *m_begin;
    const char *m_next;
    const char *m_end;
};

inline bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

// The first byte from p on that is not JSON white space, or end. A pretty-printed
// file is mostly indentation, so sixteen bytes are tested at a time.
const char *blanksEnd(const char *p, const char *end)
{
    // Most gaps between tokens are empty or one space: those bytes first.
    if (p == end || !isBlank(*p))
        return p;
    if (++p == end || !isBlank(*p))
        return p;
#if defined(__SSE2__)
    const __m128i space = _mm_set1_epi8(' ');
    const __m128i newline = _mm_set1_epi8('\n');
    const __m128i ret = _mm_set1_epi8('\r');
    const __m128i tab = _mm_set1_epi8('\t');
    for (; end - p >= 16; p += 16) {
        const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        __m128i x = _mm_or_si128(_mm_cmpeq_epi8(s, space), _mm_cmpeq_epi8(s, newline));
        x = _mm_or_si128(x, _mm_or_si128(_mm_cmpeq_epi8(s, ret), _mm_cmpeq_epi8(s, tab)));
        const unsigned other = ~unsigned(_mm_movemask_epi8(x)) & 0xFFFFu;
        if (other != 0)
            return p + __builtin_ctz(other);
    }
#endif
    while (p != end && isBlank(*p))
        ++p;
    return p;
}

// The first quote, backslash or control character from p on, or end: where the
// plain run of a string stops.
const char *plainEnd(const char *p, const char *end)
{
#if defined(__SSE2__)
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    const __m128i control = _mm_set1_epi8(0x1F);
    for (; end - p >= 16; p += 16) {
        const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(s, control), s); // s <= 0x1F
        const __m128i x = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(s, quote), _mm_cmpeq_epi8(s, backslash)), low);
        const unsigned special = unsigned(_mm_movemask_epi8(x));
        if (special != 0)
            return p + __builtin_ctz(special);
    }
#endif
    while (p != end && *p != '"' && *p != '\\' && static_cast<unsigned char>(*p) >= 0x20)
        ++p;
    return p;
}

// One scalar member of a flat object, as the reader would report it.
struct Member
{
    enum Type : std::uint8_t { String, Number, True, False };
    std::string_view key;
    std::string_view value;
    Type type;
};

// The end of a JSON number starting at p (strict grammar), or null when it is not one.
const char *numberEnd(const char *p, const char *end)
{
    auto digit = [end](const char *q) { return q != end && *q >= '0' && *q <= '9'; };
    if (p != end && *p == '-')
        ++p;
    if (!digit(p))
        return nullptr;
    if (*p++ != '0')
        while (digit(p))
            ++p;
    if (p != end && *p == '.') {
        if (!digit(++p))
            return nullptr;
        while (digit(p))
            ++p;
    }
    if (p != end && (*p == 'e' || *p == 'E')) {
        ++p;
        if (p != end && (*p == '+' || *p == '-'))
            ++p;
        if (!digit(p))
            return nullptr;
        while (digit(p))
            ++p;
    }
    return p;
}

// One flat object of up to 16 scalar members, what the money file's records are made
// of; anything else is left to the full reader.
struct FlatObject
{
    std::array<Member, 16> members;
    std::size_t count = 0;

    // Reads the object at p (at its '{'). Returns the end after its '}', or null.
    const char *read(const char *p, const char *end)
    {
        m_unescaped.clear();
        std::array<std::size_t, 16> unescapedAt; // where an escaped text went, or npos
        count = 0;
        p = blanksEnd(p + 1, end);
        while (count < members.size()) {
            Member &m = members[count];
            unescapedAt[count++] = std::string::npos;
            if (p == end || *p != '"')
                return nullptr;
            const char *close = plainEnd(p + 1, end);
            if (close == end || *close != '"')
                return nullptr;
            m.key = std::string_view(p + 1, std::size_t(close - p - 1));
            p = blanksEnd(close + 1, end);
            if (p == end || *p != ':')
                return nullptr;
            p = blanksEnd(p + 1, end);
            if (p == end)
                return nullptr;
            if (*p == '"') {
                m.type = Member::String;
                const std::size_t at = m_unescaped.size();
                p = text(p + 1, end, m.value);
                if (m.value.data() == nullptr)
                    unescapedAt[count - 1] = at;
            } else if (*p == 't' && literal(p, end, "true")) {
                m.type = Member::True;
                p += 4;
            } else if (*p == 'f' && literal(p, end, "false")) {
                m.type = Member::False;
                p += 5;
            } else {
                const char *last = numberEnd(p, end);
                if (last)
                    m = {m.key, std::string_view(p, std::size_t(last - p)), Member::Number};
                p = last;
            }
            if (!p)
                return nullptr;
            p = blanksEnd(p, end);
            if (p == end)
                return nullptr;
            if (*p == ',') {
                p = blanksEnd(p + 1, end);
                continue;
            }
            if (*p != '}')
                return nullptr;
            // The unescaped texts' buffer no longer grows: now they can point into it.
            for (std::size_t i = 0; i < count; ++i)
                if (unescapedAt[i] != std::string::npos)
                    members[i].value = std::string_view(m_unescaped).substr(unescapedAt[i], members[i].value.size());
            return p + 1;
        }
        return nullptr;
    }

private:
    static bool literal(const char *q, const char *end, std::string_view word)
    {
        return std::size_t(end - q) >= word.size() && std::memcmp(q, word.data(), word.size()) == 0;
    }

    // A string's text from p (after its opening quote) to its closing quote. Plain text
    // is seen in place; escaped text is unescaped into m_unescaped, and `value` then has
    // a null data pointer and the unescaped size. Escapes the reader would refuse or read
    // differently (a zero character, half of a surrogate pair) return null.
    const char *text(const char *p, const char *end, std::string_view &value)
    {
        const char *stop = plainEnd(p, end);
        if (stop != end && *stop == '"') {
            value = std::string_view(p, std::size_t(stop - p));
            return stop + 1;
        }
        const std::size_t start = m_unescaped.size();
        for (;;) {
            m_unescaped.append(p, std::size_t(stop - p));
            if (stop == end)
                return nullptr;
            if (*stop == '"')
                break;
            if (*stop != '\\' || end - stop < 2)
                return nullptr;
            const char e = stop[1];
            p = stop + 2;
            switch (e) {
            case '"': m_unescaped += '"'; break;
            case '\\': m_unescaped += '\\'; break;
            case '/': m_unescaped += '/'; break;
            case 'b': m_unescaped += '\b'; break;
            case 'f': m_unescaped += '\f'; break;
            case 'n': m_unescaped += '\n'; break;
            case 'r': m_unescaped += '\r'; break;
            case 't': m_unescaped += '\t'; break;
            case 'u': {
                if (end - p < 4)
                    return nullptr;
                unsigned code = 0;
                for (int i = 0; i < 4; ++i) {
                    const int digit = hexValues[static_cast<unsigned char>(p[i])];
                    if (digit < 0)
                        return nullptr;
                    code = code * 16 + unsigned(digit);
                }
                if (code == 0 || (code >= 0xD800 && code <= 0xDFFF))
                    return nullptr;
                p += 4;
                if (code < 0x80) {
                    m_unescaped += char(code);
                } else if (code < 0x800) {
                    m_unescaped += char(0xC0 | (code >> 6));
                    m_unescaped += char(0x80 | (code & 0x3F));
                } else {
                    m_unescaped += char(0xE0 | (code >> 12));
                    m_unescaped += char(0x80 | ((code >> 6) & 0x3F));
                    m_unescaped += char(0x80 | (code & 0x3F));
                }
                break;
            }
            default:
                return nullptr;
            }
            stop = plainEnd(p, end);
        }
        value = std::string_view(nullptr, m_unescaped.size() - start);
        return stop + 1;
    }

    std::string m_unescaped;
};

} // namespace

namespace rapidjson {
// Lets the reader keep the stream's pointers in registers.
template <> struct StreamTraits<ViewStream>
{
    enum { copyOptimization = 1 };
};

template <> inline void SkipWhitespace(ViewStream &is)
{
    if (is.m_next != is.m_end && isBlank(*is.m_next))
        is.m_next = blanksEnd(is.m_next + 1, is.m_end);
}

// Copies the plain run of a string in one go instead of byte by byte; the reader
// handles what stops it.
template <>
template <>
inline void GenericReader<UTF8<>, UTF8<>, CrtAllocator>::ScanCopyUnescapedString(
    ViewStream &is, GenericReader<UTF8<>, UTF8<>, CrtAllocator>::StackStream<char> &os)
{
    const char *const start = is.m_next;
    const char *const stop = plainEnd(start, is.m_end);
    if (stop != start) {
        std::memcpy(os.Push(SizeType(stop - start)), start, std::size_t(stop - start));
        is.m_next = stop;
    }
}
} // namespace rapidjson

namespace {

// What a key's value must be, and where it goes.
enum class Slot : std::uint8_t {
    Id,
    OptionalId,
    Text,
    SharedText, // a text many records repeat (payee, category): decoded once, shared
    OptionalText,
    Amount,
    OptionalAmount,
    Date,
    OptionalDate,
    Flag,
    OptionalFlag,
    Whole,
    AccountKindText,
    TxKindText,
    RepeatText,
    SourceText,
    StatusText,
    YearDates, // a bill's set dates, "01-15,04-15"; only with Repeat::setDates
    List,    // a list of records under the Book
    History, // a bill's payments
};

bool isOptional(Slot slot)
{
    return slot == Slot::OptionalId || slot == Slot::OptionalText || slot == Slot::OptionalAmount ||
           slot == Slot::OptionalDate || slot == Slot::OptionalFlag || slot == Slot::YearDates;
}

const char *expectation(Slot slot)
{
    switch (slot) {
    case Slot::Amount:
    case Slot::OptionalAmount:
        return "expected a number";
    case Slot::Whole:
        return "expected a whole number";
    case Slot::Flag:
    case Slot::OptionalFlag:
        return "expected true or false";
    case Slot::List:
    case Slot::History:
        return "expected an array";
    default:
        return "expected a string";
    }
}

enum class Kind : std::uint8_t { Book, Account, Transaction, Bill, Royalty, Category, Payment };

struct Field
{
    std::string_view key;
    Slot slot;
    Kind records = Kind::Book; // of a List: what its elements are
};

// Fields in the order the file writes them, which is also the order a missing key
// is looked for.
constexpr Field bookFields[] = {
    {"accounts", Slot::List, Kind::Account},
    {"bills", Slot::List, Kind::Bill},
    {"categories", Slot::List, Kind::Category},
    {"currency", Slot::Text},
    {"royalties", Slot::List, Kind::Royalty},
    {"setAsidePercent", Slot::OptionalAmount},
    {"transactions", Slot::List, Kind::Transaction},
    {"version", Slot::Whole},
};
constexpr Field accountFields[] = {
    {"archived", Slot::Flag}, {"id", Slot::Id},          {"kind", Slot::AccountKindText},
    {"name", Slot::Text},     {"opening", Slot::Amount},
};
constexpr Field transactionFields[] = {
    {"accountID", Slot::Id},
    {"amount", Slot::Amount},
    {"category", Slot::SharedText},
    {"cleared", Slot::Flag},
    {"date", Slot::Date},
    {"id", Slot::Id},
    {"importHash", Slot::OptionalText},
    {"kind", Slot::TxKindText},
    {"note", Slot::Text},
    {"payee", Slot::SharedText},
    {"transferPairID", Slot::OptionalId},
};
constexpr Field categoryFields[] = {
    {"budget", Slot::OptionalAmount},
    {"income", Slot::Flag},
    {"name", Slot::Text},
    {"setAside", Slot::OptionalFlag},
};
constexpr Field billFields[] = {
    {"accountID", Slot::OptionalId},
    {"active", Slot::Flag},
    {"amount", Slot::Amount},
    {"autopay", Slot::Flag},
    {"category", Slot::SharedText},
    {"due", Slot::Date},
    {"history", Slot::History},
    {"id", Slot::Id},
    {"name", Slot::Text},
    {"note", Slot::Text},
    {"remindDays", Slot::Whole},
    {"repeats", Slot::RepeatText},
    {"website", Slot::Text},
    {"yearDates", Slot::YearDates},
};
constexpr Field paymentFields[] = {
    {"amount", Slot::Amount},
    {"date", Slot::Date},
    {"dueDate", Slot::Date},
};
constexpr Field royaltyFields[] = {
    {"accountID", Slot::OptionalId},
    {"expectedAmount", Slot::Amount},
    {"expectedDate", Slot::Date},
    {"id", Slot::Id},
    {"note", Slot::Text},
    {"payer", Slot::Text},
    {"period", Slot::Text},
    {"receivedAmount", Slot::OptionalAmount},
    {"receivedDate", Slot::OptionalDate},
    {"repeats", Slot::RepeatText},
    {"source", Slot::SourceText},
    {"status", Slot::StatusText},
    {"work", Slot::Text},
};

std::span<const Field> fieldsOf(Kind kind)
{
    switch (kind) {
    case Kind::Book:
        return bookFields;
    case Kind::Account:
        return accountFields;
    case Kind::Transaction:
        return transactionFields;
    case Kind::Bill:
        return billFields;
    case Kind::Royalty:
        return royaltyFields;
    case Kind::Category:
        return categoryFields;
    case Kind::Payment:
        return paymentFields;
    }
    return {};
}

// The field named `key`, or -1. Keys usually come in table order, so the one after
// the previous key (`next`) is tried first.
int findField(std::span<const Field> fields, std::string_view key, int &next)
{
    int found = -1;
    if (std::size_t(next) < fields.size() && sameText(fields[std::size_t(next)].key, key)) {
        found = next;
    } else {
        for (std::size_t i = 0; i < fields.size() && found < 0; ++i)
            if (sameText(fields[i].key, key))
                found = int(i);
    }
    if (found >= 0)
        next = found + 1;
    return found;
}

// Where each field's value is stored in its record, in the order of its field table.
void *target(Book &b, int field)
{
    void *const where[] = {nullptr, nullptr,           nullptr, &b.currency,
                           nullptr, &b.setAsidePercent, nullptr, &b.version}; // lists: record by record
    static_assert(sizeof(where) / sizeof(void *) == std::size(bookFields));
    return where[field];
}

void *target(Account &a, int field)
{
    void *const where[] = {&a.archived, &a.id, &a.kind, &a.name, &a.opening};
    static_assert(sizeof(where) / sizeof(void *) == std::size(accountFields));
    return where[field];
}

void *target(Transaction &t, int field)
{
    void *const where[] = {&t.accountID,  &t.amount, &t.category, &t.cleared, &t.date,          &t.id,
                           &t.importHash, &t.kind,   &t.note,     &t.payee,   &t.transferPairID};
    static_assert(sizeof(where) / sizeof(void *) == std::size(transactionFields));
    return where[field];
}

void *target(Category &c, int field)
{
    void *const where[] = {&c.budget, &c.income, &c.name, &c.setAside};
    static_assert(sizeof(where) / sizeof(void *) == std::size(categoryFields));
    return where[field];
}

void *target(Bill &b, int field)
{
    void *const where[] = {&b.accountID, &b.active, &b.amount, &b.autopay,    &b.category, &b.due,    &b.history,
                           &b.id,        &b.name,   &b.note,   &b.remindDays, &b.repeats,  &b.website,
                           &b.yearDates};
    static_assert(sizeof(where) / sizeof(void *) == std::size(billFields));
    return where[field];
}

void *target(Bill::Payment &p, int field)
{
    void *const where[] = {&p.amount, &p.date, &p.dueDate};
    static_assert(sizeof(where) / sizeof(void *) == std::size(paymentFields));
    return where[field];
}

void *target(Royalty &r, int field)
{
    void *const where[] = {&r.accountID, &r.expectedAmount, &r.expectedDate, &r.id,      &r.note,   &r.payer,
                           &r.period,    &r.receivedAmount, &r.receivedDate, &r.repeats, &r.source, &r.status,
                           &r.work};
    static_assert(sizeof(where) / sizeof(void *) == std::size(royaltyFields));
    return where[field];
}

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF. The
// reader passes bytes through as they are, so a text is checked before it is kept.
bool isUtf8(std::string_view text)
{
    const auto *p = reinterpret_cast<const unsigned char *>(text.data());
    const auto *const end = p + text.size();
    while (end - p >= 8) { // plain ASCII, eight bytes at a time
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        if (word & 0x8080808080808080ull)
            break;
        p += 8;
    }
    static constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
    while (p != end) {
        if (*p < 0x80) {
            ++p;
            continue;
        }
        int extra;
        char32_t c;
        if ((*p & 0xE0) == 0xC0) {
            extra = 1;
            c = *p & 0x1F;
        } else if ((*p & 0xF0) == 0xE0) {
            extra = 2;
            c = *p & 0x0F;
        } else if ((*p & 0xF8) == 0xF0) {
            extra = 3;
            c = *p & 0x07;
        } else {
            return false;
        }
        if (end - p <= extra)
            return false;
        for (int i = 1; i <= extra; ++i) {
            if ((p[i] & 0xC0) != 0x80)
                return false;
            c = (c << 6) | (p[i] & 0x3F);
        }
        if (c < least[extra] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            return false;
        p += extra + 1;
    }
    return true;
}

// Equal texts decoded once and shared: a million transactions name a few hundred
// payees and categories, so this saves both the decoding and the memory.
class TextPool
{
public:
    TextPool()
        : m_slots(1024)
    {}

    // The shared text, or nothing when the bytes are not UTF-8.
    std::optional<QString> get(std::string_view utf8)
    {
        if (utf8.empty())
            return QString();
        const std::uint64_t hash = hashOf(utf8);
        std::size_t i = hash & (m_slots.size() - 1);
        while (m_slots[i].used) {
            if (m_slots[i].hash == hash && sameText(m_slots[i].key, utf8))
                return m_slots[i].text;
            i = (i + 1) & (m_slots.size() - 1);
        }
        if (!isUtf8(utf8))
            return std::nullopt;
        QString text = QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
        if (m_count >= maxEntries)
            return text; // a file of all-different texts should not grow the pool without end
        m_slots[i] = {true, hash, std::string(utf8), text};
        if (++m_count * 2 > m_slots.size())
            rehash();
        return text;
    }

private:
    static constexpr std::size_t maxEntries = 16384;

    struct Entry
    {
        bool used = false;
        std::uint64_t hash = 0;
        std::string key;
        QString text;
    };

    // Eight bytes per step; only needs to spread a few hundred short texts.
    static std::uint64_t hashOf(std::string_view bytes)
    {
        constexpr std::uint64_t k = 0x9E3779B97F4A7C15ull;
        std::uint64_t h = bytes.size() * k;
        std::size_t i = 0;
        for (; i + 8 <= bytes.size(); i += 8)
            h = (std::rotl(h, 29) ^ word8(bytes.data() + i)) * k;
        std::uint64_t tail = 0;
        std::memcpy(&tail, bytes.data() + i, bytes.size() - i);
        h = (std::rotl(h, 29) ^ tail) * k;
        return h ^ (h >> 32);
    }

    void rehash()
    {
        std::vector<Entry> old(m_slots.size() * 2);
        old.swap(m_slots);
        for (Entry &e : old) {
            if (!e.used)
                continue;
            std::size_t i = e.hash & (m_slots.size() - 1);
            while (m_slots[i].used)
                i = (i + 1) & (m_slots.size() - 1);
            m_slots[i] = std::move(e);
        }
    }

    std::vector<Entry> m_slots;
    std::size_t m_count = 0;
};

// The SAX handler: a small state machine that builds the Book as the reader walks
// the text, so no document tree is ever held in memory. Returning false stops the
// reader; m_error then says why.
class Decoder
{
public:
    using Ch = char;

    // `stream` is the reader's: at the start of the transaction list the plain records
    // are read here, and the reader goes on after them.
    // `releasePages`: the text is a read-only mapping of a file, whose pages can be
    // handed back once read.
    // `progress`, when given, counts the bytes read for another thread to show.
    Decoder(Book &book, ViewStream &stream, bool releasePages, std::atomic<qint64> *progress)
        : m_book(book)
        , m_stream(stream)
        , m_releasePages(releasePages)
        , m_released(stream.m_next)
        , m_progress(progress)
        , m_counted(stream.m_next)
    {}
    ~Decoder() { dropAhead(); }
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;

    const QString &error() const { return m_error; }
    int roundedCount() const { return m_roundedCount; }
    const QString &firstRounded() const { return m_firstRounded; }

    bool Null()
    {
        if (m_skipDepth >= 0)
            return skipScalar();
        if (m_level == Level::Top || m_level == Level::List || m_level == Level::History)
            return elementError();
        if (!isOptional(m_slot))
            return fail(expectation(m_slot));
        switch (m_slot) {
        case Slot::OptionalId:
            *static_cast<std::optional<QUuid> *>(m_target) = std::nullopt;
            break;
        case Slot::OptionalText:
            *static_cast<std::optional<QString> *>(m_target) = std::nullopt;
            break;
        case Slot::OptionalAmount:
            *static_cast<std::optional<Decimal> *>(m_target) = std::nullopt;
            break;
        case Slot::YearDates:
            static_cast<std::vector<MonthDay> *>(m_target)->clear();
            break;
        case Slot::OptionalFlag:
            *static_cast<std::optional<bool> *>(m_target) = std::nullopt;
            break;
        default:
            *static_cast<std::optional<Instant> *>(m_target) = std::nullopt;
            break;
        }
        return stored();
    }

    bool Bool(bool value)
    {
        if (m_skipDepth >= 0)
            return skipScalar();
        if (m_level == Level::Top || m_level == Level::List || m_level == Level::History)
            return elementError();
        if (m_slot == Slot::OptionalFlag)
            *static_cast<std::optional<bool> *>(m_target) = value;
        else if (m_slot == Slot::Flag)
            *static_cast<bool *>(m_target) = value;
        else
            return fail(expectation(m_slot));
        return stored();
    }

    // Numbers always arrive as text (kParseNumbersAsStringsFlag); these are never called.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    bool RawNumber(const char *str, rapidjson::SizeType length, bool)
    {
        if (m_skipDepth >= 0)
            return skipScalar();
        if (m_level == Level::Top || m_level == Level::List || m_level == Level::History)
            return elementError();
        const std::string_view text(str, length);
        switch (m_slot) {
        case Slot::Amount:
        case Slot::OptionalAmount: {
            std::optional<Decimal> value = Decimal::fromString(text);
            if (!value)
                return fail(QStringLiteral("not an amount ") + quoted(text));
            if (significantDigits(text) > Decimal::maxDigits && m_roundedCount++ == 0)
                m_firstRounded = fieldPlace();
            if (m_slot == Slot::Amount)
                *static_cast<Decimal *>(m_target) = *value;
            else
                *static_cast<std::optional<Decimal> *>(m_target) = *value;
            return stored();
        }
        case Slot::Whole: {
            std::optional<int> value = wholeNumber(text);
            if (!value)
                return fail(expectation(m_slot));
            *static_cast<int *>(m_target) = *value;
            return stored();
        }
        default:
            return fail(expectation(m_slot));
        }
    }

    bool String(const char *str, rapidjson::SizeType length, bool)
    {
        if (m_skipDepth >= 0)
            return skipScalar();
        if (m_level == Level::Top || m_level == Level::List || m_level == Level::History)
            return elementError();
        const std::string_view text(str, length);
        switch (m_slot) {
        case Slot::Id:
        case Slot::OptionalId: {
            const std::optional<QUuid> id = parseUuid(text);
            if (!id)
                return fail(QStringLiteral("not an id ") + quoted(text));
            if (m_slot == Slot::Id)
                *static_cast<QUuid *>(m_target) = *id;
            else
                *static_cast<std::optional<QUuid> *>(m_target) = *id;
            return stored();
        }
        case Slot::Text:
            if (!isUtf8(text))
                return fail("not valid UTF-8");
            *static_cast<QString *>(m_target) = QString::fromUtf8(str, qsizetype(length));
            return stored();
        case Slot::SharedText: {
            std::optional<QString> shared = m_pool.get(text);
            if (!shared)
                return fail("not valid UTF-8");
            *static_cast<QString *>(m_target) = std::move(*shared);
            return stored();
        }
        case Slot::OptionalText:
            if (!isUtf8(text))
                return fail("not valid UTF-8");
            *static_cast<std::optional<QString> *>(m_target) = QString::fromUtf8(str, qsizetype(length));
            return stored();
        case Slot::Date:
        case Slot::OptionalDate: {
            const std::optional<Instant> when = Instant::fromIso(text);
            if (!when)
                return fail(QStringLiteral("not a date ") + quoted(text));
            if (m_slot == Slot::Date)
                *static_cast<Instant *>(m_target) = *when;
            else
                *static_cast<std::optional<Instant> *>(m_target) = *when;
            return stored();
        }
        case Slot::AccountKindText:
            return storeEnum<AccountKind>(text);
        case Slot::TxKindText:
            return storeEnum<TxKind>(text);
        case Slot::RepeatText:
            return storeEnum<Repeat>(text);
        case Slot::SourceText:
            return storeEnum<RoyaltySource>(text);
        case Slot::StatusText:
            return storeEnum<RoyaltyStatus>(text);
        case Slot::YearDates: {
            std::optional<std::vector<MonthDay>> dates =
                parseYearDates(QString::fromLatin1(str, qsizetype(length)));
            if (!dates)
                return fail(QStringLiteral("not days of the year ") + quoted(text));
            *static_cast<std::vector<MonthDay> *>(m_target) = std::move(*dates);
            return stored();
        }
        default:
            return fail(expectation(m_slot));
        }
    }

    bool StartObject()
    {
        if (m_skipDepth >= 0) {
            ++m_skipDepth;
            return true;
        }
        switch (m_level) {
        case Level::Top:
            m_level = Level::Book;
            return true;
        case Level::List:
            startRecord();
            return true;
        case Level::History:
            m_payment = &m_bill->history.emplace_back();
            m_paymentSeen = 0;
            m_paymentNext = 0;
            m_level = Level::Payment;
            return true;
        default:
            return fail(expectation(m_slot));
        }
    }

    bool Key(const char *str, rapidjson::SizeType length, bool)
    {
        if (m_skipDepth >= 0)
            return true;
        const std::string_view key(str, length);
        switch (m_level) {
        case Level::Book:
            return bindField(Kind::Book, key, m_book, m_bookSeen, m_bookNext);
        case Level::Record:
            switch (m_kind) {
            case Kind::Account:
                return bindField(m_kind, key, *static_cast<Account *>(m_record), m_recordSeen, m_recordNext);
            case Kind::Transaction:
                return bindField(m_kind, key, *static_cast<Transaction *>(m_record), m_recordSeen, m_recordNext);
            case Kind::Bill:
                return bindField(m_kind, key, *static_cast<Bill *>(m_record), m_recordSeen, m_recordNext);
            case Kind::Royalty:
                return bindField(m_kind, key, *static_cast<Royalty *>(m_record), m_recordSeen, m_recordNext);
            default:
                return bindField(m_kind, key, *static_cast<Category *>(m_record), m_recordSeen, m_recordNext);
            }
        default:
            return bindField(Kind::Payment, key, *m_payment, m_paymentSeen, m_paymentNext);
        }
    }

    bool EndObject(rapidjson::SizeType)
    {
        if (m_skipDepth >= 0)
            return skipEnd();
        switch (m_level) {
        case Level::Book:
            if (!complete(Kind::Book, m_bookSeen))
                return false;
            m_level = Level::Done;
            return true;
        case Level::Record:
            if (!complete(m_kind, m_recordSeen) || !scheduled())
                return false;
            ++m_count;
            m_level = Level::List;
            // After a transaction the reader could not leave to plainRecords (one with an
            // escaped text, say), the plain ones after it are read here again.
            return m_kind != Kind::Transaction || m_plain || plainRecords(true);
        default: // Level::Payment
            if (!complete(Kind::Payment, m_paymentSeen))
                return false;
            ++m_paymentCount;
            m_level = Level::History;
            return true;
        }
    }

    bool StartArray()
    {
        if (m_skipDepth >= 0) {
            ++m_skipDepth;
            return true;
        }
        if (m_level == Level::Top || m_level == Level::List || m_level == Level::History)
            return elementError();
        if (m_slot == Slot::List) {
            startList(bookFields[std::size_t(m_field)].records, std::size_t(m_stream.m_end - m_stream.m_next));
            return m_kind != Kind::Transaction || plainRecords(false);
        }
        if (m_slot == Slot::History) {
            m_bill = static_cast<Bill *>(m_record);
            m_bill->history.clear();
            m_paymentCount = 0;
            m_level = Level::History;
            return true;
        }
        return fail(expectation(m_slot));
    }

    bool EndArray(rapidjson::SizeType)
    {
        if (m_skipDepth >= 0)
            return skipEnd();
        if (m_level == Level::History) {
            m_level = Level::Record;
            m_field = m_historyField;
            m_seen = &m_recordSeen;
            return stored();
        }
        // Level::List
        dropAhead();
        m_level = Level::Book;
        m_field = m_listField;
        m_seen = &m_bookSeen;
        return stored();
    }

private:
    enum class Level : std::uint8_t { Top, Book, List, Record, History, Payment, Done };

    // Reads records of the transaction list from the stream for as long as they are flat
    // objects followed by another record or by the list's end, giving this handler the
    // very calls the reader would, so every rule and message stays the reader's. The
    // stream is at the list's '[', or at the '}' of a record the reader read
    // (`afterRecord`); the reader goes on from the first record not taken here (or the
    // list's end) as if it came next. False when a record broke a rule.
    bool plainRecords(bool afterRecord)
    {
        const char *const end = m_stream.m_end;
        const char *const start = m_stream.m_next + 1;
        const char *p = blanksEnd(start, end);
        if (afterRecord) {
            if (p == end || *p != ',')
                return true;
            p = blanksEnd(p + 1, end);
        } else {
            startAhead(p);
        }
        const char *last = nullptr;
        m_plain = true;
        if (!takeRecords(p, last))
            return false;
        m_plain = false;
        // After a '}' the reader expects the comma; after the '[' a record.
        const char *resume = !last ? start : !p || afterRecord ? last : p;
        // The reader takes one byte (the '[' or '}' it thinks it is at) when this returns.
        m_stream.m_next = resume - 1;
        return true;
    }

    // Takes records from `p` (at a '{') while they are plain and followed by another
    // record or the list's end. Sets `last` after the '}' of the last one taken, and `p`
    // to the first one not taken, or to null when the list ended. False when a record
    // broke a rule.
    bool takeRecords(const char *&p, const char *&last)
    {
        const char *const end = m_stream.m_end;
        FlatObject &record = m_flat;
        while (p != end && *p == '{') {
            if (m_ahead && p == m_ahead->from && joinAhead(p, last)) {
                if (!p)
                    return true;
                continue;
            }
            const char *after = record.read(p, end);
            if (!after)
                return true;
            const char *next = blanksEnd(after, end);
            if (next != end && *next == ',') {
                next = blanksEnd(next + 1, end);
                if (next == end || *next != '{')
                    return true; // not a record after the comma: the reader says what is wrong
            } else if (next == end || *next != ']') {
                return true;
            }
            if (!StartObject())
                return false;
            for (std::size_t i = 0; i < record.count; ++i) {
                const Member &m = record.members[i];
                if (!Key(m.key.data(), rapidjson::SizeType(m.key.size()), false))
                    return false;
                const auto size = rapidjson::SizeType(m.value.size());
                const bool ok = m.type == Member::String   ? String(m.value.data(), size, false)
                                : m.type == Member::Number ? RawNumber(m.value.data(), size, false)
                                                           : Bool(m.type == Member::True);
                if (!ok)
                    return false;
            }
            if (!EndObject(rapidjson::SizeType(record.count)))
                return false;
            if (m_sliceLines && m_book.transactions.size() == m_sliceLines) {
                m_slices.push_back(std::move(m_book.transactions));
                m_book.transactions.clear();
                m_book.transactions.reserve(m_sliceLines);
            }
            last = after;
            p = *next == ']' ? nullptr : next;
            if (!p)
                return true;
            readUpTo(p);
        }
        return true;
    }

    // The second half of a long transaction list, read by another thread from a place
    // that looks like the start of a record in the money file's own layout. It is used
    // only if this reader, going on from the first half, lands on that very place as the
    // start of a record; otherwise it is dropped and the list read here as usual.
    struct Ahead
    {
        const char *from = nullptr;
        Book book{.categories = {}};
        ViewStream stream;
        std::unique_ptr<Decoder> decoder;
        const char *next = nullptr; // as takeRecords leaves them
        const char *last = nullptr;
        bool ok = false;
        std::thread thread;
    };

    void startAhead(const char *p)
    {
        constexpr std::size_t worthSplitting = 8u << 20;
        const char *const end = m_stream.m_end;
        if (!m_mayGoAhead || std::size_t(end - p) < worthSplitting || std::thread::hardware_concurrency() < 2)
            return;
        constexpr std::string_view boundary = "\n    },\n    {\n";
        const std::string_view rest(p + (end - p) / 2, std::size_t(end - p) - std::size_t(end - p) / 2);
        const std::size_t found = rest.find(boundary);
        if (found == std::string_view::npos)
            return;
        auto ahead = std::make_unique<Ahead>();
        ahead->from = rest.data() + found + boundary.size() - 2;
        ahead->stream = m_stream;
        ahead->stream.m_next = ahead->from;
        ahead->decoder = std::make_unique<Decoder>(ahead->book, ahead->stream, m_releasePages, m_progress);
        ahead->decoder->m_mayGoAhead = false;
        ahead->decoder->m_sliceLines = sliceLines;
        ahead->decoder->startList(Kind::Transaction, std::size_t(end - ahead->from));
        Ahead *a = ahead.get();
        a->thread = std::thread([a] {
            a->next = a->from;
            a->ok = a->decoder->takeRecords(a->next, a->last) && a->last && a->decoder->m_roundedCount == 0;
        });
        m_ahead = std::move(ahead);
    }

    // At the record where the other thread started: takes what it read, as if read here.
    bool joinAhead(const char *&p, const char *&last)
    {
        const std::unique_ptr<Ahead> ahead = std::move(m_ahead);
        ahead->thread.join();
        if (!ahead->ok)
            return false;
        // Each slice is handed back as soon as it is moved: the second half of a big Book
        // is never held twice.
        const auto moveIn = [this](std::vector<Transaction> &slice) {
            m_book.transactions.insert(m_book.transactions.end(), std::make_move_iterator(slice.begin()),
                                       std::make_move_iterator(slice.end()));
            m_count += slice.size();
            std::vector<Transaction>().swap(slice);
        };
        for (std::vector<Transaction> &slice : ahead->decoder->m_slices)
            moveIn(slice);
        moveIn(ahead->book.transactions);
        p = ahead->next;
        last = ahead->last;
        m_counted = p ? p : last; // the other thread counted its own bytes
        return true;
    }

    void dropAhead()
    {
        if (m_ahead) {
            m_ahead->thread.join();
            m_ahead.reset();
        }
    }

    // Everything before p is read: counts it for `progress`, and hands a mapped file's
    // pages back, so the file is not held in memory beside the Book it becomes (read
    // again, for an error's place, they come back from the file).
    void readUpTo(const char *p)
    {
        if (m_progress && p - m_counted >= (1 << 20)) {
            m_progress->fetch_add(p - m_counted, std::memory_order_relaxed);
            m_counted = p;
        }
        constexpr std::size_t step = 16u << 20;
        if (!m_releasePages || std::size_t(p - m_released) < step)
            return;
        const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
        const auto from = (reinterpret_cast<std::uintptr_t>(m_released) + page - 1) / page * page;
        const auto to = reinterpret_cast<std::uintptr_t>(p) / page * page;
        if (to > from)
            madvise(reinterpret_cast<void *>(from), to - from, MADV_DONTNEED);
        m_released = p;
    }

    template <typename R> bool bindField(Kind kind, std::string_view key, R &record, std::uint32_t &seen, int &next)
    {
        const int field = findField(fieldsOf(kind), key, next);
        if (field < 0) {
            m_skipDepth = 0; // an unknown key: its whole value is passed over
            return true;
        }
        m_field = field;
        m_slot = fieldsOf(kind)[std::size_t(field)].slot;
        m_target = target(record, field);
        m_seen = &seen;
        if (m_slot == Slot::List)
            m_listField = field;
        else if (m_slot == Slot::History)
            m_historyField = field;
        return true;
    }

    bool stored()
    {
        *m_seen |= 1u << m_field;
        return true;
    }

    bool skipScalar()
    {
        if (m_skipDepth == 0)
            m_skipDepth = -1;
        return true;
    }

    bool skipEnd()
    {
        if (--m_skipDepth == 0)
            m_skipDepth = -1;
        return true;
    }

    template <typename E> bool storeEnum(std::string_view text)
    {
        for (const auto &[value, stored] : EnumTexts<E>::table) {
            if (sameText(text, stored)) {
                *static_cast<E *>(m_target) = value;
                return this->stored();
            }
        }
        return fail(QStringLiteral("unknown value ") + quoted(text));
    }

    // A list of `kind` begins, with `textLeft` bytes of text from here to the end.
    void startList(Kind kind, std::size_t textLeft)
    {
        m_count = 0;
        m_level = Level::List;
        m_kind = kind;
        switch (m_kind) {
        case Kind::Account:
            m_book.accounts.clear();
            break;
        case Kind::Transaction:
            // Room for as many lines as the text could hold: no copying growth, and the
            // pages beyond the lines really read are never touched. Every line needs its
            // required keys and two ids, well over this many bytes.
            m_book.transactions.clear();
            m_book.transactions.reserve(m_sliceLines ? m_sliceLines : textLeft / 160 + 1);
            break;
        case Kind::Bill:
            m_book.bills.clear();
            break;
        case Kind::Royalty:
            m_book.royalties.clear();
            break;
        default:
            m_book.categories.clear();
            break;
        }
    }

    // Designated initialisers leave the id empty: a random id per record would cost
    // more than the rest of the decoding and is overwritten at once.
    void startRecord()
    {
        switch (m_kind) {
        case Kind::Account:
            m_record = &m_book.accounts.emplace_back(Account{.id = QUuid()});
            break;
        case Kind::Transaction:
            m_record = &m_book.transactions.emplace_back(Transaction{.id = QUuid()});
            break;
        case Kind::Bill:
            m_record = &m_book.bills.emplace_back(Bill{.id = QUuid()});
            break;
        case Kind::Royalty:
            m_record = &m_book.royalties.emplace_back(Royalty{.id = QUuid()});
            break;
        default:
            m_record = &m_book.categories.emplace_back();
            break;
        }
        m_recordSeen = 0;
        m_recordNext = 0;
        m_level = Level::Record;
    }

    // A bill on set dates names them; only a bill comes on set dates.
    bool scheduled()
    {
        QString problem;
        if (m_kind == Kind::Bill) {
            Bill &bill = *static_cast<Bill *>(m_record);
            if (bill.repeats == Repeat::setDates && bill.yearDates.empty())
                problem = QStringLiteral("missing key \"yearDates\"");
            else if (bill.repeats != Repeat::setDates)
                bill.yearDates.clear();
        } else if (m_kind == Kind::Royalty && static_cast<Royalty *>(m_record)->repeats == Repeat::setDates) {
            problem = QStringLiteral("repeats: a royalty does not come on set dates");
        }
        if (problem.isEmpty())
            return true;
        m_error = recordPlace() + QStringLiteral(": ") + problem;
        return false;
    }

    bool complete(Kind kind, std::uint32_t seen)
    {
        const std::span<const Field> fields = fieldsOf(kind);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (!(seen & (1u << i)) && !isOptional(fields[i].slot)) {
                const QString problem = QStringLiteral("missing key \"%1\"")
                                            .arg(QLatin1String(fields[i].key.data(), qsizetype(fields[i].key.size())));
                const QString where = recordPlace();
                m_error = where.isEmpty() ? problem : where + QStringLiteral(": ") + problem;
                return false;
            }
        }
        return true;
    }

    // The digits of a number's text that carry its value: those between the first and
    // the last digit that is not zero ("0.0450" has 2).
    static int significantDigits(std::string_view text)
    {
        int first = -1;
        int last = -1;
        int index = 0;
        for (const char c : text) {
            if (c == 'e' || c == 'E')
                break;
            if (c < '0' || c > '9')
                continue;
            if (c != '0') {
                if (first < 0)
                    first = index;
                last = index;
            }
            ++index;
        }
        return first < 0 ? 0 : last - first + 1;
    }

    static std::optional<int> wholeNumber(std::string_view text)
    {
        std::size_t i = text.starts_with('-') ? 1 : 0;
        if (i == text.size())
            return std::nullopt;
        long long value = 0;
        for (; i < text.size(); ++i) {
            if (text[i] < '0' || text[i] > '9')
                return std::nullopt; // a fraction or an exponent
            value = value * 10 + (text[i] - '0');
            if (value > std::numeric_limits<int>::max() + 1LL)
                return std::nullopt;
        }
        if (text.starts_with('-'))
            value = -value;
        if (value > std::numeric_limits<int>::max() || value < std::numeric_limits<int>::min())
            return std::nullopt;
        return int(value);
    }

    // The value as the file has it, in quotes; a very long one is cut short.
    static QString quoted(std::string_view text)
    {
        constexpr std::size_t longest = 80;
        QString shown = QString::fromUtf8(text.data(), qsizetype(std::min(text.size(), longest)));
        if (text.size() > longest)
            shown += QChar(0x2026);
        return QLatin1Char('"') + shown + QLatin1Char('"');
    }

    static QLatin1String listName(Kind kind)
    {
        switch (kind) {
        case Kind::Account:
            return QLatin1String("accounts");
        case Kind::Transaction:
            return QLatin1String("transactions");
        case Kind::Bill:
            return QLatin1String("bills");
        case Kind::Royalty:
            return QLatin1String("royalties");
        default:
            return QLatin1String("categories");
        }
    }

    // "transactions[3]" or "bills[2].history[0]": the record being read; empty at Book level.
    QString recordPlace() const
    {
        QString place;
        if (m_level == Level::Book || m_level == Level::Top || m_level == Level::Done)
            return place;
        place = listName(m_kind) + QLatin1Char('[') + QString::number(m_count) + QLatin1Char(']');
        if (m_level == Level::History || m_level == Level::Payment)
            place += QStringLiteral(".history[") + QString::number(m_paymentCount) + QLatin1Char(']');
        return place;
    }

    // A value of the wrong kind where a record (or the Book) was expected.
    bool elementError()
    {
        const QString where = recordPlace();
        m_error =
            where.isEmpty() ? QStringLiteral("expected an object") : where + QStringLiteral(": expected an object");
        return false;
    }

    // A problem with the value of the key just read.
    bool fail(const QString &problem)
    {
        m_error = fieldPlace() + QStringLiteral(": ") + problem;
        return false;
    }
    bool fail(const char *problem) { return fail(QString::fromLatin1(problem)); }

    // "transactions[3].amount": the key just read, with its record.
    QString fieldPlace() const
    {
        Kind kind = m_kind;
        if (m_level == Level::Book)
            kind = Kind::Book;
        else if (m_level == Level::Payment)
            kind = Kind::Payment;
        const std::string_view key = fieldsOf(kind)[std::size_t(m_field)].key;
        const QString name = QString::fromLatin1(key.data(), qsizetype(key.size()));
        const QString where = recordPlace();
        return where.isEmpty() ? name : where + QLatin1Char('.') + name;
    }

    Book &m_book;
    QString m_error;
    int m_roundedCount = 0;
    QString m_firstRounded;
    TextPool m_pool;
    ViewStream &m_stream;
    bool m_releasePages;
    const char *m_released;
    std::atomic<qint64> *m_progress;
    const char *m_counted;
    bool m_plain = false; // within plainRecords
    bool m_mayGoAhead = true;
    // The other thread's lines, in slices of this many (0: one list), so that they can be
    // handed over a slice at a time.
    static constexpr std::size_t sliceLines = 1u << 13;
    std::size_t m_sliceLines = 0;
    std::vector<std::vector<Transaction>> m_slices;
    FlatObject m_flat;
    std::unique_ptr<Ahead> m_ahead;

    Level m_level = Level::Top;
    Kind m_kind = Kind::Book; // the records of the current list
    int m_skipDepth = -1;     // >= 0 while passing over an unknown key's value

    // The key whose value comes next.
    int m_field = 0;
    Slot m_slot = Slot::Whole;
    void *m_target = nullptr;
    std::uint32_t *m_seen = nullptr;
    int m_listField = 0;
    int m_historyField = 0;

    std::uint32_t m_bookSeen = 0;
    int m_bookNext = 0; // the field expected next, as a hint for the key lookup
    void *m_record = nullptr;
    std::uint32_t m_recordSeen = 0;
    int m_recordNext = 0;
    std::size_t m_count = 0; // index of the record being read in its list
    Bill *m_bill = nullptr;
    Bill::Payment *m_payment = nullptr;
    std::uint32_t m_paymentSeen = 0;
    int m_paymentNext = 0;
    std::size_t m_paymentCount = 0;
};

// "line 3, column 7" for a byte offset; columns count characters, not bytes.
QString textPlace(std::string_view json, std::size_t offset)
{
    offset = std::min(offset, json.size());
    std::size_t line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < offset; ++i) {
        const void *found = std::memchr(json.data() + i, '\n', offset - i);
        if (!found)
            break;
        i = std::size_t(static_cast<const char *>(found) - json.data());
        ++line;
        lineStart = i + 1;
    }
    std::size_t column = 1;
    for (std::size_t i = lineStart; i < offset; ++i)
        if ((static_cast<unsigned char>(json[i]) & 0xC0) != 0x80)
            ++column;
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

} // namespace

namespace MoneyFile {

namespace {

Decoded decodeText(std::string_view json, bool mapped, std::atomic<qint64> *progress)
{
    Book book{.categories = {}};
    ViewStream stream{json.data(), json.data(), json.data() + json.size()};
    Decoder decoder(book, stream, mapped, progress);
    // Iterative: deep nesting under an unknown key costs heap, not stack. Numbers as
    // text: amounts never pass through a double. UTF-8 is checked where a text is
    // kept (Decoder::String), not by the reader, which would then copy byte by byte.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, decoder);
    if (result.IsError()) {
        if (result.Code() == rapidjson::kParseErrorTermination && !decoder.error().isEmpty())
            return {std::nullopt, decoder.error()};
        return {std::nullopt, textPlace(json, result.Offset()) + QStringLiteral(": ") +
                                  QString::fromLatin1(rapidjson::GetParseError_En(result.Code()))};
    }
    if (stream.Tell() != json.size()) // a zero byte, which the reader takes for the end
        return {std::nullopt,
                textPlace(json, stream.Tell()) + QStringLiteral(": ") +
                    QString::fromLatin1(rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular))};
    return {std::move(book), QString(), decoder.roundedCount(), decoder.firstRounded()};
}

} // namespace

Decoded decode(std::string_view json)
{
    return decodeText(json, false, nullptr);
}

Decoded decodeFile(QFile &file, std::atomic<qint64> *progress)
{
    const qint64 size = file.size();
    if (uchar *mapped = size > 0 ? file.map(0, size) : nullptr) {
        Decoded decoded =
            decodeText(std::string_view(reinterpret_cast<const char *>(mapped), size_t(size)), true, progress);
        file.unmap(mapped);
        return decoded;
    }
    // Not every file can be mapped (a pipe, some network folders).
    const QByteArray bytes = file.readAll();
    return decodeText(std::string_view(bytes.constData(), size_t(bytes.size())), false, progress);
}

} // namespace MoneyFile

