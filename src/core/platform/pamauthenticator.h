#pragma once

#include "platform/authenticator.h"

// Checks the current user's own account password through PAM.
//
// `service` names the PAM configuration to use; `confDir`, when not empty, is a
// private configuration folder read instead of /etc/pam.d (tests use one with
// pam_permit or pam_deny so they never depend on the machine's own set-up).
class PamAuthenticator final : public Authenticator
{
public:
    explicit PamAuthenticator(QString service = QStringLiteral("coinhall"), QString confDir = {}, QString user = {});

    bool canEvaluate() const override;
    void evaluate(const QString &reason, const QString &secret, std::function<void(bool)> done) override;

    // The check itself, on the calling thread.
    bool check(const QString &secret) const;

private:
    QString m_service;
    QString m_confDir;
    QString m_user;
};
