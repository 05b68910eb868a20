// The IO monitor's display and its debug switches. Raw commands are in frmIODaemon_commands.cpp.
#include "ui/monitor/frmIODaemon.h"

#include "app/AppState.h"
#include "core/DebugSwitches.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextStart.h"
#include "core/TimeStamp.h"
#include "discovery/clsSeeker.h"
#include "ui_MonitorPane.h"
#include "ui_frmIODaemon.h"
#include "widgets/FileChooser.h"

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>

#include <algorithm>

// A single event is seen at once; under load the display is painted a few times a second.
static constexpr int paintDelayMs = 30;
static constexpr int paintPauseMs = 250;

static constexpr int firstColumns = 100;
static constexpr int firstLines = 28;

// No smaller than the texts around it.
static QFont fixedFont()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (const qreal points = QApplication::font().pointSizeF(); points > fixed.pointSizeF())
        fixed.setPointSizeF(points);
    return fixed;
}

frmIODaemon::frmIODaemon() : m_ui(std::make_unique<Ui::frmIODaemon>())
{
    m_ui->setupUi(this);
    for (QMenu *menu : {m_ui->mnuCommand, m_ui->mnuDebug, m_ui->mnuHelp})
        menu->setToolTipsVisible(true);
    m_paintTimer.setSingleShot(true);
    connect(&m_paintTimer, &QTimer::timeout, this, &frmIODaemon::paintText);
    // A check entry has inverted its mark before its handler runs.
    connect(m_ui->mnuDebugSerialBytesSent, &QAction::triggered, this,
            &frmIODaemon::mnuDebugSerialBytesSent_Click);
    connect(m_ui->mnuDebugSerialBytesReceived, &QAction::triggered, this,
            &frmIODaemon::mnuDebugSerialBytesReceived_Click);
    connect(m_ui->mnuDebugDUT, &QAction::triggered, this, &frmIODaemon::mnuDebugDUT_Click);
    connect(m_ui->mnuDebugLogging, &QAction::triggered, this, &frmIODaemon::mnuDebugLogging_Click);
    connect(m_ui->mnuCommandFind, &QAction::triggered, this, &frmIODaemon::mnuCommandFind_Click);
    connect(m_ui->mnuCommandSave, &QAction::triggered, this, &frmIODaemon::mnuCommandSave_Click);
    bindCommands();
}

frmIODaemon::~frmIODaemon() = default;

// Most runs never look at the monitor; its menus hold switches and are there from the start.
Ui::MonitorPane &frmIODaemon::pane()
{
    if (!m_pane) {
        m_pane = std::make_unique<Ui::MonitorPane>();
        m_pane->setupUi(m_ui->centralwidget);
        m_pane->findStrip->setPane(m_pane->Text1);
        connect(m_pane->cmdClear, &QPushButton::clicked, this, &frmIODaemon::cmdClear_Click);
        bindPort();
    }
    return *m_pane;
}

// So many lines of so many characters, whatever the size of the font.
QSize frmIODaemon::firstSize() const
{
    const QFontMetrics metrics(m_pane->Text1->font());
    const QSize wanted(metrics.averageCharWidth() * firstColumns,
                       metrics.lineSpacing() * firstLines);
    return wanted.boundedTo(screen()->availableSize() * 0.9);
}

void frmIODaemon::layOut()
{
    pane().Text1->setFont(fixedFont());
}

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
    if (text == QLatin1String("\r\n"))
        m_text.addLineBreak();
    else
        m_text.addLine(prefixOf(source) + (text.size() > longestText ? startOfText(text) : text));
    if (isVisible())
        paintSoon();
}

// An event's source begins with its time; what comes without the log has none.
QString frmIODaemon::prefixOf(const QString &source) const
{
    const bool withSource = m_ui->mnuDebugDisplaySource->isChecked();
    QString prefix = withSource ? source + QStringLiteral(": ") : QString();
    if (!m_ui->mnuDebugDisplayTime->isChecked())
        return prefix;
    const QString stamp = timeStampOf(source);
    if (stamp.isEmpty())
        prefix.prepend(timeStamp() + QLatin1Char(' '));
    else if (!withSource)
        prefix = stamp + QLatin1Char(' ');
    return prefix;
}

void frmIODaemon::paintSoon()
{
    if (m_paintTimer.isActive())
        return;
    const qint64 rest = m_sincePaint.isValid() ? paintPauseMs - m_sincePaint.elapsed() : 0;
    m_paintTimer.start(static_cast<int>(std::max<qint64>(paintDelayMs, rest)));
}

void frmIODaemon::paintText()
{
    pane().Text1->showText(m_text);
    m_sincePaint.start();
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
        paintText();
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

// The log opens its file at the first check of a run and keeps it.
void frmIODaemon::mnuDebugLogging_Click(bool checked)
{
    reportAndEnd("frmIODaemon.mnuDebugLogging_Click", [&] {
        const auto log = eventLog();
        if (!checked || !log)
            return;
        const QString failure = log->startFileLogging(
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            QStringLiteral("/keldo-x"));
        if (failure.isEmpty())
            return;
        // A mark without a file behind it would promise a log that nobody writes.
        fileLoggingEnded();
        showMessage(tr("Events cannot be logged to a file.") + QStringLiteral("\r\n") + failure,
                    MessageBox::Exclamation);
    });
}

void frmIODaemon::fileLoggingEnded()
{
    m_ui->mnuDebugLogging->setChecked(false);
}

void frmIODaemon::mnuCommandFind_Click()
{
    reportAndEnd("frmIODaemon.mnuCommandFind_Click", [this] { pane().findStrip->open(); });
}

void frmIODaemon::mnuCommandSave_Click()
{
    reportAndEnd("frmIODaemon.mnuCommandSave_Click", [this] { saveDisplay(); });
}

// What stands there when the name is chosen. A file that was there before is replaced whole, or not
// at all.
void frmIODaemon::saveDisplay()
{
    FileChooser::Request request;
    request.mode = FileChooser::Mode::Save;
    request.title = tr("Save the display");
    request.filter = QStringLiteral("Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*");
    request.defaultExtension = QStringLiteral("txt");
    const auto name = FileChooser::choose(request);
    if (!name)
        return;
    const QByteArray text = m_text.text().toUtf8();
    QSaveFile file(*name);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return;
    showMessage(tr("The display cannot be saved.") + QStringLiteral("\r\n") +
                    QDir::toNativeSeparators(*name) + QStringLiteral(": ") + file.errorString(),
                MessageBox::Exclamation);
}
