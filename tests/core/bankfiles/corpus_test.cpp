// Realistic bank downloads from tests/data/bank, each with the import it must give
// (dates in New York time, the test programs' zone).
#include "bankfiles/autocategory.h"
#include "bankfilestesting.h"

#include <QFile>

namespace {

struct Expected
{
    QStringList headers;
    std::string mapping;
    std::string counts;
    std::vector<std::string> lines;
};

Expected readExpected(const QString &path)
{
    Expected e;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ADD_FAILURE() << "cannot read " << path.toStdString();
        return e;
    }
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        QStringList cells = line.split(u'\t');
        const QString tag = cells.takeFirst();
        if (tag == QLatin1String("# headers"))
            e.headers = cells;
        else if (tag == QLatin1String("# mapping"))
            e.mapping = cells.join(u' ').toStdString();
        else if (tag == QLatin1String("# counts"))
            e.counts = cells.join(u' ').toStdString();
        else
            e.lines.push_back(line.toStdString());
    }
    return e;
}

class BankCorpus : public ::testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(BankCorpus, ImportsAsExpected)
{
    const QString base = QStringLiteral(COINHALL_TEST_DATA "/bank/") + QString::fromUtf8(GetParam());
    const Expected expected = readExpected(base + QStringLiteral(".expected.tsv"));
    const std::optional<CSVImporter> importer = CSVImporter::fromFile(base + QStringLiteral(".csv"));
    ASSERT_TRUE(importer);
    EXPECT_EQ(importer->headers(), expected.headers);
    EXPECT_EQ(describe(importer->mapping()), expected.mapping);

    const auto result = importer->transactions(QUuid::createUuid(), {}, AutoCategory::Guesser({}));
    EXPECT_EQ("new=" + std::to_string(result.newTransactions.size()) + " skipped=" + std::to_string(result.skipped) +
                  " bad=" + std::to_string(result.bad),
              expected.counts);
    std::vector<std::string> lines;
    for (const Transaction &t : result.newTransactions) {
        lines.push_back(local(t.date) + "\t" + t.payee.toStdString() + "\t" + t.amount.toStdString() + "\t" +
                        t.category.toStdString());
        EXPECT_EQ(t.kind, t.amount.signum() > 0 ? TxKind::deposit : TxKind::expense) << lines.back();
    }
    EXPECT_EQ(lines, expected.lines);
}

INSTANTIATE_TEST_SUITE_P(Files, BankCorpus,
                         ::testing::Values("harbor_checking", "maple_card", "riverbend_savings", "pinecone_business",
                                           "lumen_pay", "thistle_uk"));
