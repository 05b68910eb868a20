// Why a command of the console tool was not done, and the exit code that tells scripts.
#pragma once

#include <QString>

#include <exception>

enum class Exit {
    Done = 0,
    Refused = 1,  // by the unit, or answered badly
    WrongUse = 2, // of the command line
    NoPort = 3,   // not there, no access, in use
    NoAnswer = 4,
};

// Raised by the tool's own code alone, never within a call of the unit.
class Failure : public std::exception
{
public:
    Failure(Exit code, const QString &text) : m_code(code), m_text(text), m_what(text.toUtf8()) {}

    Exit code() const { return m_code; }
    QString text() const { return m_text; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    Exit m_code;
    QString m_text;
    QByteArray m_what;
};

// The system asked the program to end: what was not done by then is not done.
inline Failure interrupted()
{
    return {Exit::Refused, QStringLiteral("Interrupted.")};
}
