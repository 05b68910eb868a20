// What the IO monitor's controls and menu entries say, and the sources that its errors name.
#include "MonitorBench.h"
#include "support/LeaksAllowed.h"
#include "support/TestMain.h"

#include "platform/RunTimeError.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include <array>
#include <limits>

class TestMonitorCaptions : public QObject
{
    Q_OBJECT

private slots:
    void controls_data();
    void controls();
    void theListsAndTheDisplay();
    void menus();
    void entries_data();
    void entries();
    void anErrorWhileAnEventIsDisplayedNamesItsSource();
    void anErrorWhileTheDisplayIsClearedNamesItsSource();
};

void TestMonitorCaptions::controls_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("toolTip");
    const auto row = [](const char *name, const char *caption, const char *toolTip) {
        QTest::addRow("%s", name) << QString::fromLatin1(name) << QString::fromLatin1(caption)
                                  << QString::fromLatin1(toolTip);
    };
    row("lblComPort", "com port", "");
    row("cmdConnect", "open", "This just opens the port, doesn't try to find an Keldo-X");
    row("chkCR", "send cr", "End the command with a carriage return");
    row("cmdSendCommand", "send command", "Send the command to the open port");
    row("cmdClear", "clear display", "");
}

void TestMonitorCaptions::controls()
{
    QFETCH(const QString, name);
    QFETCH(const QString, caption);
    QFETCH(const QString, toolTip);
    const Machine machine;
    frmIODaemon window;
    window.show();
    const auto *control = window.findChild<QWidget *>(name);
    QVERIFY(control);
    QCOMPARE(control->property("text").toString().remove(QLatin1Char('&')), caption);
    QCOMPARE(control->toolTip(), toolTip);
}

void TestMonitorCaptions::theListsAndTheDisplay()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    const auto *ports = window.findChild<QComboBox *>(QStringLiteral("comboComPort"));
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("lblComPort"))->buddy(), ports);
    QCOMPARE(ports->toolTip(), QStringLiteral("Choose a port, or type its number"));
    QCOMPARE(window.findChild<QComboBox *>(QStringLiteral("comboCommand"))->toolTip(),
             QStringLiteral(
                 "Type a command and press Enter; \\0D and the like stand for single characters"));
    QVERIFY(text1(window)->isReadOnly());
}

void TestMonitorCaptions::menus()
{
    const Fixture fixture;
    const frmIODaemon window;
    const QList<QPair<const char *, QString>> all{{"mnuCommand", QStringLiteral("&Send Commands")},
                                                  {"mnuDebug", QStringLiteral("&Debug settings")},
                                                  {"mnuHelp", QStringLiteral("&Help")}};
    for (const auto &menu : all) {
        const auto *shown = window.findChild<QMenu *>(QLatin1String(menu.first));
        QCOMPARE(shown->title(), menu.second);
        QVERIFY(shown->toolTipsVisible());
    }
}

void TestMonitorCaptions::entries_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<bool>("isCheck");
    QString menu = QStringLiteral("mnuDebug");
    bool isCheck = true;
    const auto row = [&](const char *name, const char *caption, const char *toolTip) {
        QTest::addRow("%s", name) << menu << QString::fromLatin1(name)
                                  << QString::fromLatin1(caption) << QString::fromLatin1(toolTip)
                                  << isCheck;
    };
    row("mnuDebugDUT", "Show more detailed error messages",
        "Also log what a unit answered when it did not answer correctly");
    row("mnuDebugSerialBytesSent", "Show bytes sent via serial port",
        "Log every byte that goes out on the ports of the units");
    row("mnuDebugSerialBytesReceived", "Show bytes received via serial port",
        "Log every byte that comes in on the ports of the units");
    row("mnuDebugNetworkAnalyzerCommands", "Show Network Analyzer commands",
        "Kept for the network analyzer; changes nothing here");
    row("mnuDebugDisplaySource", "Display the source of each message",
        "Put time and source in front of each line");
    row("mnuDebugLogging", "Log events to a file",
        "Also write the events to Keldo-X.log in your data folder");
    row("mnuDebugDisplayTime", "Display the time of each message",
        "Put date and time in front of each line");
    menu = QStringLiteral("mnuCommand");
    isCheck = false;
    row("mnuCommandSend", "send command", "Send the command to the open port");
    row("mnuCommandOpen", "open the port", "Open the chosen port without looking for a unit");
    row("mnuCommandClear", "clear display", "Empty the display");
    row("mnuCommandFind", "find...", "Look for a text in the display");
    row("mnuCommandSave", "save display...", "Write what the display shows to a text file");
    menu = QStringLiteral("mnuHelp");
    row("mnuHelpCommands", "Raw commands", "How commands are typed");
}

void TestMonitorCaptions::entries()
{
    QFETCH(const QString, menu);
    QFETCH(const QString, name);
    QFETCH(const QString, caption);
    QFETCH(const QString, toolTip);
    QFETCH(const bool, isCheck);
    const Fixture fixture;
    const frmIODaemon window;
    auto *action = window.findChild<QAction *>(name);
    QVERIFY(action);
    QVERIFY(window.findChild<QMenu *>(menu)->actions().contains(action));
    QCOMPARE(action->text().remove(QLatin1Char('&')), caption);
    QCOMPARE(action->toolTip(), toolTip);
    QCOMPARE(action->isCheckable(), isCheck);
    QVERIFY(!action->isChecked());
}

// A source that no memory can hold a copy of.
void TestMonitorCaptions::anErrorWhileAnEventIsDisplayedNamesItsSource()
{
    Fixture fixture;
    frmIODaemon window;
    entry(window, "mnuDebugDisplaySource")->trigger();
    const std::array<QChar, 64> beginning{};
    const QString endless =
        QString::fromRawData(beginning.data(), std::numeric_limits<qsizetype>::max() / 4);
    fixture.boxes.expect(QStringLiteral("Error 7 ('Out of memory')\r\nOut of memory\r\n"
                                        " from KELDO-X Control Program\r\n"
                                        " in frmIODaemon.Display\r\n"),
                         MessageBox::Exclamation);
    window.Display(endless, QStringLiteral("text"));
    window.Display(QStringLiteral("s"), QStringLiteral("next"));
    QCOMPARE(window.displayText(), QStringLiteral("s: next\r\n"));
}

void TestMonitorCaptions::anErrorWhileTheDisplayIsClearedNamesItsSource()
{
    Machine machine;
    frmIODaemon window;
    window.Display(QString(), QStringLiteral("text"));
    window.show();
    connect(text1(window), &QPlainTextEdit::textChanged, this, [] { throw RunTimeError(5); });
    machine.boxes.expect(QStringLiteral("Error 5 ('Invalid procedure call or argument')\r\n"
                                        "Invalid procedure call or argument\r\n"
                                        " from KELDO-X Control Program\r\n"
                                        " in frmIODaemon.cmdClear_Click\r\n"),
                         MessageBox::Exclamation);
    const LeaksAllowed throughQt;
    QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("cmdClear")), Qt::LeftButton);
    QCOMPARE(window.displayText(), QString());
}

KELDOX_TEST(TestMonitorCaptions)
#include "TestMonitorCaptions.moc"
