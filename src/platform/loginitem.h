#pragma once

/// The per-user list of programs that start with the session.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    virtual bool contains() const = 0;  ///< whether this executable is in the list
    virtual void insert() = 0;
    virtual void remove() = 0;
};

/// Puts this program into the list of programs that start at login, or takes it out. Asking for the
/// present state changes nothing; errors are dropped.
void SetAutoRunLogin(bool on);
bool GetAutoRunLogin();
