// The program's icon, made from packaging/icons/keldo-x.svg.
#pragma once

#include <QIcon>

QIcon programIcon();
