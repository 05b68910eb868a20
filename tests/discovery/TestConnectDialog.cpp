// The connect-to-port dialog, answered by mouse and keyboard against simulated lines.
#include "core/AppState.h"
#include "discovery/frmConnectToComport.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QtWidgets>

class TestConnectDialog : public QObject
{
    Q_OBJECT

private slots:
    void itShowsItsTexts();
    void openingResetsEverything();
    void cancelUndoesNothing();
    void theListLacksTheHighestPort();
    void entriesTellTheirDevice();
    void onePortLeavesAnEmptyListAndOkReportsTheConversion();
    void withoutAPortOkOnlyCloses();
    void okConnectsOnThatPortAlone();
    void aTypedNumberIsSearchedToo();
    void aTypedWordIsReported();
    void tovinRIsAskedAtEightAddressesOfThatPort();
    void theTextGoesToTheSearchWithItsBlank();
    void okUnloadsThoughTheConnectionFails();
    void escapeBreaksTheSearchOff();
    void theControlsAreDisabledWhileItConnects();
    void pollingIsStoppedAndNotStartedAgain();
    void aLoopbackAdaptorIsStillNamedAfterwards();
    void theDialogCanBeOpenedAgain();
    void escapeIsCancel();
};

static QPushButton &button(QWidget &dialog, const char *name)
{
    return *dialog.findChild<QPushButton *>(QString::fromLatin1(name));
}

static QCheckBox &tovinR(QWidget &dialog)
{
    return *dialog.findChild<QCheckBox *>(QStringLiteral("chkTovinR"));
}

static void press(QWidget &dialog, const char *name)
{
    QTest::mouseClick(&button(dialog, name), Qt::LeftButton);
}

// Opens the dialog and acts once it is ready: by default when its list is enabled.
template <class Action>
static void open(frmConnectToComport &dialog, Action action, std::function<bool()> isReady = {})
{
    if (!isReady)
        isReady = [&] { return dialog.comboComPort().isEnabled(); };
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (QApplication::activeModalWidget() != &dialog || (!isReady() && clock.elapsed() < 5000))
            return;
        poll.stop();
        const bool ready = isReady();
        if (ready)
            action();
        else
            dialog.reject();
        QVERIFY(ready);
    });
    poll.start(5);
    dialog.showModal();
    QVERIFY(!dialog.isVisible());
}

// What is true after the dialog, however it ended.
static void verifyAtRest(const SearchBench &bench)
{
    QVERIFY(app().searchFinished);
    QVERIFY(!bench.channels->progressVisible);
    QCOMPARE(bench.calls->last(), QStringLiteral("main.bringUpToDate"));
}

void TestConnectDialog::itShowsItsTexts()
{
    SearchBench bench;
    bench.line(1);
    bench.line(3);
    QPixmap icon(16, 16);
    icon.fill(Qt::red);
    QApplication::setWindowIcon(QIcon(icon));
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.objectName(), QStringLiteral("frmConnectToComport"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("KELDO-X Control Program"));
        QVERIFY(!dialog.windowIcon().isNull());
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("Label1"))->text(),
                 QStringLiteral("Connect to Keldo-X on com port"));
        QCOMPARE(tovinR(dialog).text(), QStringLiteral("Unit is an addressable Tovin-R"));
        QVERIFY(!tovinR(dialog).isChecked());
        QCOMPARE(button(dialog, "OKButton").text(), QStringLiteral("OK"));
        QCOMPARE(button(dialog, "CancelButton").text(), QStringLiteral("Cancel"));
        for (const QWidget *each : dialog.findChildren<QWidget *>())
            QCOMPARE(each->font().family(), QStringLiteral("Arial"));
        dialog.reject();
    });
    QApplication::setWindowIcon({});
}

void TestConnectDialog::openingResetsEverything()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    const auto unit = bench.bind(1, 1);
    QVERIFY(unit->commPort()->InitializePort());
    app().foundUnits = 1;
    frmConnectToComport dialog;
    open(dialog, [&] {
        QVERIFY(!unit->PortIsOpen());
        QVERIFY(!app().devices[1]);
        QVERIFY(!bench.rows[1]->mDevice);
        QCOMPARE(app().foundUnits, std::int16_t{0});
        QVERIFY(!app().searchFinished);
        QVERIFY(bench.channels->progressVisible);
        QCOMPARE(bench.calls->filter(QStringLiteral("InitChannel")).size(), 8);
        QVERIFY(bench.calls->contains(QStringLiteral("main.resetForSearch")));
        dialog.reject();
    });
}

void TestConnectDialog::cancelUndoesNothing()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    const auto unit = bench.bind(1, 1);
    QVERIFY(unit->commPort()->InitializePort());
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "CancelButton"); });
    QVERIFY(!unit->PortIsOpen());
    for (int slot = 1; slot <= 8; ++slot) {
        QVERIFY(!app().devices[slot]);
        QVERIFY(!bench.rows[slot]->mDevice);
    }
    QCOMPARE(bench.sentTo(1), QStringList());
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    QVERIFY(!bench.calls->contains(QStringLiteral("channels.show")));
    verifyAtRest(bench);
}

void TestConnectDialog::theListLacksTheHighestPort()
{
    SearchBench bench;
    bench.line(1);
    bench.line(3);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().count(), 1);
        QCOMPARE(dialog.comboComPort().itemText(0), QStringLiteral(" 1"));
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 1"));
        dialog.reject();
    });
}

void TestConnectDialog::entriesTellTheirDevice()
{
    SearchBench bench;
    bench.line(1);
    bench.line(3);
    const QString name = QFileInfo(QString::fromStdString(bench.line(1).device())).fileName();
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().itemData(0, Qt::ToolTipRole).toString(),
                 name + QStringLiteral(", linked as com1"));
        dialog.reject();
    });
}

void TestConnectDialog::onePortLeavesAnEmptyListAndOkReportsTheConversion()
{
    SearchBench bench;
    bench.unit(7);
    bench.fixture.boxes.expectStart(QStringLiteral("Error 13 ("), MessageBox::Exclamation);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().count(), 0);
        QCOMPARE(dialog.comboComPort().currentText(), QString());
        bench.calls->clear();
        press(dialog, "OKButton");
    });
    QVERIFY(bench.fixture.boxes.texts().value(0).endsWith(QStringLiteral(" in SearchPorts\r\n")));
    QVERIFY(bench.calls->contains(QStringLiteral("main.resetForSearch"))); // it ran before
    QCOMPARE(bench.sentTo(7), QStringList());
    verifyAtRest(bench);
}

void TestConnectDialog::withoutAPortOkOnlyCloses()
{
    SearchBench bench;
    bench.fixture.boxes.expectStart(QStringLiteral("Error 5 ("), MessageBox::Exclamation);
    frmConnectToComport dialog;
    open(
        dialog,
        [&] {
            QVERIFY(!dialog.comboComPort().isEnabled());
            bench.calls->clear();
            press(dialog, "OKButton");
        },
        [&] { return !bench.fixture.boxes.shown().isEmpty(); });
    QVERIFY(!bench.calls->contains(QStringLiteral("channels.show"))); // no search
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    verifyAtRest(bench);
}

void TestConnectDialog::okConnectsOnThatPortAlone()
{
    SearchBench bench;
    for (const int port : {1, 2, 3, 4})
        bench.unit(port);
    frmConnectToComport dialog;
    open(dialog, [&] {
        dialog.comboComPort().setCurrentIndex(1);
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(2), QStringList{QStringLiteral("*ID?")});
    for (const int port : {1, 3, 4})
        QCOMPARE(bench.sentTo(port), QStringList());
    QCOMPARE(app().foundUnits, std::int16_t{1});
    QCOMPARE(app().devices[1]->commPort()->PortNumber(), std::int16_t{2});
    QVERIFY(bench.mainWindow->panels[1] != QStringLiteral("NOT CONNECTED"));
    verifyAtRest(bench);
}

void TestConnectDialog::aTypedNumberIsSearchedToo()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(9); // the highest is not in the list
    frmConnectToComport dialog;
    open(dialog, [&] {
        QLineEdit *edit = dialog.comboComPort().lineEdit();
        QVERIFY(edit);
        edit->selectAll();
        QTest::keyClicks(edit, QStringLiteral("9"));
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(bench.sentTo(9), QStringList{QStringLiteral("*ID?")});
    QCOMPARE(bench.sentTo(1), QStringList());
    QCOMPARE(dialog.comboComPort().count(), 1); // nothing was added
}

void TestConnectDialog::aTypedWordIsReported()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    bench.fixture.boxes.expectStart(QStringLiteral("Error 13 ("));
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    open(dialog, [&] {
        dialog.comboComPort().setEditText(QStringLiteral("COM1"));
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(1), QStringList());
    verifyAtRest(bench);
}

void TestConnectDialog::tovinRIsAskedAtEightAddressesOfThatPort()
{
    SearchBench bench;
    bench.line(4).addUnit(std::make_shared<sim::SimulatedUnit>(addressedUnit(3)));
    bench.unit(5);
    bench.waitOnly(200);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 4"));
        tovinR(dialog).click();
        press(dialog, "OKButton");
    });
    QStringList addressed;
    for (int address = 1; address <= 8; ++address)
        addressed.append(QStringLiteral(">LISTEN0%1").arg(address));
    QCOMPARE(bench.sentTo(4).filter(QStringLiteral(">LISTEN")), addressed);
    QCOMPARE(bench.sentTo(5), QStringList());
    QCOMPARE(app().foundUnits, std::int16_t{1});
    QCOMPARE(bench.channels->progressValues.mid(0, 8), QList<int>(8, 9));
}

// " 4" is a number with its blank; what is typed around it may stand too.
void TestConnectDialog::theTextGoesToTheSearchWithItsBlank()
{
    SearchBench bench;
    bench.unit(4);
    bench.unit(5);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(dialog.comboComPort().currentText(), QStringLiteral(" 4"));
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(4), QStringList{QStringLiteral("*ID?")});
}

void TestConnectDialog::okUnloadsThoughTheConnectionFails()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    bench.rows[1]->onClick = [](FakeChannelRow &) { throw RunTimeError(91); };
    bench.fixture.boxes.acceptAll();
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    QVERIFY(!bench.fixture.boxes.shown().isEmpty());
    verifyAtRest(bench);
}

void TestConnectDialog::escapeBreaksTheSearchOff()
{
    SearchBench bench;
    bench.silence(1);
    bench.line(2);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    QElapsedTimer clock;
    open(dialog, [&] {
        QTimer::singleShot(100, &dialog, [&] {
            QVERIFY(app().interruptSearch);
            QTest::keyClick(&dialog, Qt::Key_Escape);
            QVERIFY(dialog.isVisible()); // until the search has ended
        });
        clock.start();
        press(dialog, "OKButton");
    });
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    verifyAtRest(bench);
}

void TestConnectDialog::theControlsAreDisabledWhileItConnects()
{
    SearchBench bench;
    bench.silence(1);
    bench.line(2);
    bench.waitOnly(200);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    bool looked = false;
    open(dialog, [&] {
        QTimer::singleShot(50, &dialog, [&] {
            looked = true;
            QVERIFY(!dialog.comboComPort().isEnabled());
            QVERIFY(!tovinR(dialog).isEnabled());
            QVERIFY(!button(dialog, "OKButton").isEnabled());
            QVERIFY(button(dialog, "CancelButton").isEnabled());
        });
        press(dialog, "OKButton");
    });
    QVERIFY(looked);
}

void TestConnectDialog::pollingIsStoppedAndNotStartedAgain()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    frmConnectToComport dialog;
    int before = 0;
    open(dialog, [&] {
        before = bench.mainWindow->pollingStops;
        press(dialog, "OKButton");
    });
    QVERIFY(bench.mainWindow->pollingStops > before);
    QVERIFY(!bench.calls->contains(QStringLiteral("main.restartPolling")));
}

void TestConnectDialog::aLoopbackAdaptorIsStillNamedAfterwards()
{
    SearchBench bench;
    bench.line(1).setResponder([](const std::string &command) { return command; });
    bench.line(2);
    bench.fixture.boxes.expect(checkConnections);
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("FOUND A LOOPBACK ADAPTOR ON COM1"));
}

void TestConnectDialog::theDialogCanBeOpenedAgain()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] { press(dialog, "OKButton"); });
    open(dialog, [&] {
        QVERIFY(tovinR(dialog).isEnabled());
        QVERIFY(button(dialog, "OKButton").isEnabled());
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(1), QStringList(2, QStringLiteral("*ID?")));
}

void TestConnectDialog::escapeIsCancel()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QCOMPARE(bench.sentTo(1), QStringList());
    verifyAtRest(bench);
}

KELDOX_TEST(TestConnectDialog)
#include "TestConnectDialog.moc"
