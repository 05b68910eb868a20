// How the replies of properties are judged.
#include "device/clsKeldoX.h"

#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

std::int32_t clsKeldoX::ask(const ReplyQuery &query, const Store &store)
{
    const QString reply = deviceWrite(QString::fromLatin1(query.command));
    if (query.isGood(reply)) {
        try {
            store(leadingNumber(ParseData(reply)));
            return keep(Good);
        } catch (const RunTimeError &) { // NOLINT(bugprone-empty-catch)
            // A number beyond the member's range is as bad as none.
        }
    }
    setup().miss();
    return reject(query.message);
}

std::int32_t clsKeldoX::judgeEcho(const QString &reply, const QString &sent, const char *message,
                                  const Store &store)
{
    const QString number = ParseData(reply);
    if (isNumeric(number) && numericValue(number) == leadingNumber(sent)) {
        store(numericValue(number));
        return keep(Good);
    }
    return judgeFailure(reply, message);
}

// A switch is echoed by its first character.
std::int32_t clsKeldoX::judgeSwitch(const QString &reply, bool on, const char *message,
                                    bool &member)
{
    if (reply.startsWith(QLatin1Char(on ? '1' : '0'))) {
        member = on;
        return keep(Good);
    }
    return judgeFailure(reply, message);
}

// A setting's reply that is not good: refused for want of the password, or bad.
std::int32_t clsKeldoX::judgeFailure(const QString &reply, const char *message)
{
    return judge({reply, true}, false, message);
}

bool clsKeldoX::isRefused(const QString &reply, std::int32_t &status)
{
    if (!ReplyText::isRefused(reply))
        return false;
    status = keep(Refused);
    emit GetPassword();
    return true;
}
