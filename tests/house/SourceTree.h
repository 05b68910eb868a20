// The files of the source tree, for tests that read them.
#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

inline QDir sourceTree()
{
    return QDir(qEnvironmentVariable("KELDOX_SOURCE_DIR"));
}

// The .cpp and .h files below a folder of the tree, by their path in the tree, sorted.
inline QStringList sourceFiles(const QString &folder)
{
    QStringList files;
    QDirIterator entries(sourceTree().filePath(folder),
                         {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(sourceTree().relativeFilePath(entries.next()));
    files.sort();
    return files;
}

inline QString contentsOf(const QString &file)
{
    QFile source(sourceTree().filePath(file));
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}
