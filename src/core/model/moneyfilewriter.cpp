// Writing the money file: the Book as pretty-printed JSON, keys in alphabetical order,
// straight into the output buffer.
#include "model/moneyfile.h"
#include "model/repeat.h"

#include <rapidjson/prettywriter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

constexpr char hexDigits[] = "0123456789ABCDEF";

// "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX", upper case, into 36 bytes.
void formatUuid(const QUuid &id, char *out)
{
    auto put = [&out](std::uint64_t value, int digits) {
        for (int i = digits - 1; i >= 0; --i)
            *out++ = hexDigits[(value >> (4 * i)) & 0xF];
    };
    put(id.data1, 8);
    *out++ = '-';
    put(id.data2, 4);
    *out++ = '-';
    put(id.data3, 4);
    *out++ = '-';
    put((std::uint64_t(id.data4[0]) << 8) | id.data4[1], 4);
    *out++ = '-';
    for (int i = 2; i < 8; ++i)
        put(id.data4[i], 2);
}

template <typename E> std::string_view storedText(E value)
{
    for (const auto &[c, text] : EnumTexts<E>::table)
        if (c == value)
            return text;
    return {};
}

// Output stream for the writer: grows a QByteArray directly, so the finished file
// is not copied once more at the end.
class Sink
{
public:
    using Ch = char;

    explicit Sink(qsizetype expected)
    {
        m_data.resize(std::max<qsizetype>(expected, 256));
        m_next = m_data.data();
        m_end = m_next + m_data.size();
    }

    void Put(char c)
    {
        if (m_next == m_end)
            grow(1);
        *m_next++ = c;
    }
    void Flush() {}

    void reserve(std::size_t count)
    {
        if (std::size_t(m_end - m_next) < count)
            grow(count);
    }
    void putUnsafe(char c) { *m_next++ = c; }
    void append(const char *bytes, std::size_t count)
    {
        reserve(count);
        std::memcpy(m_next, bytes, count);
        m_next += count;
    }

    QByteArray take()
    {
        m_data.resize(m_next - m_data.data());
        return std::move(m_data);
    }

private:
    void grow(std::size_t count)
    {
        const qsizetype used = m_next - m_data.data();
        m_data.resize(std::max<qsizetype>(m_data.size() * 2, used + qsizetype(count)));
        m_next = m_data.data() + used;
        m_end = m_data.data() + m_data.size();
    }

    QByteArray m_data;
    char *m_next = nullptr;
    char *m_end = nullptr;
};

// Found by argument-dependent lookup from inside the writer: unchecked writes after one reserve.
inline void PutReserve(Sink &sink, std::size_t count)
{
    sink.reserve(count);
}
inline void PutUnsafe(Sink &sink, char c)
{
    sink.putUnsafe(c);
}

// The pretty writer, plus values whose JSON text is ready: placed (comma, line
// break, indentation) like any other value, then copied in one go rather than
// byte by byte as RawValue() does.
class FileWriter : public rapidjson::PrettyWriter<Sink>
{
public:
    explicit FileWriter(Sink &sink)
        : PrettyWriter(sink)
    {
        SetIndent(' ', 2);
    }

    void ready(const char *json, std::size_t length, rapidjson::Type type)
    {
        PrettyPrefix(type);
        os_->append(json, length);
    }
};

class Encoder
{
public:
    explicit Encoder(Sink &sink)
        : m_writer(sink)
    {}

    void book(const Book &b)
    {
        m_writer.StartObject();
        key("accounts");
        list(b.accounts);
        key("bills");
        list(b.bills);
        key("categories");
        list(b.categories);
        key("currency");
        text(b.currency);
        key("royalties");
        list(b.royalties);
        if (b.setAsidePercent) {
            key("setAsidePercent");
            number(*b.setAsidePercent);
        }
        key("transactions");
        list(b.transactions);
        key("version");
        m_writer.Int(std::max(b.version, MoneyFile::version)); // an older file is written as this version
        m_writer.EndObject();
    }

private:
    template <typename R> void list(const std::vector<R> &records)
    {
        m_writer.StartArray();
        for (const R &r : records)
            record(r);
        m_writer.EndArray();
    }

    void record(const Account &a)
    {
        m_writer.StartObject();
        key("archived");
        m_writer.Bool(a.archived);
        key("id");
        id(a.id);
        key("kind");
        enumText(a.kind);
        key("name");
        text(a.name);
        key("opening");
        number(a.opening);
        m_writer.EndObject();
    }

    void record(const Transaction &t)
    {
        m_writer.StartObject();
        key("accountID");
        id(t.accountID);
        key("amount");
        number(t.amount);
        key("category");
        text(t.category);
        key("cleared");
        m_writer.Bool(t.cleared);
        key("date");
        date(t.date);
        key("id");
        id(t.id);
        if (t.importHash) {
            key("importHash");
            text(*t.importHash);
        }
        key("kind");
        enumText(t.kind);
        key("note");
        text(t.note);
        key("payee");
        text(t.payee);
        if (t.transferPairID) {
            key("transferPairID");
            id(*t.transferPairID);
        }
        m_writer.EndObject();
    }

    void record(const Category &c)
    {
        m_writer.StartObject();
        if (c.budget) {
            key("budget");
            number(*c.budget);
        }
        key("income");
        m_writer.Bool(c.income);
        key("name");
        text(c.name);
        if (c.setAside) {
            key("setAside");
            m_writer.Bool(*c.setAside);
        }
        m_writer.EndObject();
    }

    void record(const Bill::Payment &p)
    {
        m_writer.StartObject();
        key("amount");
        number(p.amount);
        key("date");
        date(p.date);
        key("dueDate");
        date(p.dueDate);
        m_writer.EndObject();
    }

    void record(const Bill &b)
    {
        m_writer.StartObject();
        if (b.accountID) {
            key("accountID");
            id(*b.accountID);
        }
        key("active");
        m_writer.Bool(b.active);
        key("amount");
        number(b.amount);
        key("autopay");
        m_writer.Bool(b.autopay);
        key("category");
        text(b.category);
        key("due");
        date(b.due);
        key("history");
        list(b.history);
        key("id");
        id(b.id);
        key("name");
        text(b.name);
        key("note");
        text(b.note);
        key("remindDays");
        m_writer.Int(b.remindDays);
        key("repeats");
        enumText(b.repeats);
        key("website");
        text(b.website);
        if (b.repeats == Repeat::setDates) {
            key("yearDates");
            text(yearDatesKey(b.yearDates));
        }
        m_writer.EndObject();
    }

    void record(const Royalty &r)
    {
        m_writer.StartObject();
        if (r.accountID) {
            key("accountID");
            id(*r.accountID);
        }
        key("expectedAmount");
        number(r.expectedAmount);
        key("expectedDate");
        date(r.expectedDate);
        key("id");
        id(r.id);
        key("note");
        text(r.note);
        key("payer");
        text(r.payer);
        key("period");
        text(r.period);
        if (r.receivedAmount) {
            key("receivedAmount");
            number(*r.receivedAmount);
        }
        if (r.receivedDate) {
            key("receivedDate");
            date(*r.receivedDate);
        }
        key("repeats");
        enumText(r.repeats);
        key("source");
        enumText(r.source);
        key("status");
        enumText(r.status);
        key("work");
        text(r.work);
        m_writer.EndObject();
    }

    // Keys, ids, dates and stored enumeration texts never need escaping: they go
    // out as ready-made quoted text, past the writer's byte-by-byte escaping.
    void plain(std::string_view text)
    {
        char buffer[64];
        if (text.size() + 2 > sizeof buffer) {
            m_writer.String(text.data(), rapidjson::SizeType(text.size()));
            return;
        }
        buffer[0] = '"';
        std::memcpy(buffer + 1, text.data(), text.size());
        buffer[text.size() + 1] = '"';
        m_writer.ready(buffer, text.size() + 2, rapidjson::kStringType);
    }

    void key(std::string_view name) { plain(name); }

    void id(const QUuid &value)
    {
        char buffer[36];
        formatUuid(value, buffer);
        plain(std::string_view(buffer, 36));
    }

    void number(const Decimal &value)
    {
        const std::string digits = value.toStdString();
        m_writer.ready(digits.data(), digits.size(), rapidjson::kNumberType);
    }

    void date(const Instant &value) { plain(value.isoText()); }

    template <typename E> void enumText(E value) { plain(storedText(value)); }

    // UTF-16 to UTF-8 into one reused buffer: no allocation per text. A lone
    // surrogate (which no valid text holds) becomes U+FFFD, as QString::toUtf8 does.
    // Only a text with a quote, a backslash or a control character goes through the
    // writer's escaping.
    void text(const QString &value)
    {
        const qsizetype n = value.size();
        if (m_utf8.size() < std::size_t(n) * 3 + 2)
            m_utf8.resize(std::size_t(n) * 3 + 2);
        const char16_t *in = reinterpret_cast<const char16_t *>(value.constData());
        const char16_t *const end = in + n;
        char *const start = m_utf8.data() + 1;
        char *out = start;
        bool escape = false;
        while (in != end) {
            const char32_t c = *in++;
            if (c < 0x80) {
                escape |= c < 0x20 || c == '"' || c == '\\';
                *out++ = char(c);
            } else if (c < 0x800) {
                *out++ = char(0xC0 | (c >> 6));
                *out++ = char(0x80 | (c & 0x3F));
            } else if (c >= 0xD800 && c <= 0xDBFF && in != end && *in >= 0xDC00 && *in <= 0xDFFF) {
                const char32_t full = 0x10000 + ((c - 0xD800) << 10) + (char32_t(*in++) - 0xDC00);
                *out++ = char(0xF0 | (full >> 18));
                *out++ = char(0x80 | ((full >> 12) & 0x3F));
                *out++ = char(0x80 | ((full >> 6) & 0x3F));
                *out++ = char(0x80 | (full & 0x3F));
            } else {
                const char32_t bmp = (c >= 0xD800 && c <= 0xDFFF) ? 0xFFFD : c;
                *out++ = char(0xE0 | (bmp >> 12));
                *out++ = char(0x80 | ((bmp >> 6) & 0x3F));
                *out++ = char(0x80 | (bmp & 0x3F));
            }
        }
        if (escape) {
            m_writer.String(start, rapidjson::SizeType(out - start));
        } else {
            start[-1] = '"';
            *out++ = '"';
            m_writer.ready(start - 1, std::size_t(out - start + 1), rapidjson::kStringType);
        }
    }

    FileWriter m_writer;
    std::vector<char> m_utf8;
};

// A close guess of the file size (a little over for plain ASCII texts), so the
// output buffer is grown at most once.
qsizetype expectedSize(const Book &book)
{
    qsizetype size = 4096 + qsizetype(book.accounts.size()) * 200 + qsizetype(book.categories.size()) * 90 +
                     qsizetype(book.royalties.size()) * 600;
    for (const Bill &b : book.bills)
        size += 600 + qsizetype(b.history.size()) * 120;
    for (const Transaction &t : book.transactions) {
        size += 300 + t.payee.size() + t.category.size() + t.note.size();
        if (t.importHash)
            size += 24 + t.importHash->size();
        if (t.transferPairID)
            size += 64;
    }
    return size;
}

} // namespace

namespace MoneyFile {

QByteArray encode(const Book &book)
{
    Sink sink(expectedSize(book));
    Encoder encoder(sink);
    encoder.book(book);
    sink.Put('\n');
    return sink.take();
}

} // namespace MoneyFile
