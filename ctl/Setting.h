// One value given to the unit and read back.
#pragma once

#include "ctl/Property.h"
#include "ctl/UnitLink.h"

// The value that the unit has afterwards, which confirms what was asked. Fails for anything else.
QJsonValue settingOf(UnitLink &link, const Property &property, const QJsonValue &asked);

// Fails for a unit that does not have it.
void requireOffered(UnitLink &link, const Property &property);

QString lineOf(const Property &property, const QJsonValue &value); // "agc on"
