// A password of the program's own, kept in the user's settings store exactly as typed. No window
// reaches it: it is kept as a ready component.
#pragma once

#include <QString>

class clsPasswordHandler
{
public:
    // Lets the user set a password of at least 6 characters, typed twice. False when it was
    // cancelled, too short or differed; nothing is stored then.
    bool CreateNewPassword();

    // Asks for the password. True grants access. Without a stored one the user may set one; "No"
    // grants access, for there is nothing to protect.
    bool getPassword();

private:
    bool PasswordExists(); // reads the store
    bool checkPassword() const;

    QString m_password;
};
