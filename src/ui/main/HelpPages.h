// The manual and the protocol reference, as pages beside the program.
#pragma once

#include <QString>

// Where the pages lie, seen from the running program: so an installation may be moved.
QString helpFolder();

// Opens a page with the desktop's own program for it, or says why that cannot be.
void showHelpPage(const QString &page, const QString &folder = helpFolder());
