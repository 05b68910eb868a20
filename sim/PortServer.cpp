// Pseudo-terminals and their links, from the first line to the signal that ends them.
#include "sim/PortServer.h"

#include "sim/ComPorts.h"
#include "sim/ExchangeLog.h"

#include <csignal>
#include <stdexcept>
#include <system_error>

namespace sim {

namespace {

struct Served
{
    std::unique_ptr<SimulatedLine> line;
    ComPortLink link;
};

// Another simulator may take the number between the look and the link.
ComPortLink linkUnderFreeNumber(int first, const std::vector<int> &alsoTaken,
                                const std::string &device)
{
    while (true) {
        const int number = freeNumber(first, alsoTaken);
        if (number == 0)
            throw std::runtime_error("no COM number is free");
        try {
            return {number, device};
        } catch (const std::system_error &error) {
            if (error.code() != std::errc::file_exists)
                throw;
            first = number + 1;
        }
    }
}

std::vector<Served> serve(const std::vector<LineSpec> &specs, int first)
{
    removeStaleLinks();
    std::vector<int> explicitNumbers;
    explicitNumbers.reserve(specs.size());
    for (const LineSpec &spec : specs)
        explicitNumbers.push_back(spec.com);
    std::vector<Served> served;
    for (const LineSpec &spec : specs) {
        auto line = makeLine(spec);
        auto link = spec.com != 0 ? ComPortLink(spec.com, line->device())
                                  : linkUnderFreeNumber(first, explicitNumbers, line->device());
        served.push_back({std::move(line), std::move(link)});
    }
    return served;
}

void waitForEnd(const sigset_t &endSignals)
{
    int signal = 0;
    while (sigwait(&endSignals, &signal) != 0) {
    }
}

// The signals that end the program. Blocked before any line's thread is started, so that all
// threads leave them to the wait at the end.
sigset_t blockedEndSignals()
{
    sigset_t endSignals;
    sigemptyset(&endSignals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&endSignals, signal);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);
    return endSignals;
}

} // namespace

void PortServer::run(const std::vector<LineSpec> &lines) const
{
    const sigset_t endSignals = blockedEndSignals();
    const auto served = serve(lines, first);
    for (std::size_t i = 0; i < served.size(); ++i) {
        const std::string port = "COM" + std::to_string(served[i].link.number());
        if (logs)
            served[i].line->setListener(exchangeLog(std::cout, port + ' '));
        if (lists)
            printLine(std::cout,
                      port + "  " + lines[i].describe() + "  (" + served[i].line->device() + ")");
    }
    waitForEnd(endSignals);
}

} // namespace sim
