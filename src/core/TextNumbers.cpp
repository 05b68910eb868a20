// Conversions between numbers and text.
#include "core/TextNumbers.h"

#include "platform/RunTimeError.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

const QRegularExpression &decimalNumber()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^[+-]?(?:\d+\.?\d*|\.\d+)(?:[EeDd][+-]?\d+)?)"));
    return pattern;
}

const QRegularExpression &hexNumber()
{
    static const QRegularExpression pattern(QStringLiteral(R"(^&[Hh]([0-9A-Fa-f]{1,8}))"));
    return pattern;
}

struct Parsed
{
    double value = 0;
    qsizetype length = 0; // characters used; 0 when the text begins with no number
};

Parsed parseStart(const QString &text)
{
    if (text.isEmpty()) // as most presets are at start: the patterns' library is not read
        return {};
    if (const auto hex = hexNumber().match(text); hex.hasMatch())
        return {static_cast<double>(hex.captured(1).toUInt(nullptr, 16)), hex.capturedLength()};
    const auto decimal = decimalNumber().match(text);
    if (!decimal.hasMatch())
        return {};
    QString digits = decimal.captured();
    digits.replace(QLatin1Char('d'), QLatin1Char('e')).replace(QLatin1Char('D'), QLatin1Char('e'));
    return {digits.toDouble(), decimal.capturedLength()};
}

template <class Integer> Integer toInteger(double value)
{
    const double rounded = roundHalfEven(value);
    if (!(rounded >= std::numeric_limits<Integer>::min() &&
          rounded <= std::numeric_limits<Integer>::max()))
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<Integer>(rounded);
}

} // namespace

QString numberToText(double value)
{
    // Whole numbers are most of what goes over a line; also the negative zero is one.
    constexpr double firstWithExponent = 1e15;
    if (std::abs(value) < firstWithExponent && value == std::trunc(value))
        return QString::number(static_cast<qint64>(value));
    return QString::number(value, 'g', 15).toUpper();
}

QString numberToTextWithBlank(double value)
{
    const QString text = numberToText(value);
    return text.startsWith(QLatin1Char('-')) ? text : QLatin1Char(' ') + text;
}

double leadingNumber(const QString &text)
{
    QString packed;
    for (const QChar character : text)
        if (!character.isSpace())
            packed.append(character);
    const Parsed parsed = parseStart(packed);
    return std::isfinite(parsed.value) ? parsed.value : 0;
}

bool isNumeric(const QString &text)
{
    const QString trimmed = text.trimmed();
    const Parsed parsed = parseStart(trimmed);
    return parsed.length > 0 && parsed.length == trimmed.size() && std::isfinite(parsed.value);
}

double numericValue(const QString &text)
{
    if (!isNumeric(text))
        throw RunTimeError(ErrorNumber::TypeMismatch);
    return parseStart(text.trimmed()).value;
}

std::optional<double> frequencyInMHz(const QString &text)
{
    static const QRegularExpression unitWord(QStringLiteral(R"(\s*([kMG]?)Hz\s*$)"),
                                             QRegularExpression::CaseInsensitiveOption);
    QString number = text;
    QString prefix = QStringLiteral("m");
    if (const auto word = unitWord.match(text); word.hasMatch()) {
        number.truncate(word.capturedStart());
        prefix = word.captured(1).toLower();
    }
    if (!isNumeric(number))
        return std::nullopt;
    const double value = numericValue(number);
    // Divided by whole numbers, so that 146500 kHz is exactly what 146.5 reads as.
    if (prefix == QLatin1String("m"))
        return value;
    if (prefix == QLatin1String("g"))
        return value * 1e3;
    return value / (prefix == QLatin1String("k") ? 1e3 : 1e6);
}

double leadingFrequencyInMHz(const QString &text)
{
    if (const auto megahertz = frequencyInMHz(text))
        return *megahertz;
    return text.contains(QLatin1Char(',')) ? 0 : leadingNumber(text);
}

double roundHalfEven(double value)
{
    // std::nearbyint would depend on the rounding mode that some library left behind.
    const double below = std::floor(value);
    const double part = value - below;
    if (part < 0.5)
        return below;
    if (part > 0.5)
        return below + 1;
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::int16_t toInt16(double value)
{
    return toInteger<std::int16_t>(value);
}

std::int32_t toInt32(double value)
{
    return toInteger<std::int32_t>(value);
}
