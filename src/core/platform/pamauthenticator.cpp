#include "platform/pamauthenticator.h"

#include <QFile>

#include <security/pam_appl.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

// The login name of the effective user, empty if it has none.
QString currentUser()
{
    const passwd *entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

// Wipes and frees the first `count` answers and their array.
void freeReplies(pam_response *replies, int count)
{
    for (int i = 0; i < count; ++i) {
        if (replies[i].resp) {
            explicit_bzero(replies[i].resp, std::strlen(replies[i].resp));
            std::free(replies[i].resp);
        }
    }
    std::free(replies);
}

// Answers every prompt with the secret (`appData`, null when there is none). Info and
// error texts are dropped: the lock overlay has nowhere to show them.
int converse(int count, const pam_message **messages, pam_response **replies, void *appData)
{
    if (count <= 0 || count > PAM_MAX_NUM_MSG)
        return PAM_CONV_ERR;
    auto *answers = static_cast<pam_response *>(std::calloc(count, sizeof(pam_response)));
    if (!answers)
        return PAM_BUF_ERR;
    const auto *secret = static_cast<const char *>(appData);
    for (int i = 0; i < count; ++i) {
        const int style = messages[i]->msg_style;
        if (style == PAM_TEXT_INFO || style == PAM_ERROR_MSG)
            continue;
        const bool prompt = style == PAM_PROMPT_ECHO_OFF || style == PAM_PROMPT_ECHO_ON;
        if (prompt && secret && (answers[i].resp = strdup(secret)))
            continue;
        freeReplies(answers, i);
        return PAM_CONV_ERR;
    }
    *replies = answers;
    return PAM_SUCCESS;
}

// Opens a transaction for `service` and `user`, or returns null. `conv` must outlive it.
pam_handle_t *startPam(const QString &service, const QString &confDir, const QString &user, const pam_conv *conv)
{
    if (user.isEmpty())
        return nullptr;
    const QByteArray serviceName = service.toUtf8();
    const QByteArray userName = user.toLocal8Bit();
    pam_handle_t *handle = nullptr;
    const int status = confDir.isEmpty() ? pam_start(serviceName.constData(), userName.constData(), conv, &handle)
                                         : pam_start_confdir(serviceName.constData(), userName.constData(), conv,
                                                             QFile::encodeName(confDir).constData(), &handle);
    if (status == PAM_SUCCESS)
        return handle;
    if (handle)
        pam_end(handle, status);
    return nullptr;
}

} // namespace

PamAuthenticator::PamAuthenticator(QString service, QString confDir, QString user)
    : m_service(std::move(service))
    , m_confDir(std::move(confDir))
    , m_user(user.isEmpty() ? currentUser() : std::move(user))
{}

bool PamAuthenticator::canEvaluate() const
{
    const pam_conv conv{converse, nullptr};
    pam_handle_t *handle = startPam(m_service, m_confDir, m_user, &conv);
    if (!handle)
        return false;
    pam_end(handle, PAM_SUCCESS);
    return true;
}

void PamAuthenticator::evaluate(const QString &reason, const QString &secret, std::function<void(bool)> done)
{
    Q_UNUSED(reason); // PAM has no place to show it
    // The thread holds its own copy of this object, which may be gone before PAM answers.
    std::thread([self = *this, secret, done = std::move(done)] { done(self.check(secret)); }).detach();
}

bool PamAuthenticator::check(const QString &secret) const
{
    QByteArray typed = secret.toUtf8();
    const pam_conv conv{converse, typed.data()};
    bool ok = false;
    if (pam_handle_t *handle = startPam(m_service, m_confDir, m_user, &conv)) {
        int status = pam_authenticate(handle, 0);
        if (status == PAM_SUCCESS)
            status = pam_acct_mgmt(handle, 0);
        ok = status == PAM_SUCCESS;
        pam_end(handle, status);
    }
    explicit_bzero(typed.data(), typed.size());
    return ok;
}

// Without an /etc/pam.d/coinhall, PAM uses the "other" service, which on Debian checks
// the account password.
std::unique_ptr<Authenticator> makePlatformAuthenticator()
{
    return std::make_unique<PamAuthenticator>(QStringLiteral("coinhall"));
}
