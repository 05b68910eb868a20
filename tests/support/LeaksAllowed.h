// Qt loses what it is working on when an error is thrown through one of its calls, which only tests
// do: the leak detector is to look away while one of these lives.
#pragma once

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>

using LeaksAllowed = __lsan::ScopedDisabler;
#else
struct LeaksAllowed
{
    LeaksAllowed() {}
};
#endif
