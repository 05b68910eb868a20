// Numbers and texts: whatever is typed or comes from a unit is read without harm, and what the
// program writes it reads back.
#include "Fuzz.h"

#include "core/TextNumbers.h"
#include "device/ReplyText.h"
#include "platform/RunTimeError.h"

#include <cmath>

static void readsBackWhatItWrites(double value)
{
    if (!std::isfinite(value))
        return;
    const QString written = numberToText(value);
    PROMISE(isNumeric(written));
    PROMISE(!written.contains(QLatin1Char(',')));
    const double read = numericValue(written);
    PROMISE(std::abs(read - value) <= std::abs(value) * 1e-14);
    PROMISE(numberToText(read) == written);
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QString text = input.text();
    const double leading = leadingNumber(text);
    PROMISE(!std::isnan(leading));
    readsBackWhatItWrites(leading);
    if (isNumeric(text)) {
        PROMISE(frequencyInMHz(text).has_value());
        readsBackWhatItWrites(numericValue(text));
    } else {
        try {
            numericValue(text);
            PROMISE(!"a text that is no number has a value");
        } catch (const RunTimeError &error) {
            PROMISE(error.number() == ErrorNumber::TypeMismatch);
        }
    }
    if (const auto megahertz = frequencyInMHz(text))
        readsBackWhatItWrites(*megahertz);
    PROMISE(!std::isnan(leadingFrequencyInMHz(text)));
    for (const QChar letter : ReplyText::numberPart(text))
        PROMISE(letter.isDigit() || QStringLiteral("+-.").contains(letter));
    try {
        PROMISE(std::abs(toInt32(leading) - leading) <= 0.5);
    } catch (const RunTimeError &error) {
        PROMISE(error.number() == ErrorNumber::Overflow);
    }
    return 0;
}
