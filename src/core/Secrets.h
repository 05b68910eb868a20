// Keeps passwords out of what the program tells: the log, its display and file, and its boxes. It
// remembers what was sent as a password in this run, in memory alone.
#pragma once

#include <QString>
#include <QStringList>

class Secrets
{
public:
    // Remembers the password of a PASSWORD command, any case. True when the text is such a command,
    // also one without a password.
    bool noteCommand(const QString &text);

    // From "PASSWORD " to the end of a line becomes "PASSWORD ****", and so does, as "****", every
    // password that was sent. One of less than four characters is masked where it stands alone: in
    // the middle of words it would be told by what is missing.
    QString masked(const QString &text) const;
    bool occursIn(const QString &text) const { return masked(text) != text; }

    // Where the end of a text whose rest is still to come may be the beginning of a password; the
    // text's size when it is not.
    qsizetype unfinishedAt(const QString &text) const;

    void forget() { m_passwords.clear(); }

private:
    QStringList m_passwords; // the longest first
};

// The one set of the run. It is emptied when the log is taken away.
Secrets &secrets();
