// Names of the faults, and what they make of a reply.
#include "sim/Fault.h"

#include "sim/UnitCommands.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace sim {

namespace {

constexpr std::array<std::pair<Fault, const char *>, 13> names{{
    {Fault::None, "none"},
    {Fault::Silence, "silence"},
    {Fault::LateReply, "late-reply"},
    {Fault::SplitReply, "split-reply"},
    {Fault::Garbage, "garbage"},
    {Fault::Binary, "binary"},
    {Fault::Endless, "endless"},
    {Fault::EmptyReply, "empty-reply"},
    {Fault::WrongUnitWord, "wrong-unit-word"},
    {Fault::Echo, "echo"},
    {Fault::Unlocked, "unlocked"},
    {Fault::PermissionDenied, "permission-denied"},
    {Fault::Unplug, "unplug"},
}};

std::string plain(const std::string &name)
{
    std::string letters;
    for (const char c : name)
        if (c != '-' && c != '_' && c != ' ')
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return letters;
}

// "MHz" stands before "Hz", which it contains.
std::string withWrongUnitWord(std::string reply)
{
    constexpr std::array<std::pair<const char *, const char *>, 4> words{
        {{"MHz", "mhz"}, {"Hz", "hz"}, {"dB", "DB"}, {"clicks", "click"}}};
    for (const auto &[right, wrong] : words) {
        const auto at = reply.find(right);
        if (at != std::string::npos)
            return reply.replace(at, std::string(right).size(), wrong);
    }
    return reply;
}

} // namespace

std::optional<Fault> faultByName(const std::string &name)
{
    for (const auto &[fault, known] : names)
        if (plain(known) == plain(name))
            return fault;
    return std::nullopt;
}

std::string faultName(Fault fault)
{
    const auto *const found = std::find_if(names.begin(), names.end(),
                                           [&](const auto &entry) { return entry.first == fault; });
    return found == names.end() ? std::string() : found->second;
}

std::vector<std::string> faultNames()
{
    std::vector<std::string> all;
    all.reserve(names.size());
    for (const auto &entry : names)
        all.emplace_back(entry.second);
    return all;
}

std::string falsified(Fault fault, const std::string &reply)
{
    using namespace std::string_literals;
    switch (fault) {
    case Fault::Garbage:
        return "~}#@q%!x$";
    case Fault::Binary:
        return "\x00\x80\xff\x01\xfe\x7f\x00\xc3"s;
    case Fault::EmptyReply:
        return {};
    case Fault::WrongUnitWord:
        return withWrongUnitWord(reply);
    case Fault::Unlocked:
        return reply == "LOCKED" ? "UNLOCKED" : reply;
    case Fault::PermissionDenied:
        return denied;
    default:
        return reply;
    }
}

bool looksLikeSetting(const std::string &command)
{
    return !command.empty() && command.front() != '>' && command.find('?') == std::string::npos &&
           !command.starts_with("PASSWORD");
}

} // namespace sim
