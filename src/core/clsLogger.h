// The event log: shows events on its display and, when switched on, appends them to a file.
#pragma once

#include "core/EventLog.h"

#include <functional>
#include <memory>

class clsLogger : public EventLog
{
public:
    using FileMaker = std::function<std::unique_ptr<LogFile>()>;

    ~clsLogger() override; // closes the file

    bool VOverwrite() const { return m_overwrite; }
    void setVOverwrite(bool overwrite) { m_overwrite = overwrite; }

    std::shared_ptr<EventDisplay> displayWindow() const { return m_display; }
    void setDisplayWindow(std::shared_ptr<EventDisplay> window) { m_display = std::move(window); }
    bool hasDisplay() const override { return m_display != nullptr; }

    void setLogFileName(const QString &name) { m_fileName = name; }
    void setLogPath(const QString &path) { m_path = path; }
    void setFileMaker(FileMaker maker) { m_makeFile = std::move(maker); }

    // Shows and writes the event with the present date and time. The file gets it only while it is
    // active, see FileOpen, and the display's logging entry is checked.
    void LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay) override;

    // Creates the folder when it is not there. Returns True, also after a reported failure.
    bool MakeDir(const QString &path);

    // Writes one line; a failed write is reported and ends file logging.
    void WriteToLogFile(const QString &line);

    // Opens path + "\" + file name for output, overwriting a log of that name. On failure file
    // logging stays off, silently.
    void FileOpen();
    bool isFileActive() const { return m_fileActive; }

private:
    void closeFile();

    bool m_overwrite = true;
    std::shared_ptr<EventDisplay> m_display;
    QString m_fileName = QStringLiteral("log.txt");
    QString m_path = QStringLiteral("C:\\");
    bool m_fileActive = false;
    std::unique_ptr<LogFile> m_file;
    FileMaker m_makeFile;
};
