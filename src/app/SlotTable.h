// A table of shared objects with slots 0 to Last, slot 0 unused.
#pragma once

#include "platform/RunTimeError.h"

#include <array>
#include <memory>

template <class Object, int Last> class SlotTable
{
public:
    static constexpr int last = Last;

    // Raises 9 (subscript out of range) outside 0 to Last.
    std::shared_ptr<Object> &operator[](int slot) { return m_slots.at(checked(slot)); }
    const std::shared_ptr<Object> &operator[](int slot) const { return m_slots.at(checked(slot)); }

    void clear() { m_slots = {}; }

private:
    static std::size_t checked(int slot)
    {
        if (slot < 0 || slot > Last)
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return static_cast<std::size_t>(slot);
    }

    std::array<std::shared_ptr<Object>, Last + 1> m_slots;
};
