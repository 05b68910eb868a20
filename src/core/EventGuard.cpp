// The event guard and its one signal.
#include "core/EventGuard.h"

void EventGuard::set(bool up)
{
    if (up == m_up)
        return;
    m_up = up;
    emit changed(up);
}
