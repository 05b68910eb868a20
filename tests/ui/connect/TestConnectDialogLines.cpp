// What the connect-to-port dialog tells: which device a number is, which ports are not to be had,
// what opening it has done; and that it follows what is plugged in.
#include "ConnectDialogBench.h"
#include "support/DeniedLine.h"
#include "support/TestMain.h"

#include "platform/CommControl.h"
#include "widgets/PortBox.h"

#include <QAbstractItemView>
#include <QLabel>

class TestConnectDialogLines : public QObject
{
    Q_OBJECT

private slots:
    void okWaitsForTheList();
    void okIsEnabledAfterAListThatFailed();
    void theDeviceOfTheChosenNumberIsShown();
    void descriptionsStandInTheListAsPlainText();
    void aPortInUseIsNamedWithItsRemedy();
    void aPortWithoutAccessRightIsNamed();
    void unitsThatWereLetGoAreMentioned();
    void theListFollowsWhatIsPluggedIn();
    void whatWasTypedStaysWhenTheListFollows();
    void aListThatFollowsReportsNothing();
    void closingWhileTheListIsMadeIsSafe();

private:
    static QString line(const QWidget &dialog, const char *name)
    {
        const auto *label = dialog.findChild<QLabel *>(QString::fromLatin1(name));
        return label && label->isVisible() ? label->text() : QString();
    }
};

void TestConnectDialogLines::okWaitsForTheList()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    frmConnectToComport dialog;
    std::optional<bool> atFirst;
    QTimer::singleShot(0, &dialog, [&] { atFirst = button(dialog, "OKButton").isEnabled(); });
    open(dialog, [&] {
        QVERIFY(button(dialog, "OKButton").isEnabled());
        dialog.reject();
    });
    QCOMPARE(atFirst, std::optional(false));
}

void TestConnectDialogLines::okIsEnabledAfterAListThatFailed()
{
    SearchBench bench;
    bench.fixture.boxes.expectStart(QStringLiteral("Error 5 "));
    frmConnectToComport dialog;
    open(
        dialog, [&] { press(dialog, "OKButton"); }, // only closes
        [&] { return button(dialog, "OKButton").isEnabled(); });
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.comboComPort().isEnabled());
}

void TestConnectDialogLines::theDeviceOfTheChosenNumberIsShown()
{
    SearchBench bench;
    const QString device = QString::fromStdString(bench.line(1).device());
    bench.line(3);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 1"));
        QCOMPARE(line(dialog, "lblDevice"),
                 QFileInfo(device).fileName() + QStringLiteral(", linked as com1"));
        dialog.comboComPort().setEditText(QStringLiteral("200"));
        QCOMPARE(line(dialog, "lblDevice"), QString());
        dialog.reject();
    });
}

void TestConnectDialogLines::descriptionsStandInTheListAsPlainText()
{
    QComboBox box;
    showPortDescriptions(box);
    addPort(box, QStringLiteral(" 7"), QStringLiteral("ttyUSB0, <b>bold</b> adaptor"));
    QCOMPARE(box.itemText(0), QStringLiteral(" 7")); // what a search is handed
    QCOMPARE(portDescription(box), QStringLiteral("ttyUSB0, <b>bold</b> adaptor"));
    QVERIFY(!box.itemData(0, Qt::ToolTipRole).toString().contains(QStringLiteral("<b>")));
    QCOMPARE(box.itemData(0, Qt::AccessibleTextRole).toString(),
             QStringLiteral("7, ttyUSB0, <b>bold</b> adaptor"));
    QVERIFY(box.view()->minimumWidth() >
            box.fontMetrics().horizontalAdvance(QStringLiteral("ttyUSB0, <b>bold</b> adaptor")));
}

void TestConnectDialogLines::aPortInUseIsNamedWithItsRemedy()
{
    SearchBench bench;
    bench.line(1);
    bench.line(4);
    CommControl other;
    other.setCommPort(4);
    other.setPortOpen(true);
    frmConnectToComport dialog;
    open(dialog, [&] {
        const QString told = line(dialog, "lblRefused");
        QVERIFY2(told.startsWith(QStringLiteral("COM4: ")), qPrintable(told));
        QVERIFY2(told.contains(QStringLiteral(" is open in this program already")),
                 qPrintable(told));
        dialog.reject();
    });
}

void TestConnectDialogLines::aPortWithoutAccessRightIsNamed()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    const QString device = QString::fromStdString(bench.line(4).device());
    DeniedLine::install(device);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(line(dialog, "lblRefused"), QStringLiteral("COM4: ") + DeniedLine::told(device));
        QCOMPARE(dialog.comboComPort().count(), 1); // COM2 is the highest that opens
        dialog.reject();
    });
}

void TestConnectDialogLines::unitsThatWereLetGoAreMentioned()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(line(dialog, "lblLetGo"), QString());
        dialog.reject();
    });
    app().foundUnits = 1;
    open(dialog, [&] {
        QVERIFY(
            line(dialog, "lblLetGo").startsWith(QStringLiteral("The connected units were let go")));
        dialog.reject();
    });
}

void TestConnectDialogLines::theListFollowsWhatIsPluggedIn()
{
    SearchBench bench;
    bench.line(1);
    bench.line(3);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QComboBox &ports = dialog.comboComPort();
        QCOMPARE(ports.count(), 1);
        bench.line(2);
        QTRY_COMPARE_WITH_TIMEOUT(ports.count(), 2, 4000);
        QCOMPARE(ports.itemText(1), QStringLiteral(" 2"));
        bench.fixture.unplug(2);
        QTRY_COMPARE_WITH_TIMEOUT(ports.count(), 1, 4000);
        QVERIFY(button(dialog, "OKButton").isEnabled());
        dialog.reject();
    });
}

void TestConnectDialogLines::whatWasTypedStaysWhenTheListFollows()
{
    SearchBench bench;
    bench.line(1);
    bench.line(3);
    frmConnectToComport dialog;
    open(dialog, [&] {
        dialog.comboComPort().setEditText(QStringLiteral("3"));
        bench.line(2);
        QTRY_COMPARE_WITH_TIMEOUT(dialog.comboComPort().count(), 2, 4000);
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral("3"));
        dialog.reject();
    });
}

// The operator was told once that no port opens, and sees the list.
void TestConnectDialogLines::aListThatFollowsReportsNothing()
{
    SearchBench bench;
    bench.fixture.boxes.expectStart(QStringLiteral("Error 5 "));
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    const QString device = QString::fromStdString(bench.line(4).device());
    DeniedLine::install(device);
    bench.fixture.unplug(4);
    frmConnectToComport dialog;
    open(
        dialog,
        [&] {
            bench.fixture.plug(4, device);
            QTRY_VERIFY_WITH_TIMEOUT(line(dialog, "lblRefused").contains(DeniedLine::told(device)),
                                     4000);
            QVERIFY(button(dialog, "OKButton").isEnabled());
            QVERIFY(!dialog.comboComPort().isEnabled());
            dialog.reject();
        },
        [&] { return button(dialog, "OKButton").isEnabled(); });
    QCOMPARE(bench.fixture.boxes.shown().size(), 1);
}

void TestConnectDialogLines::closingWhileTheListIsMadeIsSafe()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    bench.line(3);
    {
        auto dialog = std::make_unique<frmConnectToComport>();
        QObject::connect(
            &dialog->comboComPort(), &QComboBox::currentTextChanged, dialog.get(),
            [&] {
                QMetaObject::invokeMethod(
                    dialog.get(), [&] { dialog->reject(); }, Qt::QueuedConnection);
            },
            Qt::SingleShotConnection);
        dialog->showModal();
        QVERIFY(!dialog->isVisible());
    }
    verifyAtRest(bench);
}

KELDOX_TEST(TestConnectDialogLines)
#include "TestConnectDialogLines.moc"
