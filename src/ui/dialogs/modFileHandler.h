// Path helpers and the file types that file dialogs offer. No window reaches them: they are kept as
// ready components.
#pragma once

#include <QString>

// The dialog's filter for the ending of a file's name, whatever its case: text, audio, bitmap and
// HPGL files first, or all files.
QString FilterForName(const QString &fileName);

// The folder part without its last separator, empty for a bare name; and the rest. Both separators
// count on every platform.
QString GetPathFromName(const QString &fileName);
QString GetNameFromPath(const QString &fileName);
// With the working folder in front of a relative name; empty for an empty one.
QString GetAbsolutePathFromFilename(const QString &fileName);

// Creates the folder, and those above it, when it does not exist. False after a reported failure.
bool MakeDir(const QString &path);

// Writes the text as the file's whole content, in UTF-8. False after a reported failure.
bool SaveTextFile(const QString &fileName, const QString &text);

// Lets the user choose a folder; empty when that was cancelled.
QString GetAFolder();
