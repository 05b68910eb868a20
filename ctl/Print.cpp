// Lines on the two standard streams.
#include "ctl/Print.h"

#include <QJsonDocument>

#include <cstdio>

static void write(std::FILE *stream, QByteArray bytes)
{
    bytes.append('\n');
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

// A unit or a receiver may send anything, and a terminal obeys control characters.
static QByteArray printable(const QString &text)
{
    QString shown;
    for (const QChar character : text)
        shown += character.isPrint()
                     ? QString(character)
                     : QStringLiteral("\\%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
    return shown.toLocal8Bit();
}

void Print::line(const QString &text)
{
    write(stdout, printable(text));
}

void Print::json(const QJsonObject &object)
{
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void Print::json(const QJsonArray &array)
{
    write(stdout, QJsonDocument(array).toJson(QJsonDocument::Compact));
}

void Print::message(const QString &text)
{
    write(stderr, "keldo-x-ctl: " + printable(text));
}

void Print::trace(const QString &text)
{
    write(stderr, printable(text));
}
