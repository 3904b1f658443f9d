#pragma once

#include <QString>

#include <functional>
#include <memory>

// Asks whether the person at the computer is its owner, before the books are shown.
class Authenticator
{
public:
    virtual ~Authenticator() = default;

    // False when this computer has no way to check (no PAM, no password): then the
    // books open unlocked rather than locking their owner out.
    virtual bool canEvaluate() const = 0;

    // Checks `secret` (the account password typed into the lock overlay). `done` is
    // called exactly once, possibly on another thread, with whether it succeeded.
    virtual void evaluate(const QString &reason, const QString &secret, std::function<void(bool)> done) = 0;
};

// The authenticator of this platform: PAM for the current user on Linux.
std::unique_ptr<Authenticator> makePlatformAuthenticator();
