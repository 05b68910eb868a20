// The installed event log.
#include "core/EventLog.h"

#include "core/Secrets.h"

static std::shared_ptr<EventLog> &installedLog()
{
    static std::shared_ptr<EventLog> log;
    return log;
}

void installEventLog(std::shared_ptr<EventLog> log)
{
    // The log before ends after its place was taken: its end may log.
    const auto before = std::exchange(installedLog(), std::move(log));
    if (!installedLog())
        secrets().forget();
}

std::shared_ptr<EventLog> eventLog()
{
    return installedLog();
}

void logEvent(const QString &source, const QString &text)
{
    // A copy keeps the log for the length of the call, whatever its display does.
    if (const auto log = eventLog())
        log->LogEvent(source, secrets().masked(text), true, true);
}
