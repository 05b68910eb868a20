// What a simulated unit is and what its registers hold. A unit is built from one of these and a
// snapshot of its true state is one of these again.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace sim {

/// Bits of option word A.
enum OptionA : int {
    OptionAttenuator15 = 1,
    OptionAgc = 2, ///< AGC, and an attenuator with a 50 dB range
    OptionAttenuatorA = 4,
    OptionInputAttenuator = 8,
    OptionAttenuatorB = 16,
};

/// Bits of option word C.
enum OptionC : int {
    OptionFineTuning = 2,
};

struct UnitSettings
{
    std::string identity = "KELDO-X"; ///< the whole reply to *ID?; also "TOVIN-R"
    /// The firmware number is read from the last four characters.
    std::string firmware = "KELDO-X REV 3.38";
    std::string password; ///< empty = settings need none

    int address = 0; ///< 1 to 99 on a shared line; 0 = always listening
    int optionA = OptionAgc | OptionAttenuatorA | OptionInputAttenuator;
    int optionC = OptionFineTuning;
    bool hasBypass = true;

    double startMHz = 100.0;
    double ifMHz = 21.4;
    int channelSpacingHz = 25000;
    int maxStep = 4000;
    int bandwidthHz = 25000;
    int prescaler = 64; ///< 64 or 128
    int step = 0;
    /// The oscillator does not lock on steps inside these ranges, both ends included.
    std::vector<std::pair<int, int>> unlockedSteps;

    double maxAttenuation = 50.0;      ///< dB
    double attenuationStep = 0.5;      ///< dB; 0 = the unit cannot tell its step
    double attenuation = 0.0;          ///< dB
    double maxInputAttenuation = 31.5; ///< dB
    double inputAttenuation = 0.0;     ///< dB
    double agcOffset = 0.0;            ///< dB, negative down to minus the maximum attenuation
    bool agc = false;
    bool bypass = false;
    int inputLimitingMode = 1; ///< 0 to 4

    int fineTuning = 128;      ///< clicks, 0 to 255
    int fineCalibration = 128; ///< clicks, 0 to 255
    bool calibratedMode = false;

    int detectorA = 512; ///< power detector at the output
    int detectorB = 256; ///< power detector at the input
    int deadband = 3;
    int agcAddress = 36; ///< current address in the memory of the AGC table
    std::array<std::uint8_t, 256> agcMemory = {}; ///< the table lies at 36 to 85
};

} // namespace sim
