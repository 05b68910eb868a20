// The check of IPv4 addresses.
#include "ui/dialogs/IPAddress.h"

#include "core/TextNumbers.h"

#include <QStringList>

#include <algorithm>

static bool isValidPart(const QString &part)
{
    if (!isNumeric(part) || part.isEmpty() || part.size() > 3)
        return false;
    const double value = numericValue(part);
    return value >= 0 && value <= 255;
}

bool IsValidIPAddress(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'), Qt::KeepEmptyParts);
    return parts.size() == 4 && std::all_of(parts.cbegin(), parts.cend(), isValidPart);
}
