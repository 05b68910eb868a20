// The filter goes where a receiver goes: within the unit's range and the limits given, and no
// farther. What changes, and what is lost, is a line.
#pragma once

#include "ctl/Receiver.h"
#include "ctl/Request.h"
#include "ctl/UnitLink.h"

#include <QJsonObject>

#include <optional>

class Follower : public QObject
{
    Q_OBJECT

public:
    Follower(const Request &request, const Receiver::Place &place);

    // Until the program ends. Fails for a unit that is gone, or that answers badly again and again.
    void run();

private:
    enum class State { Unknown, Followed, Outside, Puzzling, Lost };

    void begin();
    void onTuned(double megahertz);
    void onTrouble(State state, const QString &text);
    void follow(double receiver);
    void stayOutside(double wanted);
    bool isAllowed(double megahertz) const;
    bool isWorthATune(double wanted, std::int32_t step) const;
    void tuneTo(double wanted, std::int32_t step);
    void tell(const char *event, const QString &text, const QJsonObject &more = {}) const;

    const Request &m_request;
    UnitLink m_link;
    QString m_place;
    Receiver m_receiver;
    double m_lowest = 0; // MHz; the unit's range within the limits
    double m_highest = 0;
    std::optional<double> m_news;          // the receiver's newest frequency, MHz
    std::optional<double> m_lastWanted;    // that the unit was tuned for, MHz
    std::optional<std::int32_t> m_tunedTo; // the unit's step; nothing while it is not known
    State m_state = State::Unknown;
    QString m_trouble; // told last
    int m_failures = 0;
};
