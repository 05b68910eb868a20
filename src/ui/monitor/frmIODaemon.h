// The IO monitor: shows every event that the event log displays, sends raw commands to a port, and
// holds the debug switches, whose state lives only for the run.
#pragma once

#include "app/Views.h"
#include "platform/PortWatcher.h"
#include "ui/monitor/DisplayText.h"
#include "widgets/LateWindow.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace Ui {
class MonitorPane;
class frmIODaemon;
} // namespace Ui

class QComboBox;
class clsSeeker;

class frmIODaemon : public LateWindow, public IOMonitorView
{
    Q_OBJECT

public:
    static constexpr int displayLimit = DisplayText::limit;
    // Of one text; a longer one shows its beginning, as in the log.
    static constexpr int longestText = 32768;

    frmIODaemon();
    ~frmIODaemon() override;

    void load() override;
    void show() override; // in front
    void closeComPort() override;
    bool isFileLoggingChecked() const override;
    void fileLoggingEnded() override;

    // Appends one event. The text is kept here at once and painted a little later, all that came
    // meanwhile together: the unit's exchanges must not wait for a window.
    void Display(const QString &source, const QString &text) override;
    QString displayText() const { return m_text.text(); }

    // The text with its escapes replaced: a backslash and two hexadecimal digits are one character.
    static QString withoutEscapes(const QString &command);

protected:
    void layOut() override;
    QSize firstSize() const override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override; // closes its port and hides

private:
    void append(const QString &source, const QString &text);
    QString prefixOf(const QString &source) const;
    void paintSoon();
    void paintText();
    void saveDisplay();
    void mnuCommandSave_Click();
    void mnuCommandFind_Click();
    void cmdClear_Click();
    void mnuDebugSerialBytesSent_Click(bool checked);
    void mnuDebugSerialBytesReceived_Click(bool checked);
    void mnuDebugDUT_Click(bool checked);
    void mnuDebugLogging_Click(bool checked);

    Ui::MonitorPane &pane(); // made when it is first asked for
    void bindCommands();
    void bindPort();
    void listPorts();
    void list(QStringList (*fill)(QComboBox &ports));
    void listAgain(int ports);
    void cmdConnect_Click();
    void cmdSendCommand_Click();
    void comboCommand_KeyUp();
    void mnuHelpCommands_Click();
    void sendCommand();
    void rememberCommand(const QString &command);
    void takeReply(const QString &text);
    void logReplies(bool all);
    void showPortInCaption();

    std::unique_ptr<Ui::frmIODaemon> m_ui;
    std::unique_ptr<Ui::MonitorPane> m_pane;
    DisplayText m_text;
    QTimer m_paintTimer;
    QElapsedTimer m_sincePaint;

    std::shared_ptr<clsSeeker> m_seeker; // made at the first "open"
    QString m_reply;                     // received and not logged yet
    QTimer m_replyTimer;                 // logs what no carriage return ends
    bool m_listing = false;              // the ports are being listed
    PortWatcher m_watcher;
};
