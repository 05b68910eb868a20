// The path helpers.
#include "ui/dialogs/modFileHandler.h"

#include "core/ResumeNext.h"
#include "platform/RunTimeError.h"
#include "widgets/FileChooser.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

static const char saveFailure[] = "There was a problem while attempting to save the data";

static QString native(QString name)
{
    return name.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

QString FilterForName(const QString &fileName)
{
    QString all = QStringLiteral("All Files (*.*)|*.*");
    const QString ending = QFileInfo(native(fileName)).suffix().toLower();
    if (ending == QLatin1String("txt"))
        return QStringLiteral("Text Files (*.TXT)|*.TXT|") + all;
    if (ending == QLatin1String("wav"))
        return QStringLiteral("Audio Files (*.WAV)|*.WAV|") + all;
    if (ending == QLatin1String("bmp"))
        return QStringLiteral("bitmap Files (*.BMP)|*.BMP|") + all;
    if (ending == QLatin1String("hpl"))
        return QStringLiteral("HPGL Files (*.HPL)|*.HPL|") + all;
    return all;
}

QString GetPathFromName(const QString &fileName)
{
    const QString name = native(fileName);
    const auto separator = name.lastIndexOf(QLatin1Char('/'));
    return separator < 0 ? QString() : fileName.left(separator);
}

QString GetNameFromPath(const QString &fileName)
{
    return fileName.mid(native(fileName).lastIndexOf(QLatin1Char('/')) + 1);
}

QString GetAbsolutePathFromFilename(const QString &fileName)
{
    return fileName.isEmpty() ? QString() : QFileInfo(native(fileName)).absoluteFilePath();
}

bool MakeDir(const QString &path)
{
    return reportAndEnd("modFileHandler.MakeDir", [&] {
        if (path.trimmed().isEmpty() || !QDir().mkpath(native(path)))
            throw RunTimeError(ErrorNumber::FileAccess);
    });
}

// The old content stays when the new one cannot be written whole.
bool SaveTextFile(const QString &fileName, const QString &text)
{
    return reportAndEnd(
        "modFileHandler.SaveTextFile",
        [&] {
            if (fileName.trimmed().isEmpty())
                throw RunTimeError(ErrorNumber::BadFileName, QStringLiteral("invalid filename"));
            QSaveFile file(native(fileName));
            const QByteArray bytes = text.toUtf8();
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
                !file.commit())
                throw RunTimeError(ErrorNumber::FileAccess, file.errorString());
        },
        saveFailure);
}

QString GetAFolder()
{
    QString folder;
    reportAndEnd("modFileHandler.GetAFolder", [&] {
        folder = FileChooser::choose(
                     {FileChooser::Mode::Folder, QStringLiteral("Choose a folder"), {}, {}, {}})
                     .value_or(QString());
    });
    return folder;
}
