// Addressing, password and dispatch of the simulated unit.
#include "sim/SimulatedUnit.h"

#include "sim/UnitCommands.h"
#include "sim/UnitText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace sim {

namespace {

constexpr std::string_view listenWord = ">LISTEN";
constexpr std::string_view unlistenWord = ">UNLISTEN";
constexpr std::string_view passwordWord = "PASSWORD";

// Beyond this a unit's tables could not index their memory; the setter refuses it.
constexpr int largestAgcAddress = 255;

std::array<const CommandTable *, 5> tables()
{
    return {&frequencyCommands(), &levelCommands(), &optionCommands(), &fineTuningCommands(),
            &detectorCommands()};
}

// The address of ">LISTENnn": two digits, or more for an address of a hundred and above.
std::optional<int> addressIn(std::string_view command)
{
    if (!command.starts_with(listenWord))
        return std::nullopt;
    const std::string_view digits = command.substr(listenWord.size());
    int address = 0;
    const char *end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, address);
    if (digits.size() < 2 || result.ec != std::errc{} || result.ptr != end || address < 0)
        return std::nullopt;
    return address;
}

} // namespace

bool always(const UnitSettings &)
{
    return true;
}

bool isLocked(const UnitSettings &unit)
{
    return std::none_of(
        unit.unlockedSteps.begin(), unit.unlockedSteps.end(),
        [&](const auto &range) { return unit.step >= range.first && unit.step <= range.second; });
}

std::string setSwitch(bool &target, double value)
{
    if (value != 0 && value != 1)
        return outOfRange;
    target = value == 1;
    return numberText(value);
}

std::string setWhole(int &target, double value, int lowest, int highest)
{
    if (value < lowest || value > highest || value != std::floor(value))
        return outOfRange;
    target = static_cast<int>(value);
    return numberText(value);
}

double firmwareNumber(const std::string &text)
{
    std::string_view tail(text);
    tail = withoutBlanks(tail.substr(tail.size() > 4 ? tail.size() - 4 : 0));
    double number = 0;
    std::from_chars(tail.data(), tail.data() + tail.size(), number, std::chars_format::fixed);
    return number;
}

SimulatedUnit::SimulatedUnit(UnitSettings settings) : settings_(std::move(settings))
{
    settings_.agcAddress = std::clamp(settings_.agcAddress, 0, largestAgcAddress);
}

std::optional<std::string> SimulatedUnit::answer(const std::string &command)
{
    const std::lock_guard lock(mutex_);
    if (withoutBlanks(command).empty())
        return std::nullopt;
    if (command.starts_with('>') && settings_.address != 0)
        return answerAddressing(command);
    if (!isListening())
        return std::nullopt;
    if (command.starts_with(passwordWord))
        return answerPassword(command.substr(passwordWord.size()));
    const int addressBefore = settings_.address;
    std::string reply = execute(command);
    if (settings_.address != addressBefore)
        listening_ = true; // a unit that was just given an address goes on with its conversation
    return reply;
}

// A unit that is listening stays so until it is released, also while another one is addressed.
std::optional<std::string> SimulatedUnit::answerAddressing(const std::string &command)
{
    if (command == unlistenWord && listening_) {
        listening_ = false;
        return "UNLISTENING";
    }
    if (addressIn(command) == settings_.address) {
        listening_ = true;
        return "LISTENING";
    }
    return std::nullopt;
}

std::optional<std::string> SimulatedUnit::answerForTheLine(const std::string &command)
{
    if (command == unlistenWord || addressIn(command))
        return "OK";
    return std::nullopt;
}

// One blank stands between the word and the password; all that follows it counts. A wrong
// password takes an earlier permission back.
std::string SimulatedUnit::answerPassword(const std::string &offered)
{
    if (!offered.empty() && offered.front() != ' ')
        return unrecognized;
    permitted_ = offered.substr(offered.empty() ? 0 : 1) == settings_.password;
    return isPermitted() ? "OK" : denied;
}

std::string SimulatedUnit::execute(const std::string &command)
{
    std::string_view line(command);
    line.remove_suffix(line.size() - line.find_last_not_of(' ') - 1);
    for (const CommandTable *table : tables())
        for (const QueryCommand &query : table->queries)
            if (line == query.line)
                return query.known(settings_) ? query.reply(settings_) : unrecognized;
    for (const CommandTable *table : tables())
        for (const SettingCommand &setting : table->settings) {
            if (!line.starts_with(setting.name))
                continue;
            const auto value = numberIn(line.substr(setting.name.size()));
            if (!value || !setting.known(settings_))
                continue;
            return isPermitted() ? setting.run(settings_, *value) : denied;
        }
    return unrecognized;
}

UnitSettings SimulatedUnit::state() const
{
    const std::lock_guard lock(mutex_);
    return settings_;
}

void SimulatedUnit::change(const std::function<void(UnitSettings &)> &edit)
{
    const std::lock_guard lock(mutex_);
    edit(settings_);
    settings_.agcAddress = std::clamp(settings_.agcAddress, 0, largestAgcAddress);
}

double SimulatedUnit::currentMHz() const
{
    const UnitSettings unit = state();
    return unit.startMHz + static_cast<double>(unit.channelSpacingHz) * unit.step / 1'000'000.0;
}

bool SimulatedUnit::locked() const
{
    return isLocked(state());
}

int SimulatedUnit::effectiveFineTuning() const
{
    const UnitSettings unit = state();
    return unit.calibratedMode ? unit.fineCalibration : unit.fineTuning;
}

bool SimulatedUnit::listening() const
{
    const std::lock_guard lock(mutex_);
    return isListening();
}

bool SimulatedUnit::permitted() const
{
    const std::lock_guard lock(mutex_);
    return isPermitted();
}

void SimulatedUnit::setStep(int step)
{
    change([&](UnitSettings &unit) { unit.step = step; });
}

void SimulatedUnit::setAttenuation(double dB)
{
    change([&](UnitSettings &unit) { unit.attenuation = dB; });
}

void SimulatedUnit::setAgc(bool on)
{
    change([&](UnitSettings &unit) { unit.agc = on; });
}

void SimulatedUnit::setPassword(const std::string &password)
{
    const std::lock_guard lock(mutex_);
    settings_.password = password;
    permitted_ = false;
}

void SimulatedUnit::setDetectors(int output, int input)
{
    change([&](UnitSettings &unit) {
        unit.detectorA = output;
        unit.detectorB = input;
    });
}

void SimulatedUnit::setUnlockedSteps(int first, int last)
{
    change([&](UnitSettings &unit) { unit.unlockedSteps.emplace_back(first, last); });
}

} // namespace sim
