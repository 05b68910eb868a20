// The program's icon, made from packaging/icons/keldo-x.svg.
#pragma once

#include <QIcon>

// For the screens that there are; the application object has been made.
QIcon programIcon();
