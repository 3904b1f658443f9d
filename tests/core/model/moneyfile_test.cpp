#include "helpers/testing.h"
#include "model/moneyfile.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QRegularExpression>

namespace {

QUuid uid(const char *text)
{
    return QUuid::fromString(QLatin1String(text));
}

MoneyFile::Decoded decode(const QByteArray &json)
{
    return MoneyFile::decode(std::string_view(json.constData(), std::size_t(json.size())));
}

std::string errorOf(const QByteArray &json)
{
    const MoneyFile::Decoded decoded = decode(json);
    EXPECT_FALSE(decoded.book.has_value());
    return decoded.error.toStdString();
}

const QUuid visaId = uid("6F1C2B9E-0A4D-4C1E-9B7A-3D2E1F0A9B8C");

// One record of each kind, optional fields absent except a budget of 0.
Book sampleBook()
{
    Book book;
    book.version = 1; // as the first Coinhall wrote it
    book.accounts = {{visaId, "Visa", AccountKind::credit, d("-120.50"), false}};
    book.transactions = {{.id = uid("C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C53"),
                          .date = at("2025-03-01T19:45:00Z"),
                          .accountID = visaId,
                          .amount = d("-45.10"),
                          .payee = "Café Olé",
                          .category = "Dining out",
                          .cleared = true}};
    book.bills = {{.id = uid("0B6B4E64-8C83-4F0D-A0B5-9E1D6C2F7A31"),
                   .name = "Verizon",
                   .amount = d("89.99"),
                   .due = at("2025-03-04T09:00:00Z"),
                   .category = "Phone & internet",
                   .website = "https://verizon.com",
                   .history = {{at("2025-02-03T15:30:00Z"), d("89.99"), at("2025-02-04T09:00:00Z")}}}};
    book.royalties = {{.id = uid("5D2C8A41-3E6F-4B19-9C07-81A4F2E6D3B0"),
                       .payer = "ASCAP",
                       .source = RoyaltySource::pro,
                       .work = "Night Drive",
                       .period = "Q4 2024",
                       .expectedAmount = d("412.30"),
                       .expectedDate = at("2025-04-15T12:00:00Z"),
                       .repeats = Repeat::quarterly}};
    book.categories = {{"Dining out", false, d("0")}, {"Royalties", true, std::nullopt}};
    return book;
}

// sampleBook() as the money file has it.
const QByteArray sampleFile = R"~({
  "accounts": [
    {
      "archived": false,
      "id": "6F1C2B9E-0A4D-4C1E-9B7A-3D2E1F0A9B8C",
      "kind": "Credit card",
      "name": "Visa",
      "opening": -120.5
    }
  ],
  "bills": [
    {
      "active": true,
      "amount": 89.99,
      "autopay": false,
      "category": "Phone & internet",
      "due": "2025-03-04T09:00:00Z",
      "history": [
        {
          "amount": 89.99,
          "date": "2025-02-03T15:30:00Z",
          "dueDate": "2025-02-04T09:00:00Z"
        }
      ],
      "id": "0B6B4E64-8C83-4F0D-A0B5-9E1D6C2F7A31",
      "name": "Verizon",
      "note": "",
      "remindDays": 3,
      "repeats": "Monthly",
      "website": "https://verizon.com"
    }
  ],
  "categories": [
    {
      "budget": 0,
      "income": false,
      "name": "Dining out"
    },
    {
      "income": true,
      "name": "Royalties"
    }
  ],
  "currency": "USD",
  "royalties": [
    {
      "expectedAmount": 412.3,
      "expectedDate": "2025-04-15T12:00:00Z",
      "id": "5D2C8A41-3E6F-4B19-9C07-81A4F2E6D3B0",
      "note": "",
      "payer": "ASCAP",
      "period": "Q4 2024",
      "repeats": "Every 3 months",
      "source": "Performance (PRO)",
      "status": "Expected",
      "work": "Night Drive"
    }
  ],
  "transactions": [
    {
      "accountID": "6F1C2B9E-0A4D-4C1E-9B7A-3D2E1F0A9B8C",
      "amount": -45.1,
      "category": "Dining out",
      "cleared": true,
      "date": "2025-03-01T19:45:00Z",
      "id": "C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C53",
      "kind": "expense",
      "note": "",
      "payee": "Café Olé"
    }
  ],
  "version": 1
}
)~";

// sampleFile with one piece of text replaced; the piece must occur exactly once.
QByteArray sampleWith(const char *before, const char *after)
{
    EXPECT_EQ(sampleFile.count(before), 1) << before;
    return QByteArray(sampleFile).replace(before, after);
}

// sampleBook() plus every optional field filled, texts beyond ASCII and a date
// with milliseconds.
Book fullBook()
{
    Book book = sampleBook();
    Transaction out = book.transactions[0];
    out.id = uid("11111111-2222-4333-8444-555555555555");
    out.date = Instant::fromMSecs(at("2025-03-02T08:00:00Z").msecs() + 789);
    out.kind = TxKind::transfer;
    out.payee = QStringLiteral("Savings \"rainy day\" \\ 𝄞 日本");
    out.note = QStringLiteral("line one\nline two\ttab");
    out.importHash = QStringLiteral("9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08");
    Transaction in = out;
    in.id = uid("AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE");
    in.amount = d("45.1");
    in.transferPairID = out.id;
    out.transferPairID = in.id;
    book.transactions.insert(book.transactions.begin(), {in, out});
    book.accounts.push_back({uid("00000000-0000-0000-0000-000000000000"), "Tin", AccountKind::cash, d("0"), true});
    book.categories.push_back({"Groceries", false, d("412.5")});
    book.categories.push_back({"Bandcamp", true, std::nullopt, false});
    book.setAsidePercent = d("27.5");
    book.bills[0].accountID = visaId;
    book.bills.push_back({.id = uid("0C6B4E64-8C83-4F0D-A0B5-9E1D6C2F7A31"),
                          .name = "Gym",
                          .amount = d("30"),
                          .due = at("2024-12-31T23:59:59Z"),
                          .repeats = Repeat::once,
                          .autopay = true,
                          .remindDays = -2,
                          .active = false});
    book.bills.push_back({.id = uid("0D6B4E64-8C83-4F0D-A0B5-9E1D6C2F7A31"),
                          .name = "Estimated tax",
                          .amount = d("1200"),
                          .due = at("2025-04-15T13:00:00Z"),
                          .repeats = Repeat::setDates,
                          .yearDates = {{1, 15}, {2, 29}, {6, 15}, {9, 15}}});
    Royalty paid = book.royalties[0];
    paid.id = uid("6D2C8A41-3E6F-4B19-9C07-81A4F2E6D3B0");
    paid.status = RoyaltyStatus::received;
    paid.receivedAmount = d("399.99");
    paid.receivedDate = at("2025-04-20T10:00:00Z");
    paid.accountID = visaId;
    book.royalties.push_back(paid);
    book.version = 7;
    book.currency = QStringLiteral("EUR");
    return book;
}

// Every key of a pretty-printed JSON text, in the order written.
QStringList keys(const QByteArray &json)
{
    QStringList out;
    for (const QRegularExpressionMatch &m :
         QRegularExpression(QStringLiteral(R"~("(\w+)": )~")).globalMatch(QString::fromUtf8(json)))
        out << m.captured(1);
    return out;
}

} // namespace

// sampleFile is a version 1 file: read and written again, only its version changes.
TEST(MoneyFileTest, EncodesTheExactFileFormat)
{
    const QByteArray file = MoneyFile::encode(*decode(sampleFile).book);
    EXPECT_EQ(file.toStdString(), sampleWith(R"("version": 1)", R"("version": 2)").toStdString());

    // Each object's keys in byte order, as Qt's own JSON objects (which sort them) give them.
    const QByteArray full = MoneyFile::encode(fullBook());
    EXPECT_EQ(keys(full), keys(QJsonDocument::fromJson(full).toJson()));
    EXPECT_TRUE(full.contains(R"("payee": "Savings \"rainy day\" \\ 𝄞 日本")"));
    EXPECT_TRUE(full.contains(R"("note": "line one\nline two\ttab")"));
    EXPECT_TRUE(full.contains(R"("transferPairID": "AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE")"));
    EXPECT_TRUE(full.contains(R"("id": "00000000-0000-0000-0000-000000000000")"));
    EXPECT_TRUE(full.contains(R"("website": "",
      "yearDates": "01-15,02-29,06-15,09-15")"));
    EXPECT_TRUE(full.contains(R"("name": "Bandcamp",
      "setAside": false)"));
    EXPECT_TRUE(full.contains(R"("setAsidePercent": 27.5,)"));
}

TEST(MoneyFileTest, RoundTripKeepsEveryFieldAndTheBytes)
{
    const Book book = fullBook();
    const QByteArray file = MoneyFile::encode(book);
    const MoneyFile::Decoded decoded = decode(file);
    ASSERT_TRUE(decoded.book) << decoded.error.toStdString();

    Book expected = book;
    expected.transactions[0].date = expected.transactions[0].date.wholeSeconds(); // sub-seconds are lost
    expected.transactions[1].date = expected.transactions[1].date.wholeSeconds();
    EXPECT_EQ(*decoded.book, expected);
    EXPECT_EQ(MoneyFile::encode(*decoded.book), file);

    EXPECT_EQ(decode(sampleFile).book, sampleBook());
    EXPECT_EQ(decode(MoneyFile::encode(Book{})).book, Book{}); // with the default categories
}

// null reads as no value, a later duplicate key wins over an earlier one, any form of a
// number is read, and keys this program does not know are passed over.
TEST(MoneyFileTest, ReadsNullsDuplicateKeysEveryNumberFormAndUnknownKeys)
{
    QByteArray file = sampleWith(R"("note": "",
      "payee")",
                                 R"("importHash": "abc", "importHash": null, "transferPairID": null, "note": "",
      "payee")");
    file.replace(R"("budget": 0,)", R"("budget": null,)");
    file.replace(R"("active": true,)", R"("accountID": null, "active": true,)");
    file.replace(R"("expectedAmount")",
                 R"("receivedAmount": null, "receivedDate": null, "accountID": null, "expectedAmount")");
    file.replace(R"("name": "Visa")", R"("name": "Old", "name": "Visa")");
    file.replace(R"("opening": -120.5)", R"("opening": -1.205E2, "colour": {"a": [1, {"b": null}], "c": "x"})");
    file.replace(R"("version": 1)", R"("version": 1, "extra": [[], {}, true, -0.0])");
    file.replace(R"("amount": -45.1)", R"("amount": -45.10000)");
    const MoneyFile::Decoded decoded = decode(file);
    ASSERT_TRUE(decoded.book) << decoded.error.toStdString();
    Book expected = sampleBook();
    expected.categories[0].budget = std::nullopt;
    EXPECT_EQ(*decoded.book, expected);
    EXPECT_EQ(decoded.roundedAmounts, 0);
}

// Zeros after the last digit cost nothing; a 39th digit that carries value is
// rounded away, and the reader says where.
TEST(MoneyFileTest, CountsAmountsRoundedTo38Digits)
{
    QByteArray file =
        sampleWith(R"("opening": -120.5)", R"("opening": -120.50000000000000000000000000000000000000000000e0)");
    file.replace(R"("amount": -45.1)", R"("amount": -45.1000000000000000000000000000000000001)");
    const MoneyFile::Decoded decoded = decode(file);
    ASSERT_TRUE(decoded.book) << decoded.error.toStdString();
    EXPECT_EQ(decoded.roundedAmounts, 1);
    EXPECT_EQ(decoded.firstRounded, "transactions[0].amount");
    EXPECT_EQ(decoded.book->transactions[0].amount.toStdString(), "-45.1");
    // Several, the first in the file named: the Store's message (faults_test.cpp).
}

// A missing key (looked for in a list's record, a bill's payment, the top) or a wrong
// value fails the whole book, naming its place.
TEST(MoneyFileTest, MissingKeysAndWrongValuesNameTheirPlace)
{
    struct Case
    {
        const char *before;
        const char *after;
        const char *error;
    };
    const Case wrong[] = {
        {"      \"archived\": false,\n", "", R"(accounts[0]: missing key "archived")"},
        {",\n          \"dueDate\": \"2025-02-04T09:00:00Z\"", "", R"(bills[0].history[0]: missing key "dueDate")"},
        {"  \"currency\": \"USD\",\n", "", R"(missing key "currency")"},
        {R"("amount": 89.99,
          "date")",
         R"("amount": "89.99",
          "date")",
         R"(bills[0].history[0].amount: expected a number)"},
        {R"("cleared": true)", R"("cleared": "yes")", R"(transactions[0].cleared: expected true or false)"},
        {R"("income": false,)", R"("income": false, "setAside": 1,)",
         R"(categories[0].setAside: expected true or false)"},
        {R"("version": 1)", R"("setAsidePercent": "25", "version": 1)", "setAsidePercent: expected a number"},
        {R"("kind": "expense")", R"("kind": "gift")", R"(transactions[0].kind: unknown value "gift")"},
        {R"("name": "Visa")", R"("name": 7)", R"(accounts[0].name: expected a string)"},
        {R"("payee": "Café Olé")", "\"payee\": \"Caf\xE9\"", R"(transactions[0].payee: not valid UTF-8)"},
        {R"("accounts": [)", R"("accounts": {"list": [)", "accounts: expected an array"},
        {R"("royalties": [)", R"("royalties": [ "none",)", "royalties[0]: expected an object"},
        {R"("version": 1)", R"("version": 1.5)", "version: expected a whole number"},
        {R"("version": 1)", R"("version": 2147483648)", "version: expected a whole number"},
        {R"("id": "C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C53")", R"("id": "C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C5G")",
         R"(transactions[0].id: not an id "C3A15E2F-7B1D-4E6A-8F0C-2D9B4A7E1C5G")"},
        {R"("date": "2025-03-01T19:45:00Z")", R"("date": "2025-13-01")",
         R"(transactions[0].date: not a date "2025-13-01")"},
        {R"("amount": -45.1)", R"("amount": -1e200)", R"(transactions[0].amount: not an amount "-1e200")"},
        {R"("repeats": "Monthly")", R"("repeats": "On set dates each year")", R"(bills[0]: missing key "yearDates")"},
        {R"("repeats": "Monthly")", R"("repeats": "On set dates each year", "yearDates": "04-31")",
         R"(bills[0].yearDates: not days of the year "04-31")"},
        {R"("repeats": "Every 3 months")", R"("repeats": "On set dates each year", "yearDates": "04-15")",
         "royalties[0]: repeats: a royalty does not come on set dates"},
    };
    for (const Case &c : wrong)
        EXPECT_EQ(errorOf(sampleWith(c.before, c.after)), c.error) << c.before;

    // a lower-case id is still an id, read the same
    const MoneyFile::Decoded lower = decode(sampleWith("6F1C2B9E-0A4D-4C1E-9B7A-3D2E1F0A9B8C\",\n      \"kind\"",
                                                       "6f1c2b9e-0a4d-4c1e-9b7a-3d2e1f0a9b8c\",\n      \"kind\""));
    ASSERT_TRUE(lower.book) << lower.error.toStdString();
    EXPECT_EQ(lower.book->accounts[0].id, visaId);
}

TEST(MoneyFileTest, BrokenJsonIsReportedWithLineAndColumn)
{
    EXPECT_EQ(errorOf("{\n  \"payee\": \"Café\", \"x\": tru\n}"),
              "line 2, column 28: Invalid value."); // characters, not bytes
    EXPECT_EQ(errorOf(sampleFile + "{}"), "line 74, column 1: The document root must not be followed by other values.");
    EXPECT_EQ(errorOf(sampleWith("\"currency\": \"USD\"", "\"currency\": \"USD\" // dollars")),
              "line 44, column 21: Missing a comma or '}' after an object member.");

    // The text is read only up to the view's end: no terminating zero is needed,
    // and what lies beyond is never looked at.
    const std::vector<char> exact(sampleFile.begin(), sampleFile.end());
    const MoneyFile::Decoded whole = MoneyFile::decode(std::string_view(exact.data(), exact.size()));
    EXPECT_TRUE(whole.book) << whole.error.toStdString();
    const MoneyFile::Decoded cut = MoneyFile::decode(std::string_view(exact.data(), exact.size() - 3));
    EXPECT_EQ(cut.error.toStdString(), "line 72, column 15: Missing a comma or '}' after an object member.");
    EXPECT_EQ(errorOf(QByteArray(sampleFile).append('\0').append("{}")),
              "line 74, column 1: The document root must not be followed by other values.");
}

// Under an unknown key, skipped; in place of the book, refused; never closed, a place.
TEST(MoneyFileTest, DeepNestingDoesNotCrash)
{
    const int depth = 100000;
    const QByteArray deep = QByteArray(depth, '[') + QByteArray(depth, ']');
    const MoneyFile::Decoded skipped = decode(sampleWith(R"("version": 1)", "\"version\": 1, \"deep\": " + deep));
    ASSERT_TRUE(skipped.book) << skipped.error.toStdString();
    EXPECT_EQ(*skipped.book, sampleBook());
    const QByteArray objects = QByteArray("{\"a\":").repeated(depth);
    EXPECT_EQ(errorOf(deep), "expected an object");
    EXPECT_EQ(errorOf(objects + "1" + QByteArray(depth, '}')), R"(missing key "accounts")");
    EXPECT_EQ(errorOf(objects), "line 1, column 500001: Invalid value.");
}

// A long list is read in two halves at once, and its plain lines without the JSON
// reader; escaped texts, values only the full reader takes, and problems far into the
// list must come out exactly as one reader going through it would give them.
TEST(MoneyFileTest, ALongListReadsAsOneAndNamesItsProblemsByPlace)
{
    Book book;
    book.accounts = {{visaId, "Visa", AccountKind::credit, d("0"), false}};
    for (int i = 0; i < 40000; ++i) { // about 13 MB
        Transaction t{.date = at("2025-03-01T19:45:00Z"), .accountID = visaId, .amount = d("-4.5"),
                      .payee = QStringLiteral("Cafe %1").arg(i % 300), .category = "Dining out"};
        if (i % 97 == 0)
            t.payee = QStringLiteral("Joe's \"Best\"\t\u00e9 \u0007 \\ %1").arg(i);
        if (i % 13 == 0)
            t.note = "two\nlines";
        if (i % 3 == 0)
            t.importHash = QStringLiteral("%1").arg(i, 64, 16, QLatin1Char('0'));
        book.transactions.push_back(t);
    }
    book.transactions[25000].payee = "Smile";
    book.transactions[30000].kind = TxKind::royalty;
    book.transactions[35000].amount = d("-123.457");
    QByteArray json = MoneyFile::encode(book);
    ASSERT_GT(json.size(), 8 << 20);
    EXPECT_EQ(decode(json).book, book);

    QByteArray nested = json;
    nested.insert(nested.indexOf("\"amount\"", nested.size() * 3 / 4), "\"extra\": [{\"a\": 1\n    },\n    {\n}], ");
    EXPECT_EQ(decode(nested).book, book);

    QByteArray rounded = json;
    rounded.replace("-123.457", "-123.4570000000000000000000000000000000000001");
    EXPECT_EQ(decode(rounded).firstRounded, "transactions[35000].amount");
    // An escape only the full reader takes comes first: the half read ahead ends there.
    EXPECT_EQ(errorOf(QByteArray(json).replace("\"Smile\"", "\"\\uD83D\\uDE00\"").replace("\"royalty\"", "\"gift\"")),
              "transactions[30000].kind: unknown value \"gift\"");
    const qsizetype late = json.indexOf("\"cleared\": false", json.size() * 5 / 8);
    EXPECT_EQ(errorOf(QByteArray(json).replace(late, 16, "\"cleared\" false")).substr(0, 5), "line ");
}
