// The icon's pictures as resources.
#include "ui/main/ProgramIcon.h"

#include <QGuiApplication>

// A resource in a library is not there before somebody asks for it.
static void loadResource()
{
    Q_INIT_RESOURCE(keldo_x);
}

static constexpr int largestShown = 64; // before the screen's scale

// The window system gets every picture for every window: a larger one than any window or task list
// shows would take a tenth of the start.
QIcon programIcon()
{
    loadResource();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        if (size <= largestShown * qApp->devicePixelRatio())
            icon.addFile(QStringLiteral(":/icons/keldo-x-%1.png").arg(size));
    return icon;
}
