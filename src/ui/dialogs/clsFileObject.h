// One text file, chosen through the file dialog and read or written line by line. Errors are
// reported and never passed on: success tells. At most one file is open at a time.
// The log writes through it; choosing and reading a file are reached by no window and kept as ready
// components.
#pragma once

#include "core/EventLog.h"

#include <QFile>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

class frmCommonDialog;

class clsFileObject : public LogFile
{
public:
    // Options of the file dialog: what may be chosen must exist, and an existing file that is to
    // be overwritten is asked for.
    static constexpr std::int32_t pathMustExist = 0x800;
    static constexpr std::int32_t fileMustExist = 0x1000;
    static constexpr std::int32_t overwritePrompt = 0x2;

    // The log tells of its file's failures itself: two boxes for one failure would be one too many.
    enum class Errors { Reported, LeftToOwner };
    // Private files are made, or become, readable and writable by the user alone when they are
    // written.
    enum class Readers { Usual, UserAlone };

    explicit clsFileObject(Errors errors = Errors::Reported, Readers readers = Readers::Usual);
    ~clsFileObject() override; // closes the file

    // Full name; "\" stands for the platform's own separator.
    QString pathname() const { return m_pathname; }
    void setPathname(const QString &name) override { m_pathname = name; }
    QString defaultDir() const { return m_defaultDir; } // where the dialog starts
    void setDefaultDir(const QString &folder) { m_defaultDir = folder; }
    QString Filter() const { return m_filter; } // "name|pattern|name|pattern"
    void setFilter(const QString &filter) { m_filter = filter; }
    std::int32_t Flags() const { return m_flags; }
    void setFlags(std::int32_t flags) { m_flags = flags; }
    QString dialogTitle() const { return m_dialogTitle; }
    void setDialogTitle(const QString &title) { m_dialogTitle = title; }
    QString defaultExt() const { return m_defaultExt; } // added to a name to save without one
    void setDefaultExt(const QString &extension) { m_defaultExt = extension; }

    // "Open", "Save" or "Save As". The types offered follow the ending of pathname. The chosen name
    // becomes pathname; Cancel is reported as "user pressed cancel".
    void ChooseFile(const QString &mode);

    // The file that is open is to be closed first: else error 55. An empty name is reported as
    // "invalid filename".
    void OpenForInput();
    void OpenForOutput() override; // overwrites a file of that name
    void OpenForAppend() override; // goes on at its end

    QString Line_Input(); // without its line break; empty on a closed file
    // Writes the text as one line, ended by CR LF. Does nothing on a closed file.
    void Line_Output(const QString &text) override;
    bool EndOfFile() const; // also when no file is open
    void closeFile() override;

    // Lets the user choose a file and reads it whole.
    QStringList ReadTextFileIntoArrayOfStrings();
    void MakeReadOnly();

    bool isOpen() const { return m_file.isOpen(); }
    std::int16_t fileNumber() const { return m_fileNumber; } // the platform's; 0 when closed
    bool success() const override { return m_success; }
    QString failure() const override
    {
        return m_failure;
    } // kept where errors are left to the owner
    qint64 size() const override { return m_file.size(); }

private:
    template <class Step> bool attempt(const char *source, Step &&step, const char *extra = "");
    void open(const char *source, QIODevice::OpenMode mode, const char *extra = "");
    void openPrivate(QIODevice::OpenMode mode);

    Errors m_errors;
    Readers m_readers;
    QString m_failure;
    QString m_pathname;
    QString m_defaultDir;
    QString m_filter = QStringLiteral("All Files (*.*)|*.*");
    std::int32_t m_flags = pathMustExist | fileMustExist | overwritePrompt;
    QString m_dialogTitle;
    QString m_defaultExt;
    std::int16_t m_fileNumber = 0;
    bool m_success = false;
    QFile m_file;
    std::unique_ptr<frmCommonDialog> m_dialog;
};
