// The watch: lock state and frequency, a line an interval.
#include "core/TextNumbers.h"
#include "core/TimeStamp.h"
#include "core/pauseit.h"
#include "ctl/Commands.h"
#include "ctl/Print.h"
#include "ctl/Property.h"
#include "ctl/UnitLink.h"
#include "platform/EventQueue.h"
#include "platform/TimerControl.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace {

constexpr int standardInterval = 1000; // ms

class Watch
{
public:
    explicit Watch(const Request &request);

    Exit run();

private:
    Exit look();
    void tell(const QJsonValue &lock, const QJsonValue &frequency) const;
    void tellTrouble(const Failure &failure) const;
    void waitForTick(qint64 tick);

    const Request &m_request;
    UnitLink m_link;
    TimerControl m_pause;
    QElapsedTimer m_clock;
};

Watch::Watch(const Request &request) : m_request(request), m_link(request)
{
    elapseOnTimer(&m_pause);
}

QJsonObject stamped()
{
    return {
        {QStringLiteral("time"), QDateTime::currentDateTime()
                                     .toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc())
                                     .toString(Qt::ISODate)}};
}

void Watch::tell(const QJsonValue &lock, const QJsonValue &frequency) const
{
    if (m_request.json) {
        QJsonObject line = stamped();
        line[QStringLiteral("lock")] = lock;
        line[QStringLiteral("frequency")] = frequency;
        Print::json(line);
        return;
    }
    Print::line(QStringLiteral("%1  %2  %3")
                    .arg(timeStamp(), textOf(*propertyNamed(QStringLiteral("lock")), lock),
                         textOf(*propertyNamed(QStringLiteral("frequency")), frequency)));
}

// A log of days goes on after a bad minute: the trouble is a line of it.
void Watch::tellTrouble(const Failure &failure) const
{
    if (m_request.json) {
        QJsonObject line = stamped();
        line[QStringLiteral("trouble")] = failure.text();
        Print::json(line);
    } else {
        Print::line(QStringLiteral("%1  %2").arg(timeStamp(), failure.text()));
    }
}

Exit Watch::look()
{
    m_link.begin();
    const QJsonValue lock = propertyNamed(QStringLiteral("lock"))->read(m_link.unit());
    QJsonValue frequency = QJsonValue::Undefined;
    if (!lock.isUndefined()) {
        m_link.begin(); // "unlocked" is an answer here, and no complaint
        frequency = propertyNamed(QStringLiteral("frequency"))->read(m_link.unit());
    }
    if (EventQueue::ending())
        return Exit::Done;
    if (!frequency.isUndefined()) {
        tell(lock, frequency);
        return Exit::Done;
    }
    const Failure failure = m_link.failure(QStringLiteral("watched"));
    if (failure.code() == Exit::NoPort)
        throw failure;
    tellTrouble(failure);
    return failure.code();
}

// From start to start, so that an hour has its 3600 lines.
void Watch::waitForTick(qint64 tick)
{
    const qint64 interval = m_request.interval.value_or(standardInterval);
    const qint64 left = tick * interval - m_clock.elapsed();
    if (left > 0)
        pauseit(&m_pause, static_cast<int>(left));
}

Exit Watch::run()
{
    m_link.connect();
    if (!knowsRange(m_link.unit()))
        throw m_link.failure(QStringLiteral("asked for its range"));
    m_link.keepTrying();
    m_clock.start();
    Exit result = Exit::Done;
    for (qint64 lines = 0; !EventQueue::ending();) {
        const Exit seen = look();
        result = seen == Exit::Done ? result : seen;
        if (++lines == m_request.count)
            break;
        waitForTick(lines);
        if (m_link.isLost())
            throw m_link.failure({});
    }
    // Ended by hand is how a watch without a count ends.
    return EventQueue::ending() ? Exit::Done : result;
}

} // namespace

Exit Commands::watch(const Request &request)
{
    return Watch(request).run();
}
