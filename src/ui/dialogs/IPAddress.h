// The check of IPv4 addresses as the input box accepts them. No window asks the box for one: it is
// kept as a ready component.
#pragma once

#include <QString>

// Four parts between points, each of 1 to 3 characters, numeric and from 0 to 255. Deliberately no
// more than that: a hexadecimal part like "&H2" passes, a part like "0000" is too long.
bool IsValidIPAddress(const QString &text);
