// The list of ports.
#include "discovery/PortList.h"

#include "discovery/clsSeeker.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

void listOpenablePorts(const std::function<void(const ListedPort &port)> &found)
{
    clsSeeker seeker;
    seeker.Construct();
    PortDirectory::instance().refresh();
    for (std::int16_t number = 1; number <= PortDirectory::lastNumber && !EventQueue::ending();
         ++number) {
        ListedPort port{number, seeker.Init(number), seeker.ComPort().OpenFailure()};
        // Never held open while others may want it.
        seeker.ClosePort();
        if (!port.opens && port.failure.isEmpty())
            continue;
        found(port);
        EventQueue::yield();
    }
}
