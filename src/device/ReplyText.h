// What stands in a reply line: the words that units answer with, numbers with their unit words, and
// the echo that confirms a setting.
#pragma once

#include <QLatin1String>
#include <QString>

#include <cstdint>
#include <functional>

namespace ReplyText {

inline constexpr QLatin1String timedOut("TIMED OUT");
inline constexpr QLatin1String unrecognized("UNRECOGNIZED COMMAND");
inline constexpr QLatin1String permissionDenied("PERMISSION DENIED");
inline constexpr QLatin1String locked("LOCKED");
inline constexpr QLatin1String unlocked("UNLOCKED");

// The unit did not understand, or something in it timed out: one of the two words and no more.
bool isErrorWord(const QString &reply);
bool isNotUnderstood(const QString &reply); // begins with the word
bool isRefused(const QString &reply);       // for want of the password
bool isSwitch(const QString &reply);        // "1" or "0" as the first character

// Keeps digits, signs and points: "12.5 MHz" gives "12.5".
QString numberPart(const QString &text);
double numberIn(const QString &reply); // what its number part begins with; 0 when there is none
// The whole reply is one number, and this one.
bool isNumber(const QString &reply, double value);

// Keep what a good reply tells. A number is rounded half to even; one beyond the member's range
// raises 6. A switch is told by its first character.
void take(const QString &reply, double &member);
void take(const QString &reply, std::int32_t &member);
void take(const QString &reply, std::int16_t &member);
void take(const QString &reply, bool &member);

// Tests of the reply to a setting, which keep what it confirms. The member has to outlive the test.
using Test = std::function<bool(const QString &reply)>;
Test echoOf(double value, double &member);
Test echoOf(bool on, bool &member);

QString onOff(bool on); // "1" or "0"

} // namespace ReplyText
