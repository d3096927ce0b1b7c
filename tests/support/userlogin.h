#pragma once

#include <host/userrights.h>

/// Somebody who is logged in for as long as this exists, with the rights that he is given.
class UserLogin
{
public:
    static constexpr UserRights::Rights everything = UserRights::Rights(QFlag(0xff));

    explicit UserLogin(UserRights::Rights rights = everything) { change(rights); }
    ~UserLogin() { UserRights::Instance()->SetUser(QString(), {}); }
    UserLogin(const UserLogin&) = delete;
    UserLogin& operator=(const UserLogin&) = delete;

    void change(UserRights::Rights rights) { UserRights::Instance()->SetUser(QStringLiteral("somebody"), rights); }
};
