// Numbers to text and back, the way the unit, the windows and the settings write them: always "."
// as the decimal point, never a group separator, whatever the locale.
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// Up to 15 significant digits: 145.5, 0.5, -3, 1E+20.
QString numberToText(double value);

// The same with one blank in front of a number that is not negative: " 5", "-3".
QString numberToTextWithBlank(double value);

// The number that a text begins with; blanks are skipped, "&H" reads hexadecimal, and reading stops
// at the first character that does not belong to a number. 0 when there is none.
double leadingNumber(const QString &text);

// Whether the whole text is one number: blanks around it, a sign, decimals, an exponent, or "&H"
// and hexadecimal digits.
bool isNumeric(const QString &text);

// The value of a text that is one number. Raises 13 (type mismatch) when it is not.
double numericValue(const QString &text);

// A frequency in MHz as it may be typed: a number, with or without one of the unit words Hz, kHz,
// MHz and GHz behind it, in any case, which convert ("146500 kHz" is 146.5). Nothing for any other
// text.
std::optional<double> frequencyInMHz(const QString &text);

// The same, or else the number that the text begins with; 0 for a decimal comma and where there is
// none.
double leadingFrequencyInMHz(const QString &text);

// To the nearest whole number, halves to even.
double roundHalfEven(double value);

// Rounded half to even; raise 6 (overflow) outside the type's range.
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);
