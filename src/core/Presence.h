// Is what I was working for still there? A wait lets anything happen, so whoever waited asks: is
// the same unit still shown, is the port still the one that was opened, does the window still live?
//
//     const Still still = m_shownUnit.still();
//     waitForSomething();
//     if (!still)
//         return;
#pragma once

#include <memory>

// What one waiter holds. True as long as its presence has been neither renewed nor ended.
class Still
{
public:
    explicit operator bool() const { return !m_life.expired(); }

private:
    friend class Presence;
    explicit Still(const std::shared_ptr<const char> &life) : m_life(life) {}

    std::weak_ptr<const char> m_life;
};

// Held by the owner of what may go: a member beside what it stands for.
class Presence
{
public:
    Still still() const { return Still(m_life); }
    // What waiters worked for is gone; from now on something else is there.
    void renew() { m_life = std::make_shared<const char>(); }

private:
    std::shared_ptr<const char> m_life = std::make_shared<const char>();
};
