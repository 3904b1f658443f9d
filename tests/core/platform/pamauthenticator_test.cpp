#include "helpers/testing.h"
#include "platform/pamauthenticator.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <tuple>

using namespace std::chrono_literals;

namespace {

// A private PAM configuration folder, so no test reads the machine's /etc/pam.d.
class PamConfig
{
public:
    void add(const QString &service, const QByteArray &lines) { writeAll(m_dir.filePath(service), lines); }

    QString script(const QString &name, const QByteArray &body)
    {
        writeAll(m_dir.filePath(name), "#!/bin/sh\n" + body);
        QFile::setPermissions(m_dir.filePath(name), QFile::permissions(m_dir.filePath(name)) | QFile::ExeOwner);
        return m_dir.filePath(name);
    }

    PamAuthenticator authenticator(const QString &service) const { return PamAuthenticator(service, m_dir.path()); }

private:
    QTemporaryDir m_dir;
};

} // namespace

TEST(PamAuthenticator, AnswersThePasswordPromptWithTheTypedSecret)
{
    // pam_exec asks for the password through the conversation and pipes it,
    // NUL-terminated, to the script.
    PamConfig config;
    const QString script = config.script("secret.sh", "pw=$(tr -d '\\000')\n[ \"$pw\" = 'Grüße 42' ]\n");
    config.add("exec",
               "auth required pam_exec.so expose_authtok " + script.toUtf8() + "\naccount required pam_permit.so\n");
    const PamAuthenticator authenticator = config.authenticator("exec");

    EXPECT_TRUE(authenticator.check("Grüße 42"));
    EXPECT_FALSE(authenticator.check("Grusse 42"));
    EXPECT_FALSE(authenticator.check(""));
}

TEST(PamAuthenticator, CanEvaluateWhenPamHasAServiceToRun)
{
    PamConfig config;
    EXPECT_FALSE(config.authenticator("coinhall").canEvaluate());
    EXPECT_FALSE(PamAuthenticator("coinhall", "/nonexistent/pam.d").canEvaluate());

    config.add("other", "auth required pam_deny.so\n");
    EXPECT_TRUE(config.authenticator("coinhall").canEvaluate());
}

// Both ways of asking, each with the four outcomes a service can have.
TEST(PamAuthenticator, AcceptsOnlyWhenAuthenticationAndAccountBothSucceedAndEvaluateRepliesOnceFromAWorker)
{
    PamConfig config;
    const std::tuple<const char *, QByteArray, bool> services[] = {
        {"permit", "auth required pam_permit.so\naccount required pam_permit.so\n", true},
        {"deny", "auth required pam_deny.so\naccount required pam_permit.so\n", false},
        {"expired", "auth required pam_permit.so\naccount required pam_deny.so\n", false},
        {"broken", "auth required pam_does_not_exist.so\naccount required pam_permit.so\n", false}};
    for (const auto &[service, lines, expected] : services) {
        SCOPED_TRACE(service);
        config.add(service, lines);
        EXPECT_EQ(config.authenticator(service).check("anything"), expected);

        std::promise<void> returned;
        std::promise<bool> reply;
        std::atomic<int> calls = 0;
        std::atomic<bool> sawReturn = false;
        std::thread::id replyThread;
        auto authenticator = std::make_unique<PamAuthenticator>(config.authenticator(service));

        // The reply waits for evaluate() to return: a blocking evaluate() would time out here.
        auto evaluateReturned = returned.get_future().share();
        authenticator->evaluate("Open your Coinhall", "secret", [&, evaluateReturned](bool ok) {
            sawReturn = evaluateReturned.wait_for(5s) == std::future_status::ready;
            replyThread = std::this_thread::get_id();
            if (++calls == 1)
                reply.set_value(ok);
        });
        authenticator.reset(); // the pending check must not depend on this object
        returned.set_value();

        auto result = reply.get_future();
        ASSERT_EQ(result.wait_for(10s), std::future_status::ready);
        EXPECT_EQ(result.get(), expected);
        EXPECT_TRUE(sawReturn);
        EXPECT_NE(replyThread, std::this_thread::get_id());
        std::this_thread::sleep_for(100ms);
        EXPECT_EQ(calls, 1);
    }
}
