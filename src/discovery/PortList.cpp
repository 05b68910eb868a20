// The list of ports.
#include "discovery/PortList.h"

#include "discovery/clsSeeker.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

void listOpenablePorts(const std::function<void(std::int16_t port)> &found)
{
    clsSeeker seeker;
    seeker.Construct();
    PortDirectory::instance().refresh();
    for (std::int16_t port = 1; port <= PortDirectory::lastNumber && !EventQueue::ending();
         ++port) {
        const bool opens = seeker.Init(port);
        seeker.ClosePort();
        if (!opens)
            continue;
        found(port);
        EventQueue::yield();
    }
}
