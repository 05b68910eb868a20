// Input limiting, the password request, and a line that goes away, on the main window.
#include "MainBench.h"

class TestUnitRequests : public QObject
{
    Q_OBJECT

private slots:
    void inputLimitingIsSentByAClick();
    void inputLimitingRefusedGoesBack();
    void inputLimitingWhileTheGuardIsDownChangesNothing();
    void anOldUnitHasNoInputLimiting();
    void aUnitWithoutFineTuningLeavesItsFrameDisabled();
    void thePasswordThatWasTypedIsSent();
    void cancelStillSendsAnEmptyPassword_data();
    void cancelStillSendsAnEmptyPassword();
    void aSecondRequestOpensNoSecondBox();
    void anUnpluggedUnitIsShownAsNotConnected();
    void aUnitConnectedAgainIsShownAgain();
    void aFailedConnectionEmptiesTheDisplays();
};

void TestUnitRequests::inputLimitingIsSentByAClick()
{
    ConnectedBench bench;
    QTest::mouseClick(bench.find<QRadioButton>("optInputLimit_3"), Qt::LeftButton, {},
                      QPoint(8, bench.find<QRadioButton>("optInputLimit_3")->height() / 2));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("InputLimitMode 3")});
    QVERIFY(bench.find<QRadioButton>("optInputLimit_3")->isChecked());
    QVERIFY(!bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(app().guard().isUp());
    // Arrow keys only move on; the space bar selects.
    QTest::keyClick(bench.find<QRadioButton>("optInputLimit_3"), Qt::Key_Left);
    QCOMPARE(bench.sent(), QStringList());
    QTest::keyClick(bench.find<QRadioButton>("optInputLimit_2"), Qt::Key_Space);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("InputLimitMode 2")});
}

void TestUnitRequests::inputLimitingRefusedGoesBack()
{
    ConnectedBench bench;
    bench.reply("InputLimitMode 2", "no");
    bench.boxes().expect(
        QStringLiteral("The device did not respond correctly to an input limiting mode command"));
    bench.find<QRadioButton>("optInputLimit_2")->click();
    QVERIFY(bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(!bench.find<QRadioButton>("optInputLimit_2")->isChecked());
    QCOMPARE(bench.light(), IndicatorLight::red);
}

void TestUnitRequests::inputLimitingWhileTheGuardIsDownChangesNothing()
{
    ConnectedBench bench;
    app().guard().set(false);
    bench.find<QRadioButton>("optInputLimit_2")->click();
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(!app().guard().isUp());
}

void TestUnitRequests::anOldUnitHasNoInputLimiting()
{
    const ConnectedBench bench(unitWithFirmware("3.17"));
    QVERIFY(!bench.find<QWidget>("FrameInputLimiting")->isEnabled());
    for (const char *name : {"optInputLimit_1", "optInputLimit_2", "optInputLimit_3"})
        QVERIFY(!bench.find<QRadioButton>(name)->isChecked());
}

void TestUnitRequests::aUnitWithoutFineTuningLeavesItsFrameDisabled()
{
    sim::UnitSettings settings = smallUnit();
    settings.optionC = 0;
    const ConnectedBench bench(settings);
    for (const char *name :
         {"FramePelltrim", "chkPelltrimCalMode", "txtPelltrim", "HScroll_Pelltrim"})
        QVERIFY2(!bench.find<QWidget>(name)->isEnabled(), name);
    QCOMPARE(bench.find<QLineEdit>("txtPelltrim")->text(), QString());
}

void TestUnitRequests::thePasswordThatWasTypedIsSent()
{
    sim::UnitSettings settings = smallUnit();
    ConnectedBench bench(settings);
    bench.simulated->setPassword("Open Sesame");
    QTimer::singleShot(200, bench.window.get(), [] {
        auto *box = QApplication::activeModalWidget();
        QVERIFY(box);
        auto *entry = box->findChild<QLineEdit *>(QStringLiteral("Text1"));
        QVERIFY(entry->hasFocus());
        QCOMPARE(entry->echoMode(), QLineEdit::Normal); // not hidden
        QTest::keyClicks(entry, QStringLiteral("Open Sesame"));
        QTest::keyClick(entry, Qt::Key_Return);
    });
    bench.find<QRadioButton>("optInputLimit_2")->click();
    // The refused setting is not repeated.
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("InputLimitMode 2"),
                                        QStringLiteral("PASSWORD Open Sesame")}));
    QVERIFY(bench.find<QRadioButton>("optInputLimit_1")->isChecked());
    QVERIFY(!QApplication::activeModalWidget());

    bench.find<QRadioButton>("optInputLimit_2")->click();
    QVERIFY(bench.find<QRadioButton>("optInputLimit_2")->isChecked());
}

void TestUnitRequests::cancelStillSendsAnEmptyPassword_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how : {"button", "escape", "frame"})
        QTest::addRow("%s", how) << QString::fromLatin1(how);
}

void TestUnitRequests::cancelStillSendsAnEmptyPassword()
{
    QFETCH(const QString, how);
    ConnectedBench bench;
    QTimer::singleShot(200, bench.window.get(), [how] {
        auto *box = QApplication::activeModalWidget();
        QVERIFY(box);
        QTest::keyClicks(box->findChild<QLineEdit *>(QStringLiteral("Text1")),
                         QStringLiteral("secret"));
        if (how == QLatin1String("button"))
            QTest::mouseClick(box->findChild<QPushButton *>(QStringLiteral("CancelButton")),
                              Qt::LeftButton);
        else if (how == QLatin1String("escape"))
            QTest::keyClick(box, Qt::Key_Escape);
        else
            box->close();
    });
    emit bench.unit->GetPassword();
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("PASSWORD ")});
}

void TestUnitRequests::aSecondRequestOpensNoSecondBox()
{
    ConnectedBench bench;
    int boxes = 0;
    QTimer::singleShot(100, bench.window.get(), [&] {
        emit bench.unit->GetPassword();
        for (const QWidget *window : QApplication::topLevelWidgets())
            boxes += window->isVisible() && window->objectName() == QLatin1String("frmPasswordBox");
        QApplication::activeModalWidget()->close();
    });
    emit bench.unit->GetPassword();
    QCOMPARE(boxes, 1);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("PASSWORD ")});
}

void TestUnitRequests::anUnpluggedUnitIsShownAsNotConnected()
{
    ConnectedBench bench;
    bench.window->setStatusPanel(1, QStringLiteral("CONNECTED"));
    bench.boxes().acceptAll();
    bench.line.unplug();
    QTRY_COMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.light(), IndicatorLight::red);
    for (const char *name : {"txtCurrentFreq", "HScroll1", "FramePelltrim", "FrameInputLimiting"})
        QVERIFY2(!bench.find<QWidget>(name)->isEnabled(), name);
    QCOMPARE(bench.frequency()->text(), QString());
    QCOMPARE(bench.panel(2), QString());
    QVERIFY(bench.find<QWidget>("cmdSetPresets")->isEnabled());
    QTRY_VERIFY(!bench.boxes().shown().isEmpty());
    // A late event of the unit that is gone fills nothing in again.
    emit bench.unit->FreqChange(3, 100.075);
    QCOMPARE(bench.frequency()->text(), QString());
}

void TestUnitRequests::aUnitConnectedAgainIsShownAgain()
{
    ConnectedBench bench;
    bench.boxes().acceptAll();
    bench.line.unplug();
    QTRY_COMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QTRY_VERIFY(!bench.boxes().shown().isEmpty());

    sim::SimulatedLine again;
    again.addUnit(bench.simulated);
    bench.simulated->setStep(40);
    bench.fixture.plug(MainBench::port, again.device());
    bench.window->setDevice(bench.unit);
    QVERIFY(bench.unit->Initialize());
    QVERIFY(bench.frequency()->isEnabled());
    QVERIFY(bench.slider()->isEnabled());
    QCOMPARE(bench.frequency()->text(), QStringLiteral("101"));
    bench.unit->commPort()->ClosePort();
}

void TestUnitRequests::aFailedConnectionEmptiesTheDisplays()
{
    ConnectedBench bench;
    bench.unit->commPort()->ClosePort();
    bench.window->setDevice(std::make_shared<clsKeldoX>());
    bench.window->showNotConnected();
    QCOMPARE(bench.frequency()->text(), QString());
    for (const char *name : {"txtFreq_1", "txtFreq_2", "txtFreq_3", "txtPelltrim"})
        QCOMPARE(bench.find<QLineEdit>(name)->text(), QString());
    QVERIFY(!bench.slider()->isEnabled());
    QCOMPARE(bench.slider()->value(), 0);
    // The selected channel keeps its name, as long as there is one.
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("Active Channel 2"));
    bench.channels->selected = 0;
    bench.window->showNotConnected();
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("No active channel"));
}

KELDOX_TEST(TestUnitRequests)
#include "TestUnitRequests.moc"
