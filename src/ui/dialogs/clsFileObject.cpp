// The file object over QFile.
#include "ui/dialogs/clsFileObject.h"

#include "core/ResumeNext.h"
#include "platform/RunTimeError.h"
#include "ui/dialogs/frmCommonDialog.h"
#include "ui/dialogs/modFileHandler.h"

#include <QDir>
#include <QFileInfo>

static constexpr int noFileChosen = 3101;

static const char readFailure[] = "There was an error while attempting to read the file";

static QString nativeName(QString name)
{
    return name.replace(QLatin1Char('\\'), QDir::separator());
}

template <class Step>
bool clsFileObject::attempt(const char *source, Step &&step, const char *extra)
{
    if (m_errors == Errors::Reported)
        return reportAndEnd(source, std::forward<Step>(step), extra);
    try {
        step();
        return true;
    } catch (const std::exception &error) {
        m_failure = QString::fromUtf8(error.what());
        return false;
    }
}

clsFileObject::clsFileObject(Errors errors, Readers readers)
    : m_errors(errors), m_readers(readers), m_dialog(std::make_unique<frmCommonDialog>())
{
}

clsFileObject::~clsFileObject()
{
    if (m_file.isOpen())
        m_file.close();
}

void clsFileObject::ChooseFile(const QString &mode)
{
    m_success = false;
    m_success = attempt("clsFileObject.ChooseFile", [&] {
        FileChooser::Request request;
        if (mode == QLatin1String("Open"))
            request.mode = FileChooser::Mode::Open;
        else if (mode == QLatin1String("Save") || mode == QLatin1String("Save As"))
            request.mode = FileChooser::Mode::Save;
        else
            throw RunTimeError(ErrorNumber::InvalidProcedureCall);
        m_dialogTitle = QStringLiteral("Choose a filename");
        m_filter = FilterForName(m_pathname);
        request.title = m_dialogTitle;
        request.folder = nativeName(m_defaultDir);
        request.filter = m_filter;
        request.defaultExtension = m_defaultExt;
        const auto chosen = m_dialog->choose(request);
        if (!chosen)
            throw RunTimeError(noFileChosen, QStringLiteral("user pressed cancel"));
        m_pathname = *chosen;
    });
}

void clsFileObject::open(const char *source, QIODevice::OpenMode mode, const char *extra)
{
    m_success = false;
    m_success = attempt(
        source,
        [&] {
            if (m_pathname.trimmed().isEmpty())
                throw RunTimeError(ErrorNumber::BadFileName, QStringLiteral("invalid filename"));
            if (m_file.isOpen())
                throw RunTimeError(ErrorNumber::FileAlreadyOpen);
            m_file.setFileName(nativeName(m_pathname));
            if (m_readers == Readers::UserAlone && mode.testFlag(QIODevice::WriteOnly))
                openPrivate(mode);
            else if (!m_file.open(mode))
                throw RunTimeError(ErrorNumber::FileAccess, m_file.errorString());
            m_fileNumber = static_cast<std::int16_t>(m_file.handle());
        },
        extra);
}

// Before the first byte is written. A device that stands in the file's place keeps its rights.
void clsFileObject::openPrivate(QIODevice::OpenMode mode)
{
    const auto userAlone = QFile::ReadOwner | QFile::WriteOwner;
    if (!m_file.open(mode, userAlone))
        throw RunTimeError(ErrorNumber::FileAccess, m_file.errorString());
    if (QFileInfo(m_file).isFile() && !m_file.setPermissions(userAlone)) {
        const QString why = m_file.errorString();
        m_file.close();
        throw RunTimeError(ErrorNumber::FileAccess, why);
    }
}

void clsFileObject::OpenForInput()
{
    open("clsFileObject.OpenForInput", QIODevice::ReadOnly);
}

void clsFileObject::OpenForOutput()
{
    open("clsFileObject.OpenForOutput", QIODevice::WriteOnly | QIODevice::Truncate);
}

void clsFileObject::OpenForAppend()
{
    open("clsFileObject.OpenForAppend", QIODevice::WriteOnly | QIODevice::Append);
}

QString clsFileObject::Line_Input()
{
    QString line;
    if (!m_file.isOpen())
        return line;
    m_success = false;
    m_success = attempt(
        "clsFileObject.Line_Input",
        [&] {
            if (m_file.atEnd())
                throw RunTimeError(ErrorNumber::InputPastEnd);
            QByteArray bytes = m_file.readLine();
            if (bytes.isEmpty() || m_file.error() != QFileDevice::NoError)
                throw RunTimeError(ErrorNumber::DeviceFailure, m_file.errorString());
            while (bytes.endsWith('\n') || bytes.endsWith('\r'))
                bytes.chop(1);
            line = QString::fromUtf8(bytes);
        },
        readFailure);
    return line;
}

void clsFileObject::Line_Output(const QString &text)
{
    if (!m_file.isOpen())
        return;
    m_success = false;
    // Out of the program at once: a log is read after things went wrong.
    m_success = attempt("clsFileObject.Line_Output", [&] {
        const QByteArray line = text.toUtf8() + "\r\n";
        if (m_file.write(line) != line.size() || !m_file.flush())
            throw RunTimeError(ErrorNumber::DeviceFailure, m_file.errorString());
    });
}

bool clsFileObject::EndOfFile() const
{
    return !m_file.isOpen() || m_file.atEnd();
}

void clsFileObject::closeFile()
{
    if (!m_file.isOpen())
        return;
    m_success = false;
    m_fileNumber = 0;
    m_success = attempt("clsFileObject.closeFile", [this] {
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            throw RunTimeError(ErrorNumber::DeviceFailure, m_file.errorString());
    });
}

QStringList clsFileObject::ReadTextFileIntoArrayOfStrings()
{
    QStringList lines;
    ChooseFile(QStringLiteral("Open"));
    if (!m_success)
        return lines;
    open("clsFileObject.ReadTextFileIntoArrayOfStrings", QIODevice::ReadOnly, readFailure);
    if (!m_success) // a file that was open before stays open
        return lines;
    bool whole = m_success;
    while (whole && !EndOfFile()) {
        lines.append(Line_Input());
        whole = m_success;
    }
    closeFile();
    m_success = whole;
    return lines;
}

void clsFileObject::MakeReadOnly()
{
    m_success = false;
    m_success = attempt("clsFileObject.MakeReadOnly", [this] {
        QFile file(nativeName(m_pathname));
        if (m_pathname.trimmed().isEmpty())
            throw RunTimeError(ErrorNumber::BadFileName, QStringLiteral("invalid filename"));
        const auto writable =
            QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
        if (!file.exists() || !file.setPermissions(file.permissions() & ~writable))
            throw RunTimeError(ErrorNumber::FileAccess, file.errorString());
    });
}
