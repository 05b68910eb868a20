// The descriptions of simulated lines: each is taken or refused with a text for its user.
#include "Fuzz.h"

#include "sim/LineSpec.h"

#include <stdexcept>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    try {
        const sim::LineSpec spec = sim::parseLineSpec(text, {});
        PROMISE(!spec.unitAddresses().empty());
        for (const int address : spec.unitAddresses())
            PROMISE(address >= 0 && address <= 99); // two digits on the wire
        PROMISE(!spec.describe().empty());
        PROMISE(spec.com >= 0 && spec.com <= 255);
    } catch (const std::invalid_argument &refusal) {
        PROMISE(refusal.what()[0] != '\0');
    }
    return 0;
}
