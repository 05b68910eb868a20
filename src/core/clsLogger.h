// The event log: shows events on its display and, when switched on, appends them to a file.
#pragma once

#include "core/EventLog.h"

#include <QLockFile>

#include <functional>
#include <memory>

class RunTimeError;

class clsLogger : public EventLog
{
public:
    using FileMaker = std::function<std::unique_ptr<LogFile>()>;

    // A longer file makes room: Keldo-X.log becomes Keldo-X.old.log, in the place of an older one.
    static constexpr qint64 longestFile = 10'000'000; // bytes

    ~clsLogger() override; // closes the file

    bool VOverwrite() const { return m_overwrite; }
    void setVOverwrite(bool overwrite) { m_overwrite = overwrite; }

    std::shared_ptr<EventDisplay> displayWindow() const { return m_display; }
    void setDisplayWindow(std::shared_ptr<EventDisplay> window) { m_display = std::move(window); }
    bool hasDisplay() const override { return m_display != nullptr; }

    void setLogFileName(const QString &name) { m_fileName = name; }
    void setLogPath(const QString &path) { m_path = path; }
    void setFileMaker(FileMaker maker) { m_makeFile = std::move(maker); }

    // Shows and writes the event with the present date and time, without passwords, and the
    // beginning of a text that is too long for a line. The file gets it only while it is active,
    // see FileOpen, and the display's logging entry is checked.
    void LogEvent(const QString &source, const QString &text, bool toFile, bool toDisplay) override;

    // Creates the folder when it is not there. Returns True, also after a reported failure.
    bool MakeDir(const QString &path);

    // Writes one line; a failed write is reported, unchecks the display's logging entry and ends
    // file logging.
    void WriteToLogFile(const QString &line);

    // Opens path + "\" + file name for output, overwriting a log of that name. On failure file
    // logging stays off, silently. A log that another program writes is left alone: this one then
    // appends to a file beside it, whose name has the number of its process.
    void FileOpen();
    bool isFileActive() const { return m_fileActive; }

    // FileOpen at the first time of a run; later the file goes on where it ended.
    QString startFileLogging(const QString &folder) override;

private:
    enum class Opening { Overwriting, Appending };

    QString lockedFileName();
    RunTimeError failed(const QString &why) const;
    void openFile(Opening opening);
    void closeFile();
    void rotate(LogFile &file) const;

    bool m_overwrite = true;
    std::shared_ptr<EventDisplay> m_display;
    QString m_fileName = QStringLiteral("log.txt");
    QString m_path = QStringLiteral("C:\\");
    bool m_fileActive = false;
    QString m_fullName;    // of the file that is or was to be open
    bool m_erased = false; // by this run's first opening: from then on the file only grows
    QString m_failure;     // of the last opening
    std::unique_ptr<LogFile> m_file;
    std::unique_ptr<QLockFile>
        m_lock; // held from the opening to the end, whether it is written or not
    FileMaker m_makeFile;
};
