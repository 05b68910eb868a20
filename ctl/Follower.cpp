// Following a receiver.
#include "ctl/Follower.h"

#include "core/TextNumbers.h"
#include "core/TimeStamp.h"
#include "ctl/Commands.h"
#include "ctl/Print.h"
#include "ctl/Setting.h"
#include "platform/EventQueue.h"

#include <QDateTime>

#include <cmath>

namespace {

constexpr int standardInterval = 500; // ms
constexpr int standardTimeout = 3000; // ms; of the receiver
constexpr int mostFailures = 3;       // of the unit, in a row

QString inMHz(double megahertz)
{
    return numberToText(megahertz) + QStringLiteral(" MHz");
}

const Property &frequency()
{
    return *propertyNamed(QStringLiteral("frequency"));
}

} // namespace

Follower::Follower(const Request &request, const Receiver::Place &place)
    : m_request(request),
      m_link(request),
      m_place(QStringLiteral("%1:%2").arg(place.host).arg(place.port)),
      m_receiver(place, request.interval.value_or(standardInterval),
                 request.timeout.value_or(standardTimeout))
{
    connect(&m_receiver, &Receiver::Tuned, this, &Follower::onTuned);
    connect(&m_receiver, &Receiver::Lost, this, [this](const QString &why) {
        onTrouble(State::Lost,
                  QStringLiteral("receiver lost: %1; the filter stays, trying again").arg(why));
    });
    connect(&m_receiver, &Receiver::Puzzling, this, [this](const QString &why) {
        onTrouble(State::Puzzling,
                  QStringLiteral("receiver not understood: %1; the filter stays").arg(why));
    });
}

void Follower::tell(const char *event, const QString &text, const QJsonObject &more) const
{
    if (!m_request.json) {
        Print::line(timeStamp() + QStringLiteral("  ") + text);
        return;
    }
    QJsonObject line = more;
    const QDateTime now = QDateTime::currentDateTime();
    line[QStringLiteral("time")] = now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate);
    line[QStringLiteral("event")] = QString::fromLatin1(event);
    line[QStringLiteral("text")] = text;
    Print::json(line);
}

// The same trouble is told once, however often it is tried.
void Follower::onTrouble(State state, const QString &text)
{
    m_news.reset();
    if (EventQueue::ending() || (m_state == state && m_trouble == text))
        return;
    m_state = state;
    m_trouble = text;
    tell(state == State::Lost ? "lost" : "puzzling", text);
}

// The unit is tuned from the loop: an exchange with it must not begin inside the socket's signal.
void Follower::onTuned(double megahertz)
{
    m_news = megahertz;
}

void Follower::begin()
{
    m_link.connect();
    clsKeldoX &unit = m_link.unit();
    const QJsonValue now = frequency().read(unit);
    if (now.isUndefined())
        throw m_link.failure(QStringLiteral("asked for its frequency"));
    m_link.keepTrying();
    m_tunedTo = stepOf(unit, now.toDouble());
    m_lowest = std::max(unit.frequencyOf(0), m_request.lowest.value_or(0));
    m_highest = std::min(unit.StopFreq(), m_request.highest.value_or(unit.StopFreq()));
    if (m_lowest > m_highest)
        throw Failure(Exit::WrongUse, QStringLiteral("The limits are outside the unit's range"));
    tell("following",
         QStringLiteral("following %1; filter at %2, may go from %3 to %4")
             .arg(m_place, textOf(frequency(), now), numberToText(m_lowest), inMHz(m_highest)),
         {{QStringLiteral("frequency"), now}});
    m_receiver.start();
}

void Follower::run()
{
    begin();
    while (!EventQueue::ending()) {
        if (m_link.isLost())
            throw m_link.failure({});
        if (const auto news = std::exchange(m_news, std::nullopt))
            follow(*news);
        else
            EventQueue::sleepUntilEvent();
    }
}

bool Follower::isAllowed(double megahertz) const
{
    return megahertz >= m_lowest && megahertz <= m_highest;
}

void Follower::follow(double receiver)
{
    const double wanted = exact(receiver + m_request.offset).toDouble();
    if (m_state == State::Lost || m_state == State::Puzzling)
        tell("back", QStringLiteral("receiver is back at %1").arg(inMHz(receiver)),
             {{QStringLiteral("receiver"), receiver}});
    if (!isAllowed(wanted)) {
        stayOutside(wanted);
        return;
    }
    if (m_state == State::Outside)
        tell("inside", QStringLiteral("receiver is within reach again"));
    m_state = State::Followed;
    if (const auto step = stepOf(m_link.unit(), wanted); step && isWorthATune(wanted, *step))
        tuneTo(wanted, *step);
}

void Follower::stayOutside(double wanted)
{
    if (m_state != State::Outside)
        tell("outside",
             QStringLiteral("receiver is outside: %1 is not within %2 to %3; the filter stays")
                 .arg(inMHz(wanted), numberToText(m_lowest), inMHz(m_highest)),
             {{QStringLiteral("wanted"), wanted}});
    m_state = State::Outside;
}

bool Follower::isWorthATune(double wanted, std::int32_t step) const
{
    if (!m_tunedTo)
        return true;
    if (step == *m_tunedTo)
        return false;
    // As text would have it: 146.5 to 146.5125 is a move by 0.0125 and no hair more.
    return !m_lastWanted ||
           exact(std::abs(wanted - *m_lastWanted)).toDouble() > m_request.tuningStep;
}

void Follower::tuneTo(double wanted, std::int32_t step)
{
    try {
        const QJsonValue has = settingOf(m_link, frequency(), wanted);
        m_tunedTo = step;
        m_lastWanted = wanted;
        m_failures = 0;
        tell("tuned", QStringLiteral("filter tuned to %1").arg(textOf(frequency(), has)),
             {{QStringLiteral("frequency"), has}, {QStringLiteral("wanted"), wanted}});
    } catch (const Failure &failure) {
        m_tunedTo.reset();
        if (failure.code() == Exit::NoPort || EventQueue::ending() || ++m_failures == mostFailures)
            throw;
        tell("failed",
             QStringLiteral("filter not tuned to %1: %2").arg(inMHz(wanted), failure.text()));
    }
}

Exit Commands::follow(const Request &request)
{
    const Receiver::Place place = Receiver::placeOf(request.words.first());
    if (place.port == 0)
        throw Failure(Exit::WrongUse, QStringLiteral("\"%1\" is no HOST:PORT (see keldo-x-ctl "
                                                     "--help)")
                                          .arg(request.words.first()));
    try {
        Follower(request, place).run();
    } catch (const Failure &) {
        if (!EventQueue::ending())
            throw;
    }
    // Ended by hand is how following ends.
    return Exit::Done;
}
