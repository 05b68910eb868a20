// The one door of file and folder dialogs. It falls through once the program is ending; tests
// answer here. No window reaches it: it is kept as a ready component.
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace FileChooser {

enum class Mode { Open, Save, Folder };

struct Request
{
    Mode mode = Mode::Open;
    QString title;
    QString folder;           // where the dialog starts
    QString filter;           // "Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*"
    QString defaultExtension; // without its point; added to a name to save that has none
};

// Shows the dialog over the active window. Nothing when it was cancelled.
std::optional<QString> choose(const Request &request);

// The filter in Qt's words: "Text Files (*.TXT *.txt);;All Files (*)".
QString toQtFilter(const QString &filter);

} // namespace FileChooser
