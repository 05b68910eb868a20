// The port chooser, the companion of the connect-to-port dialog.
#include "app/AppState.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"
#include "ui/connect/clsChooseAPort.h"

#include <QComboBox>

class TestChooseAPort : public QObject
{
    Q_OBJECT

private slots:
    void itFillsAListWithoutTheHighestPort();
    void onePortLeavesAnEmptyListThatIsEnabled();
    void withoutAPortTheListStaysDisabledAfterAReport();
    void itHasASeekerOfItsOwn();
    void makingItAndInitTouchNothing();
    void aClickOfTheListHasNoEffect();
    void itMakesADialogOfItsOwn();
};

void TestChooseAPort::itFillsAListWithoutTheHighestPort()
{
    SearchBench bench;
    for (const int port : {1, 3, 12, 255})
        bench.line(port);
    clsChooseAPort chooser;
    QComboBox combo;
    combo.addItem(QStringLiteral("old"));
    combo.setEnabled(false);
    chooser.PopulateComboBox(combo);
    QStringList entries;
    for (int i = 0; i < combo.count(); ++i)
        entries.append(combo.itemText(i));
    QCOMPARE(entries,
             (QStringList{QStringLiteral(" 1"), QStringLiteral(" 3"), QStringLiteral(" 12")}));
    QCOMPARE(combo.currentIndex(), 0);
    QVERIFY(combo.isEnabled());
    QVERIFY(
        combo.itemData(1, Qt::ToolTipRole).toString().endsWith(QStringLiteral("linked as com3")));
}

void TestChooseAPort::onePortLeavesAnEmptyListThatIsEnabled()
{
    SearchBench bench;
    bench.line(7);
    clsChooseAPort chooser;
    QComboBox combo;
    chooser.PopulateComboBox(combo);
    QCOMPARE(combo.count(), 0);
    QVERIFY(combo.isEnabled());
}

void TestChooseAPort::withoutAPortTheListStaysDisabledAfterAReport()
{
    SearchBench bench;
    bench.fixture.boxes.expectStart(QStringLiteral("Error 5 ("), MessageBox::Exclamation);
    clsChooseAPort chooser;
    QComboBox combo;
    chooser.PopulateComboBox(combo);
    QVERIFY(
        bench.fixture.boxes.texts().value(0).endsWith(QStringLiteral(" in PopulateComboBox\r\n")));
    QVERIFY(!combo.isEnabled());
}

void TestChooseAPort::itHasASeekerOfItsOwn()
{
    SearchBench bench;
    bench.unit(1);
    bench.unit(2);
    clsChooseAPort chooser;
    QComboBox combo;
    chooser.PopulateComboBox(combo);
    QVERIFY(!app().search);
    QCOMPARE(bench.line(1).bytesReceived(), std::size_t{0});
}

void TestChooseAPort::makingItAndInitTouchNothing()
{
    SearchBench bench;
    bench.line(1);
    const auto unit = bench.bind(1, 1);
    QVERIFY(unit->commPort()->InitializePort());
    const auto dialog = std::make_shared<frmConnectToComport>();
    clsChooseAPort chooser(dialog);
    chooser.Init();
    QVERIFY(unit->PortIsOpen());
    QCOMPARE(*bench.calls, QStringList());
    QVERIFY(!dialog->isVisible());
}

void TestChooseAPort::aClickOfTheListHasNoEffect()
{
    SearchBench bench;
    const auto dialog = std::make_shared<frmConnectToComport>();
    clsChooseAPort chooser(dialog);
    QComboBox &combo = dialog->comboComPort();
    combo.addItems({QStringLiteral(" 1"), QStringLiteral(" 2")});
    for (const bool enabled : {true, false}) {
        combo.setEnabled(enabled);
        emit combo.activated(1);
        chooser.m_combo_Click();
        QCOMPARE(combo.isEnabled(), enabled);
        QCOMPARE(combo.currentIndex(), 0);
        QCOMPARE(combo.count(), 2);
    }
    QCOMPARE(*bench.calls, QStringList());
}

void TestChooseAPort::itMakesADialogOfItsOwn()
{
    SearchBench bench;
    auto dialog = std::make_shared<frmConnectToComport>();
    const std::weak_ptr<frmConnectToComport> watched = dialog;
    {
        const clsChooseAPort chooser(dialog);
        dialog.reset();
        QVERIFY(!watched.expired()); // the list lives as long as the chooser
    }
    QVERIFY(watched.expired());
    clsChooseAPort alone;
    alone.m_combo_Click();
    QCOMPARE(*bench.calls, QStringList());
}

KELDOX_TEST(TestChooseAPort)
#include "TestChooseAPort.moc"
