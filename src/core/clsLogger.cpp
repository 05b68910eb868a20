// The event log over its display and its file.
#include "core/clsLogger.h"

#include "core/ResumeNext.h"
#include "core/Secrets.h"
#include "core/TextStart.h"
#include "core/TimeStamp.h"
#include "platform/RunTimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <filesystem>

static const char logFailure[] = "There was a problem while attempting to write to the log file";

// So much of a text is searched for passwords; the rest is only counted.
static constexpr qsizetype longestText = 65536;

static QString withSlashes(QString name)
{
    return name.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

// For the operator's eyes.
static QString withReason(const QString &name, const QString &why)
{
    return QDir::toNativeSeparators(QDir::cleanPath(withSlashes(name))) + QStringLiteral(": ") +
           why;
}

static std::filesystem::path filePath(const QString &name)
{
    return QFileInfo(withSlashes(name)).filesystemAbsoluteFilePath();
}

// "Keldo-X.log" with "old" is "Keldo-X.old.log".
static QString besideName(const QString &name, const QString &word)
{
    const QFileInfo file(name);
    const QString ending = file.suffix().isEmpty() ? QString() : QLatin1Char('.') + file.suffix();
    return name.chopped(ending.size()) + QLatin1Char('.') + word + ending;
}

// Empty, or why the folder is not there.
static QString makeFolder(const QString &path)
{
    std::error_code error;
    const auto folder = filePath(path);
    std::filesystem::create_directories(folder, error);
    if (!error && !std::filesystem::is_directory(folder, error) && !error)
        error = std::make_error_code(std::errc::not_a_directory);
    return error ? withReason(path, QString::fromLocal8Bit(error.message())) : QString();
}

clsLogger::~clsLogger()
{
    closeFile();
}

void clsLogger::LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay)
{
    const bool write = toFile && m_fileActive;
    const QString label = timeStamp() + QLatin1Char(' ') + source; // one moment for both
    const QString searched = text.left(longestText);
    const QString line = startOfText(secrets().masked(searched), text.size() - searched.size());
    if (toDisplay && m_display)
        m_display->Display(label, line);
    if (write)
        WriteToLogFile(label + QStringLiteral(": ") + line + QStringLiteral("\r\n"));
}

bool clsLogger::MakeDir(const QString &path)
{
    reportAndEnd(
        "clsLogger",
        [&] {
            if (const QString failure = makeFolder(path); !failure.isEmpty())
                throw RunTimeError(ErrorNumber::FileAccess, failure);
        },
        logFailure);
    return true;
}

void clsLogger::WriteToLogFile(const QString &line)
{
    if (!m_display || !m_display->isFileLoggingChecked() || !m_file)
        return;
    // While it is being written the log has no file: the report of a failure must not come back.
    std::unique_ptr<LogFile> file = std::move(m_file);
    reportAndEnd(
        "clsLogger.WriteToLogFile",
        [&] {
            try {
                if (file->size() > longestFile)
                    rotate(*file);
                // The line has its own line break and the printing adds one: an empty line follows
                // each entry, which keeps entries of several lines apart.
                file->Line_Output(line);
                if (!file->success())
                    throw failed(file->failure());
                m_file = std::move(file);
            } catch (...) {
                m_fileActive = false;
                file->closeFile();
                m_display->fileLoggingEnded();
                throw;
            }
        },
        logFailure);
}

RunTimeError clsLogger::failed(const QString &why) const
{
    return RunTimeError(ErrorNumber::FileAccess, withReason(m_fullName, why));
}

void clsLogger::rotate(LogFile &file) const
{
    const QString old = besideName(m_fullName, QStringLiteral("old"));
    file.closeFile();
    std::error_code error;
    std::filesystem::rename(filePath(m_fullName), filePath(old), error);
    if (error)
        throw failed(QString::fromLocal8Bit(error.message()));
    file.OpenForOutput();
    if (!file.success())
        throw failed(file.failure());
}

// The log belongs to one program at a time. Where no lock can be made, the file is tried without.
QString clsLogger::lockedFileName()
{
    const QString lockName =
        withSlashes(m_path) + QLatin1Char('/') + m_fileName + QStringLiteral(".lock");
    if (m_lock && m_lock->fileName() == lockName && m_lock->isLocked())
        return m_fileName;
    m_lock = std::make_unique<QLockFile>(lockName);
    m_lock->setStaleLockTime(0); // the lock of a program that lives is never old
    if (m_lock->tryLock(0) || m_lock->error() != QLockFile::LockFailedError)
        return m_fileName;
    return besideName(m_fileName, QString::number(QCoreApplication::applicationPid()));
}

void clsLogger::FileOpen()
{
    closeFile();
    if (m_path.isEmpty() || m_fileName.isEmpty() || !m_makeFile)
        return;
    MakeDir(m_path);
    const QString name = lockedFileName();
    // A path that ends in a separator gives two of them, which file systems take for one.
    m_fullName = m_path + QLatin1Char('\\') + name;
    if (m_display)
        m_display->Display(QStringLiteral("FileOpen"), QStringLiteral("opening ") + m_fullName +
                                                           QStringLiteral(" as the log file"));
    openFile(name == m_fileName ? Opening::Overwriting : Opening::Appending);
}

void clsLogger::openFile(Opening opening)
{
    m_file = m_makeFile();
    m_file->setPathname(m_fullName);
    if (opening == Opening::Overwriting)
        m_file->OpenForOutput();
    else
        m_file->OpenForAppend();
    m_fileActive = m_file->success();
    m_failure = m_fileActive ? QString() : withReason(m_fullName, m_file->failure());
    if (m_fileActive)
        m_erased = true;
    else
        closeFile();
}

QString clsLogger::startFileLogging(const QString &folder)
{
    if (m_fileActive)
        return {};
    m_failure = QStringLiteral("The log has no file.");
    const bool goesOn = m_erased && m_path == folder;
    setLogPath(folder);
    if (QString failure = makeFolder(folder); !failure.isEmpty())
        return failure;
    if (goesOn)
        openFile(Opening::Appending);
    else
        FileOpen();
    return m_failure;
}

void clsLogger::closeFile()
{
    if (m_file)
        m_file->closeFile();
    m_file.reset();
    m_fileActive = false;
}
