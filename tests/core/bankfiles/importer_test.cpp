// Turning bank rows into transactions: amounts, fingerprints, duplicates and
// categories.
#include "bankfiles/autocategory.h"
#include "bankfiles/importer.h"
#include "bankfilestesting.h"

namespace {

const QUuid account{QStringLiteral("0f9c1a52-7d3b-4e8a-9b61-2c5d8e0f4a17")};

std::vector<std::string> summary(const std::vector<Transaction> &transactions)
{
    std::vector<std::string> lines;
    for (const Transaction &t : transactions)
        lines.push_back(local(t.date) + " " + t.payee.toStdString() + " " + t.amount.toStdString() + " " +
                        t.category.toStdString() + " " + rawValue(t.kind).toStdString());
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

// The day is the UTC day number, truncated toward zero.
TEST(Fingerprint, Sha256OfAccountDayAmountAndLowerCasePayee)
{
    const Instant march5 = at("2024-03-05T05:00:00Z"); // local midnight in New York
    EXPECT_EQ(BankImport::fingerprintText(account, march5, d("-12.50"), QStringLiteral("Joe's Diner")),
              "0F9C1A52-7D3B-4E8A-9B61-2C5D8E0F4A17|19787|-12.5|joe's diner");
    EXPECT_EQ(BankImport::importHash(account, march5, d("-12.50"), QStringLiteral("Joe's Diner")),
              "49a3d0808396f0d2255b0a448c11b5601adb2f5a6fb09da6085d1af519712f7a");
    EXPECT_EQ(BankImport::dayNumber(at("1970-01-01T23:59:59Z")), 0);
    EXPECT_EQ(BankImport::dayNumber(at("1969-12-31T12:00:00Z")), 0);
    EXPECT_EQ(BankImport::dayNumber(at("1969-12-30T12:00:00Z")), -1);
}

TEST(Conversion, GoodRowsBecomeClearedImportedLinesAndTheRestCountAsBad)
{
    const CSVImporter importer = csv("Date,Description,Amount\n"
                                     "03/05/2024,  Joe's Diner ,$-12.50\n"
                                     "not a date,BAD,1\n"
                                     "03/06/2024,Zero,0.00\n"
                                     "03/06/2024,,\"1,200.00\"\n"
                                     "03/07/2024,No amount\n"
                                     "03/08/2024,Letters,abc\n");
    const auto result = importer.transactions(account, {}, bySign);
    EXPECT_EQ(summary(result.newTransactions),
              (Lines{"2024-03-05 00:00 Joe's Diner -12.5 Out expense", "2024-03-06 00:00 Imported 1200 In deposit"}));
    EXPECT_EQ(std::tuple(result.skipped, result.bad), std::tuple(0, 4));
    for (const Transaction &t : result.newTransactions)
        EXPECT_EQ(std::tuple(t.accountID, t.note, t.cleared, t.transferPairID, t.importHash),
                  std::tuple(account, "Imported", true, std::nullopt,
                             BankImport::importHash(account, t.date, t.amount, t.payee)));
    EXPECT_NE(result.newTransactions[0].id, result.newTransactions[1].id);

    CSVImporter noDates = importer;
    noDates.setMapping({std::nullopt, 1, 2, std::nullopt, std::nullopt, std::nullopt});
    EXPECT_EQ(noDates.transactions(account, {}, bySign).bad, 6);
}

TEST(Conversion, DebitAndCreditColumnsWhenThereIsNoUsableAmount)
{
    const CSVImporter importer = csv("Date,Description,Amount,Debit,Credit\n"
                                     "3/1/2024,Card,,25.00,\n"
                                     "3/2/2024,Card signed,,-25.00,\n"
                                     "3/3/2024,Refund,,,100\n"
                                     "3/4/2024,Nothing,,0.00,0.00\n"
                                     "3/5/2024,Both,,(10),30\n"
                                     "3/6/2024,Amount wins,7,99,\n"
                                     "3/7/2024,Not a number,n/a,3.10,\n");
    const auto result = importer.transactions(account, {}, bySign);
    EXPECT_EQ(summary(result.newTransactions),
              (Lines{"2024-03-01 00:00 Card -25 Out expense", "2024-03-02 00:00 Card signed -25 Out expense",
                     "2024-03-03 00:00 Refund 100 In deposit", "2024-03-05 00:00 Both 20 In deposit",
                     "2024-03-06 00:00 Amount wins 7 In deposit", "2024-03-07 00:00 Not a number -3.1 Out expense"}));
    EXPECT_EQ(result.bad, 1);

    CSVImporter noAmount = importer;
    CSVImporter::Mapping mapping = importer.mapping();
    mapping.amount.reset();
    noAmount.setMapping(mapping);
    EXPECT_EQ(noAmount.transactions(account, {}, bySign).newTransactions.at(4).amount, d("-99"));
}

// Two equal lines of one download are two purchases; lines already in the account
// are counted off, so a second import adds nothing.
TEST(Conversion, LinesAlreadyInTheAccountAreCountedOff)
{
    const CSVImporter importer = csv("Date,Description,Amount\n"
                                     "3/5/2024,Corner Cafe,-4.50\n"
                                     "3/5/2024,CORNER CAFE,-4.5\n" // same day, amount and payee
                                     "3/5/2024,Corner Cafe,-4.51\n"
                                     "3/6/2024,Corner Cafe,-4.50\n");
    const auto first = importer.transactions(account, {}, bySign);
    EXPECT_EQ(std::tuple(first.newTransactions.size(), first.skipped), std::tuple(4u, 0));

    const auto again = importer.transactions(account, first.newTransactions, bySign);
    EXPECT_EQ(std::tuple(again.newTransactions.size(), again.skipped, again.bad), std::tuple(0u, 4, 0));

    const auto elsewhere = importer.transactions(QUuid::createUuid(), first.newTransactions, bySign);
    EXPECT_EQ(elsewhere.newTransactions.size(), 4u);

    std::vector<Transaction> one = first.newTransactions;
    one.erase(one.begin()); // one of the two cafe lines of the 5th is in the account
    const auto missing = importer.transactions(account, one, bySign);
    EXPECT_EQ(std::tuple(missing.newTransactions.size(), missing.skipped), std::tuple(1u, 3));
}

TEST(Conversion, CategoryFromTheFileOrTheCategoriser)
{
    const CSVImporter importer = csv("Date,Description,Amount,Category\n"
                                     "3/5/2024,Cafe,-4.50, Dining \n"
                                     "3/6/2024,Cafe,-4.75,\n"
                                     "3/7/2024,Shop,12, \n"
                                     "3/8/2024,Cafe,-1,Made Up Category\n");
    std::vector<std::string> asked;
    const auto result = importer.transactions(account, {}, [&](const QString &payee, const Decimal &amount) {
        asked.push_back(payee.toStdString() + " " + amount.toStdString());
        return QStringLiteral("Guessed");
    });
    EXPECT_EQ(summary(result.newTransactions),
              (Lines{"2024-03-05 00:00 Cafe -4.5 Dining expense", "2024-03-06 00:00 Cafe -4.75 Guessed expense",
                     "2024-03-07 00:00 Shop 12 Guessed deposit", "2024-03-08 00:00 Cafe -1 Made Up Category expense"}));
    EXPECT_EQ(asked, (Lines{"Cafe -4.75", "Shop 12"}));
}

TEST(Conversion, FlipNegatesAndSetsKindButKeepsTheFingerprint)
{
    const CSVImporter importer = csv("Date,Description,Amount\n3/5/2024,Card,42.10\n3/6/2024,Payment,-42.10\n");
    auto lines = importer.transactions(account, {}, bySign).newTransactions;
    const auto before = lines;
    BankImport::flipSigns(lines);
    // The category stays as guessed from the amount the file gave.
    EXPECT_EQ(summary(lines),
              (Lines{"2024-03-05 00:00 Card -42.1 In expense", "2024-03-06 00:00 Payment 42.1 Out deposit"}));
    EXPECT_EQ(lines[0].importHash, before[0].importHash);
}

TEST(AutoCategory, HistoryFirstThenRulesThenSign)
{
    const std::vector<Transaction> history{{.payee = "Transfer to Savings", .category = "Transfer"},
                                           {.payee = "joe's diner", .category = "Dining out"},
                                           {.payee = "JOE'S DINER", .category = "Groceries"},
                                           {.payee = "DistroKid payout", .category = "Transfer"},
                                           {.payee = "Netflix", .category = "Entertainment"}};
    const AutoCategory::Guesser guesser(history);
    auto both = [&](const char *payee, const char *amount) {
        const QString viaGuess = AutoCategory::guess(QString::fromUtf8(payee), d(amount), history);
        EXPECT_EQ(viaGuess, guesser(QString::fromUtf8(payee), d(amount))) << payee;
        return viaGuess.toStdString();
    };
    EXPECT_EQ(both("Joe's Diner", "-18"), "Dining out"); // the first (newest) line wins
    EXPECT_EQ(both("NETFLIX", "-15.49"), "Entertainment");
    EXPECT_EQ(both("DistroKid payout", "12"), "Royalties"); // a "Transfer" line is passed over
    EXPECT_EQ(both("Transfer to Savings", "-100"), "Other spending");
    EXPECT_EQ(both("Joe's Bistro", "-18"), "Other spending");
    EXPECT_EQ(both("Joe's Bistro", "18"), "Other income");
    EXPECT_EQ(both("Joe's Bistro", "0"), "Other spending");

    EXPECT_EQ(AutoCategory::guess(QStringLiteral("Joe's Diner"), d("-18"), {}), "Other spending");
    EXPECT_EQ(AutoCategory::guess(QStringLiteral("DistroKid payout"), d("5"), {}), "Royalties");
}

TEST(AutoCategory, FirstMatchingKeywordAnywhereInThePayee)
{
    auto rule = [](const char *payee) {
        return AutoCategory::guess(QString::fromUtf8(payee), d("-1"), {}).toStdString();
    };
    EXPECT_EQ(rule("STRIPE ROYALTY PAYOUT"), "Royalties"); // row 1 before "stripe"
    EXPECT_EQ(rule("Stripe payout"), "Software sales");
    EXPECT_EQ(rule("Parent teacher assoc"), "Rent / mortgage"); // "rent" inside a word
    EXPECT_EQ(rule("Meta Platforms"), "Marketing & ads");
    EXPECT_EQ(rule("Metallica fan club"), "Other spending"); // "meta " needs its blank
}
