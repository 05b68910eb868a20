// Ways to make a handler fail where it has no fault of its own: somebody who hears of a change that
// it makes raises error 5.
#pragma once

#include "platform/RunTimeError.h"

#include <QEvent>
#include <QObject>
#include <QString>

#include <utility>

inline void fail()
{
    throw RunTimeError(5);
}

// The box that reports it under this source.
inline QString failureIn(const char *source, const char *extra = "")
{
    return QStringLiteral("Error 5 ('Invalid procedure call or argument')\r\n"
                          "Invalid procedure call or argument\r\n"
                          " from KELDO-X Control Program\r\n"
                          " in %1\r\n%2")
        .arg(QLatin1String(source), QLatin1String(extra));
}

// Fails the first time when the object gets an event of this type.
class FailsOn : public QObject
{
public:
    FailsOn(QObject *watched, QEvent::Type type) : m_type(type)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == m_type && !std::exchange(m_failed, true))
            fail();
        return false;
    }

private:
    QEvent::Type m_type;
    bool m_failed = false;
};
