// The co-operative pause on a timer.
#include "core/pauseit.h"

#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "platform/RunTimeError.h"
#include "platform/TimerControl.h"

#include <QPointer>

void pauseit(TimerControl *timer, int ms)
{
    if (ms == 0)
        return;
    reportAndEnd("modMain_KeldoX2.pauseit", [&] {
        const QPointer<TimerControl> watched(timer);
        if (!watched)
            throw RunTimeError(ErrorNumber::ObjectNotSet);
        timer->setTag(QStringLiteral("FALSE"));
        timer->setInterval(ms);
        if (ms < 0)
            return;
        timer->setEnabled(true);
        while (watched && watched->tag() == QLatin1String("FALSE") && !EventQueue::ending())
            EventQueue::sleepUntilEvent();
    });
}
