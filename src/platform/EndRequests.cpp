// Signals of the system as a signal of Qt.
#include "platform/EndRequests.h"

#ifndef Q_OS_WIN

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

static constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

// Ends of a pipe: a signal handler may do little more than write a byte.
static std::array<int, 2> wake{-1, -1};

static void onSignal(int /*number*/)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = write(wake[1], &byte, 1);
}

EndRequests::EndRequests(QObject *parent) : QObject(parent)
{
    if (pipe2(wake.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(wake[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> taken{};
        while (read(wake[0], taken.data(), taken.size()) > 0) {
        }
        emit Requested();
    });
    for (const int number : endSignals)
        std::signal(number, onSignal);
}

EndRequests::~EndRequests()
{
    for (const int number : endSignals)
        std::signal(number, SIG_DFL);
    for (int &end : wake) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

#else

EndRequests::EndRequests(QObject *parent) : QObject(parent) {}

EndRequests::~EndRequests() = default;

#endif
