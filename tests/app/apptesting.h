#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace ExeTesting {

// What one run of the coinhall executable gave.
struct Outcome
{
    int status = -1;
    QString out;
    QString err;
};

// Runs the real coinhall executable in a private root folder: its own data,
// settings and temporary folders, New York time and US English, so that nothing
// it does reaches the user's own folders.
class AppTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_root.isValid());
        ASSERT_TRUE(QDir().mkpath(path(QStringLiteral("tmp"))));
        m_env = QProcessEnvironment::systemEnvironment();
        m_env.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        m_env.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        m_env.insert(QStringLiteral("TMPDIR"), path(QStringLiteral("tmp")));
        m_env.insert(QStringLiteral("TZ"), QStringLiteral("America/New_York"));
        m_env.insert(QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8"));
        m_env.insert(QStringLiteral("LC_ALL"), QStringLiteral("en_US.UTF-8"));
    }

    // A path inside the private root.
    QString path(const QString &name) const { return m_root.path() + QLatin1Char('/') + name; }
    // The application folder the tests give with --data-dir.
    QString books() const { return path(QStringLiteral("books")); }

    Outcome coinhall(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(m_env);
        process.setWorkingDirectory(m_root.path());
        process.start(QStringLiteral(COINHALL_EXE), arguments);
        Outcome run;
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
            return run;
        run.status = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    // Runs a command on the test's application folder.
    Outcome onBooks(const QStringList &arguments)
    {
        return coinhall(QStringList{QStringLiteral("--data-dir"), books()} + arguments);
    }

    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    static QByteArray read(const QString &file)
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }

    // Every file and folder under `folder`, with sizes, to see that nothing changed.
    static QStringList listing(const QString &folder)
    {
        QStringList entries;
        for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            entries.append(info.isDir()
                               ? info.fileName() + QLatin1Char('/') + listing(info.filePath()).join(QLatin1Char(','))
                               : info.fileName() + QLatin1Char(' ') + QString::number(info.size()));
        return entries;
    }

    QTemporaryDir m_root;
    QProcessEnvironment m_env;
};

} // namespace ExeTesting
