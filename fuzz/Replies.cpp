// The judgement of replies: any operations on a unit's object, with any replies to them.
#include "Fuzz.h"

#include "HostileUnit.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    HostileUnit unit(
        {[&](int count) { return input.choice(count); }, [&] { return input.piece(); }});
    unit.connectUnit();
    while (!input.atEnd()) {
        const QString complaint = unit.operate();
        if (!complaint.isEmpty()) {
            std::fprintf(stderr, "broken: %s\n", qPrintable(complaint));
            std::abort();
        }
    }
    return 0;
}
