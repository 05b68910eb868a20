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

void Print::line(const QString &text)
{
    write(stdout, text.toLocal8Bit());
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
    write(stderr, (QStringLiteral("keldo-x-ctl: ") + text).toLocal8Bit());
}

void Print::trace(const QString &text)
{
    write(stderr, text.toLocal8Bit());
}
