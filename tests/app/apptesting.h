#pragma once

#include "helpers/testing.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace ExeTesting {

// What one run of the coinhall executable gave; status -1 when it did not end normally.
struct Outcome
{
    int status = -1;
    QString out;
    QString err;
    auto all() const { return std::tuple(status, out, err); }
};

// Runs the real coinhall executable in a private root folder: its own data,
// settings and temporary folders, New York time and US English, so that nothing
// it does reaches the user's own folders.
class AppTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_root.isValid() && QDir().mkpath(path("tmp")));
        m_env = QProcessEnvironment::systemEnvironment();
        const std::pair<const char *, QString> variables[] = {
            {"XDG_DATA_HOME", path("data")}, {"XDG_CONFIG_HOME", path("config")},
            {"TMPDIR", path("tmp")},         {"TZ", "America/New_York"},
            {"LANG", "en_US.UTF-8"},         {"LC_ALL", "en_US.UTF-8"}};
        for (const auto &[name, value] : variables)
            m_env.insert(name, value);
    }

    QString path(const QString &name) const { return m_root.filePath(name); }
    // The application folder the tests give with --data-dir.
    QString books() const { return path("books"); }

    Outcome coinhall(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(m_env);
        process.setWorkingDirectory(m_root.path());
        process.start(COINHALL_EXE, arguments);
        Outcome run;
        if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
            run = {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                   QString::fromUtf8(process.readAllStandardError())};
        return run;
    }
    // A command on the test's application folder.
    Outcome onBooks(const QStringList &arguments) { return coinhall(QStringList{"--data-dir", books()} + arguments); }

    // Writes a file in the private root; gives its path.
    QString write(const QString &name, const QByteArray &bytes)
    {
        writeAll(path(name), bytes);
        return path(name);
    }

    // Every file and folder under `folder`, with sizes, to see that nothing changed.
    static QStringList listing(const QString &folder)
    {
        QStringList entries;
        for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            entries.append(info.isDir() ? info.fileName() + '/' + listing(info.filePath()).join(',')
                                        : info.fileName() + ' ' + QString::number(info.size()));
        return entries;
    }

    QTemporaryDir m_root;
    QProcessEnvironment m_env;
};

} // namespace ExeTesting
