// What a source file includes, for tests that read it.
#pragma once

#include <QString>
#include <QStringList>

QStringList quotedIncludes(const QString &source);

// What the build makes of a window's design or a class's signals is no file of the tree.
bool isGenerated(const QString &name);

// Includes of Qt headers that belong neither to QtCore nor to QtSerialPort.
QStringList windowHeaders(const QString &source);
