// The ways in which a simulated line can misbehave, and their names for the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sim {

enum class Fault {
    None,
    Silence,          ///< the command is carried out, its reply is lost
    LateReply,        ///< the reply comes after a delay
    SplitReply,       ///< the reply comes in groups of bytes with gaps between them
    Garbage,          ///< printable nonsense in place of the reply
    Binary,           ///< bytes that are no text, 0 and those above 127 among them
    Endless,          ///< text without end until the next command, 64 KiB at most
    EmptyReply,       ///< the terminator alone
    WrongUnitWord,    ///< "mhz", "hz", "DB", "click" in place of the right word
    Echo,             ///< a loopback adaptor: the command comes back, no unit sees it
    Unlocked,         ///< "UNLOCKED" in place of "LOCKED"
    PermissionDenied, ///< settings are refused
    Unplug,           ///< the line hangs up in place of the reply
};

std::optional<Fault> faultByName(const std::string &name); ///< "late-reply", also "LateReply"
std::string faultName(Fault fault);                        ///< "late-reply"
std::vector<std::string> faultNames();                     ///< all, "none" first

/// How a fault falsifies a reply; the reply itself for faults that leave the text alone.
std::string falsified(Fault fault, const std::string &reply);
/// Whether a unit may refuse the command for want of a password.
bool looksLikeSetting(const std::string &command);

} // namespace sim
