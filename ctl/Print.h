// What the console tool writes: results on standard output, messages on standard error. Each line
// leaves at once: somebody may be waiting for it at the other end of a pipe.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace Print {

void line(const QString &text);
void json(const QJsonObject &object); // one line
void json(const QJsonArray &array);
void message(const QString &text); // "keldo-x-ctl: ..."
void trace(const QString &text);   // a line on standard error as it is

} // namespace Print
