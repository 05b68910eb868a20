// How procedures live with failing statements: report and go on, or report and end.
#pragma once

#include "core/modErrorHandling.h"

#include <utility>

// Runs one step. A failure is reported and ends here, also one of the report itself: such a one
// ends silently. Returns whether the step came to its end.
template <class Step> bool reportAndEnd(const char *source, Step &&step, const char *extra = "")
{
    try {
        std::forward<Step>(step)();
        return true;
    } catch (...) {
        try {
            ReportError(QString::fromLatin1(source), QString::fromLatin1(extra));
        } catch (...) { // NOLINT(bugprone-empty-catch)
            // Nobody is left to tell.
        }
        return false;
    }
}

// Runs the steps in order; a failing one is reported and the next one follows. What must fail
// together goes into one step.
template <class... Steps> void resumeNext(const char *source, Steps &&...steps)
{
    (reportAndEnd(source, std::forward<Steps>(steps)), ...);
}
