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
};

// Null takes the log away.
void installEventLog(std::shared_ptr<EventLog> log);
std::shared_ptr<EventLog> eventLog();

// Writes an event to the installed log, for its file and its display.
void logEvent(const QString &source, const QString &text);

// Where events are shown: the IO monitor.
class EventDisplay
{
public:
    virtual ~EventDisplay() = default;

    virtual void Display(const QString &source, const QString &text) = 0;
    // The check mark of "Log events to a file".
    virtual bool isFileLoggingChecked() const = 0;
};

// The open log file.
class LogFile
{
public:
    virtual ~LogFile() = default;

    virtual void setPathname(const QString &name) = 0;
    virtual void OpenForOutput() = 0;
    // Writes the text and a line break.
    virtual void Line_Output(const QString &text) = 0;
    virtual void closeFile() = 0;
    // Result of the last operation.
    virtual bool success() const = 0;
};
