// What screen readers hear in the IO monitor, and how the keyboard reaches its controls and
// entries.
#include "MonitorBench.h"
#include "support/Heard.h"
#include "support/TestMain.h"

class TestSpokenMonitor : public QObject
{
    Q_OBJECT

private slots:
    void everyControlIsHeard();
    void theResultOfASearchIsHeard();
    void everyEntryAndButtonHasAMnemonicOfItsOwn();
    void mnemonicsReachTheControls();
};

void TestSpokenMonitor::everyControlIsHeard()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    auto *ports = window.findChild<QComboBox *>(QStringLiteral("comboComPort"));
    QTRY_VERIFY(ports->isEnabled());
    entry(window, "mnuCommandFind")->trigger(); // its strip is a part of the window
    window.findChild<QComboBox *>(QStringLiteral("comboCommand"))
        ->setEditText(QStringLiteral("*ID?"));
    ports->setEditText(QStringLiteral("77"));
    QCOMPARE(unheard(window), QStringList());
    window.Display({}, QStringLiteral("an event"));
    QTRY_COMPARE(heard(text1(window))->textInterface()->text(0, 8), QStringLiteral("an event"));
    QCOMPARE(heardName(text1(window)), QStringLiteral("events"));
}

void TestSpokenMonitor::theResultOfASearchIsHeard()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    entry(window, "mnuCommandFind")->trigger();
    auto *text = window.findChild<QLineEdit *>(QStringLiteral("txtFind"));
    QTest::keyClicks(text, QStringLiteral("nowhere"));
    QCOMPARE(heardName(window.findChild<QLabel *>(QStringLiteral("lblFound"))),
             QStringLiteral("not found"));
}

void TestSpokenMonitor::everyEntryAndButtonHasAMnemonicOfItsOwn()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    const QStringList inside = mnemonicsIn(*window.centralWidget());
    QCOMPARE(inside,
             QStringList({QStringLiteral("Alt+C"), QStringLiteral("Alt+M"), QStringLiteral("Alt+O"),
                          QStringLiteral("Alt+P"), QStringLiteral("Alt+R")}));
    QCOMPARE(mnemonicFaults(*window.menuBar(), inside), QStringList());
}

void TestSpokenMonitor::mnemonicsReachTheControls()
{
    const Machine machine;
    frmIODaemon window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto *ports = window.findChild<QComboBox *>(QStringLiteral("comboComPort"));
    QTRY_VERIFY(ports->isEnabled());
    QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
    QVERIFY(ports->hasFocus());
    const auto *cr = window.findChild<QCheckBox *>(QStringLiteral("chkCR"));
    QTest::keyClick(&window, Qt::Key_R, Qt::AltModifier);
    QTRY_VERIFY(!cr->isChecked());
    window.Display({}, QStringLiteral("an event"));
    QTest::keyClick(&window, Qt::Key_C, Qt::AltModifier);
    QTRY_COMPARE(window.displayText(), QString());
}

KELDOX_TEST(TestSpokenMonitor)
#include "TestSpokenMonitor.moc"
