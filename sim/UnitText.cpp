// Conversions between numbers and the text on the line.
#include "sim/UnitText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace sim {

std::string numberText(double value)
{
    std::array<char, 400> buffer{}; // a double has up to 309 digits before its point
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, 6);
    std::string text(buffer.data(), result.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string_view withoutBlanks(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<double> numberIn(std::string_view text)
{
    text = withoutBlanks(text);
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-')
        text.remove_prefix(1);
    double value = 0;
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (result.ec != std::errc{} || result.ptr != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace sim
