// Reading includes.
#include "Includes.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QRegularExpression>

QStringList quotedIncludes(const QString &source)
{
    static const QRegularExpression line(QStringLiteral(R"re(^\s*#\s*include\s*"([^"]+)")re"),
                                         QRegularExpression::MultilineOption);
    QStringList names;
    for (auto match = line.globalMatch(source); match.hasNext();)
        names.append(match.next().captured(1));
    return names;
}

// What the build makes of a window's design or a class's signals is no file of the tree.
bool isGenerated(const QString &name)
{
    return name.startsWith(QLatin1String("ui_")) || name.contains(QLatin1String("/ui_")) ||
           name.endsWith(QLatin1String(".moc")) ||
           QFileInfo(name).fileName().startsWith(QLatin1String("moc_"));
}

// Includes of Qt headers that belong neither to QtCore nor to QtSerialPort.
QStringList windowHeaders(const QString &source)
{
    static const QRegularExpression line(
        QStringLiteral(R"re(^\s*#\s*include\s*<(?:Qt\w+/)?(Q\w+)>)re"),
        QRegularExpression::MultilineOption);
    const QDir headers(QLibraryInfo::path(QLibraryInfo::HeadersPath));
    QStringList found;
    for (auto match = line.globalMatch(source); match.hasNext();) {
        const QString name = match.next().captured(1);
        if (!headers.exists(QStringLiteral("QtCore/") + name) &&
            !headers.exists(QStringLiteral("QtSerialPort/") + name))
            found.append(name);
    }
    return found;
}
