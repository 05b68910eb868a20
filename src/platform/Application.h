// What the program is called, wherever a title is shown or settings are stored, and its version.
#pragma once

#include <QString>

inline QString applicationTitle()
{
    return QStringLiteral("KELDO-X Control Program");
}

// "major.minor.revision"
inline QString applicationVersion()
{
    return QStringLiteral(KELDOX_VERSION);
}
