// The system's list of fonts, a fifth of the start, read while the display is being connected to.
// A thread of its own does it, which has ended before start-up begins.
#pragma once

#include <functional>
#include <memory>

class QThread;

class FontsAhead
{
public:
    using Reader = std::function<void()>;

    // The system's own; none where it keeps no such list, as on Windows.
    static Reader systemReader();

    // Begins to read; no reader: nothing is done.
    explicit FontsAhead(const Reader &reader = systemReader());
    ~FontsAhead(); // waits

    FontsAhead(const FontsAhead &) = delete;
    FontsAhead &operator=(const FontsAhead &) = delete;

    // Returns when they are read. Where no thread can be had, they are read when they are needed.
    void wait();

private:
    std::unique_ptr<QThread> m_thread;
};
