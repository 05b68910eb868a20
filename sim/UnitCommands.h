// The command tables of the simulated unit, one for each subject.
#pragma once

#include "sim/UnitSettings.h"

#include <string>
#include <string_view>
#include <vector>

namespace sim {

inline constexpr const char *unrecognized = "UNRECOGNIZED COMMAND";
inline constexpr const char *outOfRange = "NUMBER OUT OF RANGE";
inline constexpr const char *denied = "PERMISSION DENIED";

struct QueryCommand
{
    std::string_view line;               ///< the whole command, blanks at its end left out
    bool (*known)(const UnitSettings &); ///< whether this unit's firmware and fittings know it
    std::string (*reply)(const UnitSettings &);
};

struct SettingCommand
{
    std::string_view name; ///< what stands before the number
    bool (*known)(const UnitSettings &);
    std::string (*run)(UnitSettings &, double value); ///< the reply; changes nothing on a refusal
};

struct CommandTable
{
    std::vector<QueryCommand> queries;
    std::vector<SettingCommand> settings;
};

const CommandTable &frequencyCommands();
const CommandTable &levelCommands();
const CommandTable &optionCommands();
const CommandTable &fineTuningCommands();
const CommandTable &detectorCommands();

// What the tables share.
bool always(const UnitSettings &unit);
bool isLocked(const UnitSettings &unit);
/// A switch is set by 0 or 1 and answers the state it ends in.
std::string setSwitch(bool &target, double value);
/// A whole number within bounds, both included; anything else is refused and changes nothing.
std::string setWhole(int &target, double value, int lowest, int highest);

} // namespace sim
