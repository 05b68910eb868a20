// Numbers as a unit reads and writes them: a point whatever the locale, no exponent.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

std::string numberText(double value); ///< at most six decimals, none that are zero at the end
/// The number that a command's rest holds: blanks around it and a sign before it are allowed.
std::optional<double> numberIn(std::string_view text);
std::string_view withoutBlanks(std::string_view text); ///< at both ends

} // namespace sim
