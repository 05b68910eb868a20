// Reading reply lines.
#include "device/ReplyText.h"

#include "core/TextNumbers.h"

namespace ReplyText {

bool isErrorWord(const QString &reply)
{
    return reply == timedOut || reply == unrecognized;
}

bool isNotUnderstood(const QString &reply)
{
    return reply.startsWith(unrecognized);
}

bool isRefused(const QString &reply)
{
    return reply.startsWith(permissionDenied);
}

bool isSwitch(const QString &reply)
{
    return reply.startsWith(QLatin1Char('1')) || reply.startsWith(QLatin1Char('0'));
}

QString numberPart(const QString &text)
{
    QString kept;
    for (const QChar character : text)
        if ((character >= QLatin1Char('0') && character <= QLatin1Char('9')) ||
            QStringLiteral("-+.").contains(character))
            kept.append(character);
    return kept;
}

double numberIn(const QString &reply)
{
    return leadingNumber(numberPart(reply));
}

bool isNumber(const QString &reply, double value)
{
    return isNumeric(reply) && numberIn(reply) == value;
}

void take(const QString &reply, double &member)
{
    member = numberIn(reply);
}

void take(const QString &reply, std::int32_t &member)
{
    member = toInt32(numberIn(reply));
}

void take(const QString &reply, std::int16_t &member)
{
    member = toInt16(numberIn(reply));
}

void take(const QString &reply, bool &member)
{
    member = reply.startsWith(QLatin1Char('1'));
}

// "Equals the requested value" means the number as it was sent: 0.1 steps add up to
// 0.30000000000000004, which is sent, and echoed, as 0.3.
Test echoOf(double value, double &member)
{
    return [sent = leadingNumber(numberToText(value)), &member](const QString &reply) {
        const QString number = numberPart(reply);
        if (!isNumeric(number) || numericValue(number) != sent)
            return false;
        member = sent;
        return true;
    };
}

// A switch is echoed by its first character.
Test echoOf(bool on, bool &member)
{
    return [on, &member](const QString &reply) {
        if (!reply.startsWith(onOff(on)))
            return false;
        member = on;
        return true;
    };
}

QString onOff(bool on)
{
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace ReplyText
