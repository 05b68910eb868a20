// The time stamp of the log: "2026-03-01 14:05:09" in local time, in the same digits everywhere.
#pragma once

#include <QString>

// Of this moment.
QString timeStamp();

// The stamp that an event's label begins with; empty when it begins with none.
QString timeStampOf(const QString &label);
