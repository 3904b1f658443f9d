#include "apptesting.h"

#include "help/helptexts.h"

namespace {

using namespace ExeTesting;

using SelfTest = AppTest;

TEST_F(SelfTest, PassesEveryCheckEvenWithNoLocaleLeavesNothingBehindAndCountsAFailure)
{
    // The switch wins wherever it stands, even after a command.
    Outcome run = onBooks({"import", "no-such-file.csv", "--account", "Nowhere", "--selftest"});
    EXPECT_EQ(std::tuple(run.status, run.err), std::tuple(0, ""));
    EXPECT_TRUE(run.out.startsWith("QFS Coinhall self-test (Coinhall by Quillfern)\nPASS  parse $1,234.56\n"));
    EXPECT_EQ(run.out.count("\nPASS  "), 18) << qPrintable(run.out);
    EXPECT_TRUE(run.out.endsWith("\nRESULT: ALL 18 CHECKS PASSED\n"));
    EXPECT_EQ(listing(m_root.path()), QStringList{"tmp/"}) << "no books, data, settings or temporary files";

    // Started from a bare environment (LANG unset, the C locale) money still reads "$1,234.50".
    m_env.remove("LANG");
    m_env.insert("LC_ALL", "C");
    run = coinhall({"--selftest"});
    EXPECT_EQ(std::tuple(run.status, run.out.endsWith("RESULT: ALL 18 CHECKS PASSED\n")), std::tuple(0, true))
        << qPrintable(run.out);

    // A temporary "folder" that is a plain file: the sample bank file cannot be made,
    // and its four checks give way to one failure.
    m_env.insert("TMPDIR", write("not-a-folder", "x"));
    run = coinhall({"--selftest"});
    EXPECT_EQ(std::tuple(run.status, run.out.count("\nPASS  "), run.out.count("\nFAIL  ")), std::tuple(1, 14, 1));
    EXPECT_TRUE(run.out.contains("\nFAIL  CSV file opens\n"));
    EXPECT_TRUE(run.out.endsWith("\nRESULT: 1 CHECK(S) FAILED\n"));
}

// Beside what the self-test checks of them (the credit, its link, the display name):
TEST(HelpTexts, ElevenChaptersThatSayWhatIsTrueOnThisComputer)
{
    QStringList titles;
    for (const HelpChapter &chapter : helpChapters()) {
        titles.append(chapter.title);
        EXPECT_FALSE(chapter.symbol.isEmpty()) << qPrintable(chapter.title);
#ifndef Q_OS_MACOS
        for (const char *word : {"Mac", "Touch ID", "Library", "Command"})
            EXPECT_FALSE(chapter.text.contains(word)) << qPrintable(chapter.title) << " says " << word;
#endif
    }
    EXPECT_EQ(std::tuple(titles.size(), titles.last(), QFSCredit::website().host(), QFSCredit::fullName()),
              std::tuple(11, "About QFS", "quillfern.com", "Coinhall by Quillfern"));
}

} // namespace
