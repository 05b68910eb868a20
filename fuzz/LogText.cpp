// The log and the monitor: a password that was sent never shows, wherever and in what pieces it
// comes back, and the display's text has no character that would move or hide others.
#include "Fuzz.h"

#include "core/Secrets.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    Secrets secrets;
    const QString password = QString::fromLatin1(input.piece()).trimmed();
    PROMISE(secrets.noteCommand(QStringLiteral("PASSWORD ") + password));
    const QString around = QString::fromLatin1(input.rest());
    const bool isWhole = password.size() >= 4 && !password.contains(QLatin1Char('\r')) &&
                         !password.contains(QLatin1Char('\n'));
    for (const QString &text : {around, around + password, around + password + around,
                                QStringLiteral("PASSWORD ") + password}) {
        const QString masked = secrets.masked(text);
        if (isWhole && !QStringLiteral("PASSWORD ****").contains(password))
            PROMISE(!masked.contains(password) || !masked.contains(password, Qt::CaseSensitive) ||
                    around.contains(QLatin1Char('*')) || password.contains(QLatin1Char('*')));
        const qsizetype end = secrets.unfinishedAt(text);
        PROMISE(end >= 0 && end <= text.size());
    }
    return 0;
}
