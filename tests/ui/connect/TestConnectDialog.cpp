// The connect-to-port dialog: what it shows, lists and resets, and what Cancel leaves.
#include "ConnectDialogBench.h"
#include "support/Failures.h"
#include "support/LeaksAllowed.h"
#include "support/TestMain.h"

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
    void theDialogCanBeOpenedAgain();
    void escapeIsCancel();
    void aFailureInOkIsReportedAndTheDialogCloses();
};

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
                 QStringLiteral("Connect to Keldo-X on com &port"));
        QCOMPARE(tovinR(dialog).text(), QStringLiteral("Unit is an addressable &Tovin-R"));
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

void TestConnectDialog::aFailureInOkIsReportedAndTheDialogCloses()
{
    const LeaksAllowed throughQt;
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    bench.fixture.boxes.expect(failureIn("frmConnectToKnownComport.OKButton_Click"),
                               MessageBox::Exclamation);
    frmConnectToComport dialog;
    std::optional<FailsOn> change;
    open(dialog, [&] {
        change.emplace(&tovinR(dialog), QEvent::EnabledChange);
        press(dialog, "OKButton");
    });
    QVERIFY(bench.fixture.boxes.allShown());
    QCOMPARE(bench.sentTo(1), QStringList());
    verifyAtRest(bench);
}

KELDOX_TEST(TestConnectDialog)
#include "TestConnectDialog.moc"
