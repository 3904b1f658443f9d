// The Store's bank-file operations: importing lines and exporting the Book.
#include "bankfiles/importer.h"
#include "bankfilestesting.h"
#include "core/store/storetesting.h"

#include <QSignalSpy>

namespace {

using BankFilesStore = StoreTest;

} // namespace

TEST_F(BankFilesStore, ImportAppendsSortsWritesOnceAndReports)
{
    EXPECT_TRUE(store.add(line(checking, "2024-03-06T12:00:00Z", "-1", "Typed")));
    const CSVImporter importer = csv("Date,Description,Amount\n3/5/2024,Older,-2\n3/7/2024,Newer,10\n");
    const auto result = importer.transactions(checking.id, store.book().transactions, bySign);

    QSignalSpy changed(&store, &Store::bookChanged);
    EXPECT_TRUE(store.importTransactions(result.newTransactions, temp.filePath(QStringLiteral("March.csv"))));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(payees(), (std::vector<QString>{"Newer", "Typed", "Older"}));
    EXPECT_EQ(store.status(), "Imported 2 transactions from March.csv.");
    EXPECT_EQ(onDisk(), store.book());
}

// Dates are the UTC calendar day: 04:30 UTC on 2 March is still 1 March in New York.
TEST_F(BankFilesStore, ExportWritesEveryLineOldestFirstWithQuotedTextsAndUtcDays)
{
    Account closed{newId(), QStringLiteral("Old \"Card\""), AccountKind::credit, {}, true};
    EXPECT_TRUE(store.save(closed));
    EXPECT_TRUE(store.add({newId(), at("2025-03-02T04:30:00Z"), checking.id, d("-1234.50"), "Joe's \"Best\" Diner, LLC",
                           "Groceries", "two\nlines, \"quoted\"", true}));
    // The second line's account was deleted.
    EXPECT_TRUE(store.add({newId(), at("2025-01-15T17:00:00Z"), newId(), d("50.00"), "Client", "Café & more", "", false,
                           TxKind::deposit}));
    EXPECT_TRUE(store.add({newId(), at("2025-02-01T00:00:00Z"), closed.id, d("0.99"), "Refund", "Groceries", "", false,
                           TxKind::royalty}));

    const QString path = temp.filePath(QStringLiteral("Coinhall transactions.csv"));
    ASSERT_TRUE(store.exportCSV(path));
    EXPECT_EQ(store.status(), "Saved Coinhall transactions.csv.");
    EXPECT_EQ(readAll(path),
              QByteArray("Date,Account,Payee,Category,Amount,Type,Cleared,Note\n"
                         "2025-01-15,\"\",\"Client\",\"Caf\xC3\xA9 & more\",50,deposit,no,\"\"\n"
                         "2025-02-01,\"Old \"\"Card\"\"\",\"Refund\",\"Groceries\",0.99,royalty,no,\"\"\n"
                         "2025-03-02,\"Main checking\",\"Joe's \"\"Best\"\" Diner, LLC\",\"Groceries\","
                         "-1234.5,expense,yes,\"two\nlines, \"\"quoted\"\"\"\n"));
}

// An export that fails: faults_test.cpp (a full disk, a read-only folder).
TEST_F(BankFilesStore, ExportReplacesWhole)
{
    const QString path = temp.filePath(QStringLiteral("out.csv"));
    writeAll(path, QByteArray(4096, 'x'));
    // A file of the user's under the name the export is written to first is left alone.
    writeAll(path + QStringLiteral(".saving"), "my notes");
    ASSERT_TRUE(store.exportCSV(path));
    EXPECT_EQ(readAll(path), QByteArray("Date,Account,Payee,Category,Amount,Type,Cleared,Note\n"));
    EXPECT_EQ(readAll(path + QStringLiteral(".saving")), QByteArray("my notes"));
    EXPECT_EQ(QDir(temp.path()).entryList({QStringLiteral("out.csv*")}, QDir::Files),
              (QStringList{"out.csv", "out.csv.saving"}));
}
