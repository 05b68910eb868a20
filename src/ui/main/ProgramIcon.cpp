// The icon's pictures as resources.
#include "ui/main/ProgramIcon.h"

// A resource in a library is not there before somebody asks for it.
static void loadResource()
{
    Q_INIT_RESOURCE(keldo_x);
}

QIcon programIcon()
{
    loadResource();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/keldo-x-%1.png").arg(size));
    return icon;
}
