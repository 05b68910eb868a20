// The bits of the option words that tell what a unit is fitted with.
#pragma once

#include <cstdint>

// Before the unit has been asked, and when it cannot tell, every option reads as present.
inline constexpr std::int32_t allOptions = -1;

namespace OptionA {

inline constexpr std::int32_t atten15dB = 1; // these two: firmware that cannot tell its maximum
inline constexpr std::int32_t atten50dB = 2;
inline constexpr std::int32_t agc = 2;
inline constexpr std::int32_t inputAtten = 8;
inline constexpr std::int32_t atten = 23; // any of 1, 2, 4 and 16

} // namespace OptionA

namespace OptionC {

inline constexpr std::int32_t pelltrim = 2;
inline constexpr std::int32_t allButPelltrim = 253; // of the eight bits that are written

} // namespace OptionC

// Of the reply to the bypass query.
inline constexpr std::int32_t bypassFitted = 1;
