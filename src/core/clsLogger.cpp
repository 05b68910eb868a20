// The event log over its display and its file.
#include "core/clsLogger.h"

#include "core/ResumeNext.h"
#include "platform/RunTimeError.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>

static const char logFailure[] = "There was a problem while attempting to write to the log file";

// The person's own way to write a date, and the time to the second: the short form of many
// languages leaves the seconds out, which a log cannot.
static QString now()
{
    const QDateTime moment = QDateTime::currentDateTime();
    return QLocale().toString(moment.date(), QLocale::ShortFormat) +
           moment.time().toString(QStringLiteral(" HH:mm:ss"));
}

clsLogger::~clsLogger()
{
    closeFile();
}

void clsLogger::LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay)
{
    const bool write = toFile && m_fileActive;
    if (toDisplay && m_display)
        m_display->Display(now() + QLatin1Char(' ') + source, text);
    if (write)
        WriteToLogFile(now() + QLatin1Char(' ') + source + QStringLiteral(": ") + text +
                       QStringLiteral("\r\n"));
}

bool clsLogger::MakeDir(const QString &path)
{
    reportAndEnd(
        "clsLogger",
        [&] {
            QString folder = path;
            folder.replace(QLatin1Char('\\'), QLatin1Char('/'));
            if (!QDir().mkpath(folder))
                throw RunTimeError(ErrorNumber::FileAccess);
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
                // The line has its own line break and the printing adds one: an empty line follows
                // each entry, which keeps entries of several lines apart.
                file->Line_Output(line);
                if (!file->success())
                    throw RunTimeError(ErrorNumber::FileAccess);
                m_file = std::move(file);
            } catch (...) {
                m_fileActive = false;
                file->closeFile();
                throw;
            }
        },
        logFailure);
}

void clsLogger::FileOpen()
{
    closeFile();
    m_fileActive = true;
    if (m_path.isEmpty() || m_fileName.isEmpty() || !m_makeFile) {
        m_fileActive = false;
        return;
    }
    MakeDir(m_path);
    // A path that ends in a separator gives two of them, which file systems take for one.
    const QString fullName = m_path + QLatin1Char('\\') + m_fileName;
    if (m_display)
        m_display->Display(QStringLiteral("FileOpen"), QStringLiteral("opening ") + fullName +
                                                           QStringLiteral(" as the log file"));
    m_file = m_makeFile();
    m_file->setPathname(fullName);
    m_file->OpenForOutput();
    if (!m_file->success())
        closeFile();
}

void clsLogger::closeFile()
{
    if (m_file)
        m_file->closeFile();
    m_file.reset();
    m_fileActive = false;
}
