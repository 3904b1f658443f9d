#pragma once
// Small constructors, file helpers and a wait shared by the C++ tests, so a test carries its
// input inline and reads short: d("12.34"), at("2025-03-15T12:00:00Z"), local(2025, 3, 15).

#include "model/decimal.h"
#include "model/instant.h"
#include "platform/notifier.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QString>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <string_view>

inline Decimal d(const char *text)
{
    return *Decimal::fromString(std::string_view(text));
}

inline Instant at(const char *iso)
{
    return *Instant::fromIso(std::string_view(iso));
}

inline Instant local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return Instant::fromDateTime(QDateTime(QDate(year, month, day), QTime(hour, minute, second)));
}

inline QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

class NoNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

// Runs the event loop until done() holds or ms have passed; says whether it holds.
inline bool waitFor(const std::function<bool()> &done, int ms = 3000)
{
    QDeadlineTimer deadline(ms);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
    return done();
}
