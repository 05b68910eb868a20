// The IO monitor's display and its debug switches. Raw commands are in frmIODaemon_commands.cpp.
#include "ui/monitor/frmIODaemon.h"

#include "app/AppState.h"
#include "core/DebugSwitches.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "core/clsLogger.h"
#include "discovery/clsSeeker.h"
#include "ui_frmIODaemon.h"

#include <QFontDatabase>
#include <QStandardPaths>

static constexpr int paintDelayMs = 30;
static constexpr double keptShare = 0.8; // of an overlong display

frmIODaemon::frmIODaemon() : m_ui(std::make_unique<Ui::frmIODaemon>())
{
    m_ui->setupUi(this);
    m_ui->Text1->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    for (QMenu *menu : {m_ui->mnuCommand, m_ui->mnuDebug, m_ui->mnuHelp})
        menu->setToolTipsVisible(true);
    m_paintTimer.setSingleShot(true);
    m_paintTimer.setInterval(paintDelayMs);
    connect(&m_paintTimer, &QTimer::timeout, this, &frmIODaemon::paintText);
    connect(m_ui->cmdClear, &QPushButton::clicked, this, &frmIODaemon::cmdClear_Click);
    // A check entry has inverted its mark before its handler runs.
    connect(m_ui->mnuDebugSerialBytesSent, &QAction::triggered, this,
            &frmIODaemon::mnuDebugSerialBytesSent_Click);
    connect(m_ui->mnuDebugSerialBytesReceived, &QAction::triggered, this,
            &frmIODaemon::mnuDebugSerialBytesReceived_Click);
    connect(m_ui->mnuDebugDUT, &QAction::triggered, this, &frmIODaemon::mnuDebugDUT_Click);
    connect(m_ui->mnuDebugLogging, &QAction::triggered, this, &frmIODaemon::mnuDebugLogging_Click);
    bindCommands();
}

frmIODaemon::~frmIODaemon() = default;

void frmIODaemon::load()
{
    showPortInCaption();
}

void frmIODaemon::show()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QMainWindow::show();
    raise();
    activateWindow();
}

bool frmIODaemon::isFileLoggingChecked() const
{
    return m_ui->mnuDebugLogging->isChecked();
}

void frmIODaemon::Display(const QString &source, const QString &text)
{
    reportAndEnd("frmIODaemon.Display", [&] { append(source, text); });
}

void frmIODaemon::append(const QString &source, const QString &text)
{
    const QString lineBreak = QStringLiteral("\r\n");
    const bool isBareBreak = text == lineBreak;
    if (!isBareBreak) {
        if (m_ui->mnuDebugDisplaySource->isChecked())
            m_text += source + QStringLiteral(": ");
        m_text += text;
    }
    m_text += lineBreak;
    // By proportion rather than to a fixed size, so that it is not cut at every line. A bare line
    // break is not cut behind, unless nothing else comes at all.
    const auto length = m_text.size();
    if (length > (isBareBreak ? 2 * displayLimit : displayLimit))
        m_text.remove(
            0, length - static_cast<int>(roundHalfEven(keptShare * static_cast<double>(length))));
    if (isVisible() && !m_paintTimer.isActive())
        m_paintTimer.start();
}

// The caret goes to the end, where the newest line is.
void frmIODaemon::paintText()
{
    m_ui->Text1->setPlainText(m_text);
    m_ui->Text1->moveCursor(QTextCursor::End);
}

// Queued: listing tries the ports one after the other, with the window on the screen.
void frmIODaemon::showEvent(QShowEvent *event)
{
    paintText();
    QMainWindow::showEvent(event);
    if (!event->spontaneous())
        QMetaObject::invokeMethod(this, &frmIODaemon::listPorts, Qt::QueuedConnection);
}

void frmIODaemon::cmdClear_Click()
{
    reportAndEnd("frmIODaemon.cmdClear_Click", [this] {
        m_text.clear();
        m_ui->Text1->clear();
    });
}

void frmIODaemon::mnuDebugSerialBytesSent_Click(bool checked)
{
    reportAndEnd("frmIODaemon.mnuDebugSerialBytesSent_Click",
                 [checked] { debugSwitches().bytesSent = checked; });
}

void frmIODaemon::mnuDebugSerialBytesReceived_Click(bool checked)
{
    reportAndEnd("frmIODaemon.mnuDebugSerialBytesReceived_Click",
                 [checked] { debugSwitches().bytesReceived = checked; });
}

void frmIODaemon::mnuDebugDUT_Click(bool checked)
{
    reportAndEnd("frmIODaemon.mnuDebugDUT_Click",
                 [checked] { debugSwitches().detailedErrors = checked; });
}

// The file is opened at the first check of a run and kept: opening it again would erase it.
void frmIODaemon::mnuDebugLogging_Click(bool checked)
{
    reportAndEnd("frmIODaemon.mnuDebugLogging_Click", [&] {
        const auto logger = std::dynamic_pointer_cast<clsLogger>(eventLog());
        if (!checked || !logger || logger->isFileActive())
            return;
        logger->setLogPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           QStringLiteral("/keldo-x"));
        logger->FileOpen();
        // A mark without a file behind it would promise a log that nobody writes.
        if (!logger->isFileActive())
            m_ui->mnuDebugLogging->setChecked(false);
    });
}
