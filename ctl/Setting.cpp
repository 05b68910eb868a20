// Setting and reading back.
#include "ctl/Setting.h"

void requireOffered(UnitLink &link, const Property &property)
{
    const QString name = QString::fromLatin1(property.name);
    const bool has = !property.isOffered || property.isOffered(link.unit());
    if (link.isLost() || link.wire().isSilent() || !link.unit().PortIsOpen())
        throw link.failure(QStringLiteral("asked what it has"));
    if (!has)
        throw Failure(Exit::Refused, QStringLiteral("This unit has no %1.").arg(name));
}

QJsonValue settingOf(UnitLink &link, const Property &property, const QJsonValue &asked)
{
    const QString name = QString::fromLatin1(property.name);
    requireOffered(link, property);
    link.begin();
    property.write(link.unit(), asked);
    if (!link.isGood())
        throw link.failure(QStringLiteral("%1 was set").arg(name));
    // An echo tells what the unit heard, a reading what it has; some settings echo anything.
    QJsonValue has = property.read(link.unit());
    if (has.isUndefined())
        throw link.failure(QStringLiteral("asked for the %1 that was set").arg(name));
    const bool confirmed =
        property.confirms ? property.confirms(link.unit(), asked, has) : asked == has;
    if (!confirmed)
        throw Failure(Exit::Refused,
                      QStringLiteral("The unit did not take %1 %2: it has %3.")
                          .arg(name, textOf(property, asked), textOf(property, has)));
    return has;
}

QString lineOf(const Property &property, const QJsonValue &value)
{
    return QString::fromLatin1(property.name) + QLatin1Char(' ') + textOf(property, value);
}
