#pragma once

/// The user's list of programs that start with the session.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    virtual bool contains() const = 0;  ///< whether this executable is in the list
    virtual void insert() = 0;
    virtual void remove() = 0;
};

/// Adds this program to the list of programs that start at login, or removes it. Setting the
/// present state changes nothing; errors are ignored.
void SetAutoRunLogin(bool on);
bool GetAutoRunLogin();
