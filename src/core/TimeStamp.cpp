// Time stamps, made once a second.
#include "core/TimeStamp.h"

#include <QDateTime>

QString timeStamp()
{
    static qint64 second = -1;
    static QString stamp;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (now != second) {
        second = now;
        stamp = QDateTime::fromSecsSinceEpoch(now).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    return stamp;
}

// By its pattern: a display looks here for every event.
QString timeStampOf(const QString &label)
{
    static const QString pattern = QStringLiteral("0000-00-00 00:00:00");
    if (label.size() < pattern.size())
        return {};
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar wanted = pattern.at(i);
        const bool isDigit = label.at(i) >= QLatin1Char('0') && label.at(i) <= QLatin1Char('9');
        if (wanted == QLatin1Char('0') ? !isDigit : label.at(i) != wanted)
            return {};
    }
    return label.left(pattern.size());
}
