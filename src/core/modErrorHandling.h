// The one path of run-time errors: a detailed account to the event log and a short one to the
// operator.
#pragma once

#include <QString>

// Reports the error that is being handled; called inside a catch. Without one it does nothing.
// A failure inside the report passes to the caller: error 6 for a number outside 16 bits.
void ReportError(const QString &source, const QString &extraInfo);

// The program's text for an error number; the library's own text in single quotes for numbers that
// have none.
QString ErrText(int number);
