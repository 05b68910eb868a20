// The printed exchange; bytes that are no text stand as their numbers.
#include "sim/ExchangeLog.h"

#include <array>
#include <cstdio>
#include <mutex>

namespace sim {

namespace {

std::string printable(const std::string &text)
{
    std::string shown;
    for (const char c : text) {
        std::array<char, 5> code{};
        std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
        shown += c >= ' ' && c <= '~' ? std::string(1, c) : std::string(code.data());
    }
    return shown;
}

} // namespace

void printLine(std::ostream &stream, const std::string &text)
{
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    stream << text << '\n' << std::flush;
}

SimulatedLine::Listener exchangeLog(std::ostream &stream, const std::string &name)
{
    return [&stream, name](bool fromUnit, const std::string &text) {
        printLine(stream, name + (fromUnit ? "   <- " : "-> ") + printable(text));
    };
}

} // namespace sim
