// One unit's side of the line protocol: a command line in, a reply line out. It keeps the unit's
// true state, which tests read and change from any thread while a line serves the unit.
#pragma once

#include "sim/UnitSettings.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace sim {

/// The number a firmware text stands for: that of its last four characters, 0 when there is none.
double firmwareNumber(const std::string &text);

class SimulatedUnit
{
public:
    SimulatedUnit() : SimulatedUnit(UnitSettings{}) {}
    explicit SimulatedUnit(UnitSettings settings);

    /// Takes a command without its carriage return and gives the reply without one; nothing when
    /// the unit stays silent: it is not listening, or the line is empty.
    std::optional<std::string> answer(const std::string &command);

    /// What a unit answers that keeps a shared line going although nobody is meant: to a release
    /// when nobody listens and to the address of a unit that is not there. Nothing for other
    /// commands. Exactly one unit of a line is asked.
    static std::optional<std::string> answerForTheLine(const std::string &command);

    /// A snapshot of everything.
    UnitSettings state() const;
    /// Changes the unit behind the program's back, as its front panel or its factory would.
    void change(const std::function<void(UnitSettings &)> &edit);

    int step() const { return state().step; }
    double currentMHz() const; ///< start frequency plus step times spacing
    bool locked() const;       ///< of the present step
    double attenuation() const { return state().attenuation; }
    double inputAttenuation() const { return state().inputAttenuation; }
    bool agc() const { return state().agc; }
    double agcOffset() const { return state().agcOffset; }
    bool bypass() const { return state().bypass; }
    int inputLimitingMode() const { return state().inputLimitingMode; }
    int fineTuning() const { return state().fineTuning; } ///< as set, whatever the mode
    int fineCalibration() const { return state().fineCalibration; }
    bool calibratedMode() const { return state().calibratedMode; }
    int effectiveFineTuning() const; ///< the clicks in force: the calibration value in that mode
    int address() const { return state().address; }
    int optionA() const { return state().optionA; }
    int optionC() const { return state().optionC; }
    bool listening() const; ///< always, for a unit without an address
    bool permitted() const; ///< whether settings are accepted: no password, or the right one came

    void setStep(int step);
    void setAttenuation(double dB);
    void setAgc(bool on);
    void setPassword(const std::string &password); ///< asks for it anew
    void setDetectors(int output, int input);
    void setUnlockedSteps(int first, int last);

private:
    std::optional<std::string> answerAddressing(const std::string &command);
    std::string answerPassword(const std::string &offered);
    std::string execute(const std::string &command);
    bool isListening() const { return settings_.address == 0 || listening_; }
    bool isPermitted() const { return settings_.password.empty() || permitted_; }

    mutable std::mutex mutex_;
    UnitSettings settings_;
    bool listening_ = false;
    bool permitted_ = false;
};

} // namespace sim
