// Raw commands of the IO monitor: its own port, what is sent, and what comes back.
#include "ui/monitor/frmIODaemon.h"

#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/Secrets.h"
#include "core/TextNumbers.h"
#include "discovery/clsSeeker.h"
#include "platform/Application.h"
#include "ui_MonitorPane.h"
#include "ui_frmIODaemon.h"
#include "widgets/EntryEvents.h"
#include "widgets/PortBox.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QScopedValueRollback>

static constexpr int replyRestMs = 100; // a reply without its end is shown after so long a silence

static constexpr qsizetype longestReply = 1000; // characters without an end are shown in pieces

static QString monitorName()
{
    return QStringLiteral("IO monitor");
}

void frmIODaemon::bindCommands()
{
    connect(&m_watcher, &PortWatcher::Changed, this, &frmIODaemon::listAgain);
    m_replyTimer.setSingleShot(true);
    m_replyTimer.setInterval(replyRestMs);
    connect(&m_replyTimer, &QTimer::timeout, this, [this] { logReplies(true); });
    connect(m_ui->mnuCommandSend, &QAction::triggered, this, &frmIODaemon::cmdSendCommand_Click);
    connect(m_ui->mnuCommandOpen, &QAction::triggered, this, &frmIODaemon::cmdConnect_Click);
    connect(m_ui->mnuCommandClear, &QAction::triggered, this, &frmIODaemon::cmdClear_Click);
    connect(m_ui->mnuHelpCommands, &QAction::triggered, this, &frmIODaemon::mnuHelpCommands_Click);
}

void frmIODaemon::bindPort()
{
    showPortDescriptions(*m_pane->comboComPort);
    for (QComboBox *combo : {m_pane->comboComPort, m_pane->comboCommand}) {
        combo->setCompleter(nullptr);
        combo->setInsertPolicy(QComboBox::NoInsert);
    }
    connect(m_pane->cmdConnect, &QPushButton::clicked, this, &frmIODaemon::cmdConnect_Click);
    connect(m_pane->cmdSendCommand, &QPushButton::clicked, this,
            &frmIODaemon::cmdSendCommand_Click);
    connect(EntryEvents::watch(m_pane->comboCommand), &EntryEvents::EnterUp, this,
            &frmIODaemon::comboCommand_KeyUp);
}

void frmIODaemon::listPorts()
{
    list(PopulateComboBox);
}

// A port number that was typed stays. During a search the ports belong to the search; they are
// listed when it is over.
void frmIODaemon::list(QStringList (*fill)(QComboBox &ports))
{
    if (m_listing || !isVisible())
        return;
    if (app().search) {
        connect(app().search.get(), &QObject::destroyed, this, &frmIODaemon::listPorts,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
        return;
    }
    const QScopedValueRollback listing(m_listing, true);
    const QString typed = pane().comboComPort->currentText();
    for (const QString &refused : fill(*pane().comboComPort))
        logEvent(monitorName(), refused);
    if (!typed.isEmpty())
        pane().comboComPort->setEditText(typed);
    m_watcher.start([] { return !app().search; });
}

// A port came or went. With none left there is nothing to list, and nothing to report.
void frmIODaemon::listAgain(int ports)
{
    if (ports > 0) {
        list(PopulateComboBoxAgain);
    } else if (!m_listing) {
        pane().comboComPort->clear();
        pane().comboComPort->setEnabled(false);
    }
}

void frmIODaemon::cmdConnect_Click()
{
    reportAndEnd("frmIODaemon.cmdConnect_Click", [this] {
        if (!m_seeker) {
            m_seeker = std::make_shared<clsSeeker>();
            m_seeker->Construct();
            // Replies are shown as they arrive; nothing waits for them.
            m_seeker->ComPort().setPortMode(clsCommPort::Event);
            connect(&m_seeker->ComPort(), &clsCommPort::GotData, this,
                    [this](const QString &text) { takeReply(text); });
            connect(&m_seeker->ComPort(), &clsCommPort::HungUp, this,
                    &frmIODaemon::showPortInCaption);
        }
        const std::int16_t port = toInt16(numericValue(pane().comboComPort->currentText()));
        // Init logs a port that opened or that is held by another program.
        if (!m_seeker->Init(port))
            logEvent(monitorName(), QStringLiteral("COM%1 cannot be opened").arg(port));
        const QString failure = m_seeker->ComPort().OpenFailure();
        if (!m_seeker->ComPort().IsOpen() && !failure.isEmpty())
            logEvent(monitorName(), QStringLiteral("COM%1: %2").arg(port).arg(failure));
        showPortInCaption();
    });
}

void frmIODaemon::closeComPort()
{
    if (m_seeker)
        m_seeker->ClosePort();
    showPortInCaption();
}

void frmIODaemon::closeEvent(QCloseEvent *event)
{
    m_watcher.stop();
    closeComPort();
    QMainWindow::closeEvent(event);
}

void frmIODaemon::showPortInCaption()
{
    const bool isOpen = m_seeker && m_seeker->ComPort().IsOpen();
    setWindowTitle(QStringLiteral("IO monitor - ") +
                   (isOpen ? QStringLiteral("COM%1").arg(m_seeker->ComPort().PortNumber())
                           : applicationTitle()));
}

QString frmIODaemon::withoutEscapes(const QString &command)
{
    QString text;
    for (qsizetype i = 0; i < command.size(); ++i) {
        if (command.at(i) == QLatin1Char('\\') && i + 2 < command.size()) {
            const double code = leadingNumber(QStringLiteral("&H") + command.mid(i + 1, 2));
            text += QChar(static_cast<char16_t>(code));
            i += 2;
        } else {
            text += command.at(i);
        }
    }
    return text;
}

void frmIODaemon::cmdSendCommand_Click()
{
    reportAndEnd("frmIODaemon.cmdSendCommand_Click", [this] { sendCommand(); });
}

// The whole text is selected afterwards, so that the next command replaces it.
void frmIODaemon::comboCommand_KeyUp()
{
    reportAndEnd("comboCommand_KeyUp", [this] { sendCommand(); });
    pane().comboCommand->lineEdit()->selectAll();
}

// On a closed port nothing is sent, and nothing is said; the command is remembered all the same. A
// password is not: it stays in the box until it was sent, and nowhere else.
void frmIODaemon::sendCommand()
{
    // Blanks go first: an escape may stand for a blank that is meant to be sent.
    const QString command = pane().comboCommand->currentText().trimmed();
    const QString meant = withoutEscapes(command);
    const bool isSecret = secrets().noteCommand(meant);
    if (!isSecret)
        rememberCommand(command);
    if (m_seeker && m_seeker->ComPort().IsOpen()) {
        const QString end = pane().chkCR->isChecked() ? QStringLiteral("\r") : QString();
        logEvent(monitorName(), QStringLiteral(" sending ") +
                                    (isSecret ? QStringLiteral("PASSWORD ****") : command));
        m_seeker->ComPort().SendString(meant + end);
        if (isSecret)
            pane().comboCommand->clearEditText();
    }
    pane().Text1->moveCursor(QTextCursor::End);
}

void frmIODaemon::rememberCommand(const QString &command)
{
    QComboBox &history = *pane().comboCommand;
    if (history.findText(command, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0)
        return;
    history.addItem(command);
    history.setEditText(command);
}

void frmIODaemon::takeReply(const QString &text)
{
    // What was taken over here is not kept a second time.
    m_seeker->ComPort().ClearBuffer();
    m_reply += text;
    logReplies(m_reply.size() > longestReply);
}

void frmIODaemon::logReplies(bool all)
{
    const auto log = [](const QString &reply) {
        logEvent(QStringLiteral("from serial device:"), QStringLiteral(" received ") + reply);
    };
    for (auto end = m_reply.indexOf(QLatin1Char('\r')); end >= 0;
         end = m_reply.indexOf(QLatin1Char('\r'))) {
        log(m_reply.left(end));
        m_reply.remove(0, end + 1);
    }
    if (all) {
        // What may be the beginning of a password waits for its rest, but not for ever.
        const auto shown = secrets().unfinishedAt(m_reply);
        const auto length = shown > 0 || m_reply.size() <= longestReply ? shown : m_reply.size();
        if (length > 0)
            log(m_reply.left(length));
        m_reply.remove(0, length);
    }
    if (m_reply.isEmpty())
        m_replyTimer.stop();
    else
        m_replyTimer.start();
}

void frmIODaemon::mnuHelpCommands_Click()
{
    showMessage(tr("Choose a com port and open it, type a command and press Enter.\n\n"
                   "A backslash and two hexadecimal digits stand for one character: \\0D is a "
                   "carriage return. \"send cr\" ends each command with one.\n\n"
                   "What the port answers appears in the display as it arrives."),
                MessageBox::Information);
}
