// The event log as everybody else knows it: its writers, its display and its file. Whoever starts
// the program installs the log; without one events go nowhere.
#pragma once

#include <QString>

#include <memory>

class EventLog
{
public:
    virtual ~EventLog() = default;

    virtual void LogEvent(const QString &source, const QString &text, bool toFile,
                          bool toDisplay) = 0;
    // False until the log can show something.
    virtual bool hasDisplay() const = 0;
    // Writes its events to a file in this folder from now on. Empty, or why it cannot; a log
    // without files has nothing to start.
    virtual QString startFileLogging([[maybe_unused]] const QString &folder) { return {}; }
};

// Null takes the log away, and with it the passwords that it kept out.
void installEventLog(std::shared_ptr<EventLog> log);
std::shared_ptr<EventLog> eventLog();

// Writes an event to the installed log, for its file and its display, without passwords.
void logEvent(const QString &source, const QString &text);

// Where events are shown: the IO monitor.
class EventDisplay
{
public:
    virtual ~EventDisplay() = default;

    virtual void Display(const QString &source, const QString &text) = 0;
    // The check mark of "Log events to a file".
    virtual bool isFileLoggingChecked() const = 0;
    // The log cannot write its file any more: the mark goes.
    virtual void fileLoggingEnded() {}
};

// The open log file.
class LogFile
{
public:
    virtual ~LogFile() = default;

    virtual void setPathname(const QString &name) = 0;
    virtual void OpenForOutput() = 0; // overwrites
    virtual void OpenForAppend() = 0;
    // Writes the text and a line break.
    virtual void Line_Output(const QString &text) = 0;
    virtual void closeFile() = 0;
    // Result of the last operation, and why it failed.
    virtual bool success() const = 0;
    virtual QString failure() const = 0;
    virtual qint64 size() const = 0; // bytes; of the open file
};
