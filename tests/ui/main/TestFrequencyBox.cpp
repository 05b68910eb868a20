// Typing a frequency into the main window, against a simulated unit.
#include "MainBench.h"

class TestFrequencyBox : public QObject
{
    Q_OBJECT

private slots:
    void enterSendsTheTypedFrequency_data();
    void enterSendsTheTypedFrequency();
    void otherKeysAndTextsSendNothing_data();
    void otherKeysAndTextsSendNothing();
    void theReleaseOfAnEnterFromElsewhereSendsNothing();
    void aHeldEnterSendsOnce();
    void nothingIsSentWhileTheGuardIsDown();
    void aFrequencyOutsideTheRangeIsRefusedByTheUnitsObject();
    void doubleClickSendsTheShownFrequencyAgain();
    void doubleClickOnAnEmptyBoxOrZeroSendsNothing();
    void aBadReplyPutsBoxAndSliderBack();
    void aRefusalPutsBoxAndSliderBackAndAsksForThePassword();
    void enterDuringAWaitIsIgnored();
};

void TestFrequencyBox::enterSendsTheTypedFrequency_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("shown");
    const int enter = Qt::Key_Return;
    QTest::addRow("plain") << "106.5" << enter << "*STEP 260"
                           << "106.5";
    QTest::addRow("keypad") << "106.5" << int(Qt::Key_Enter) << "*STEP 260"
                            << "106.5";
    QTest::addRow("with its unit") << "105.5 MHz" << enter << "*STEP 220"
                                   << "105.5";
    QTest::addRow("to the nearest step") << "100.06" << enter << "*STEP 2"
                                         << "100.05";
    QTest::addRow("blanks around") << "  101 " << enter << "*STEP 40"
                                   << "101";
    QTest::addRow("first") << "100" << enter << "*STEP 0"
                           << "100";
    QTest::addRow("last") << "110" << enter << "*STEP 400"
                          << "110";
}

void TestFrequencyBox::enterSendsTheTypedFrequency()
{
    QFETCH(const QString, text);
    QFETCH(const int, key);
    QFETCH(const QString, command);
    QFETCH(const QString, shown);
    ConnectedBench bench;
    bench.type(text);
    QTest::keyClick(bench.frequency(), static_cast<Qt::Key>(key));
    QCOMPARE(bench.sent(), QStringList{command});
    QCOMPARE(bench.frequency()->text(), shown);
    QCOMPARE(bench.frequency()->selectedText(), shown); // the next one replaces it
    QCOMPARE(bench.slider()->value(), bench.simulated->step());
    QVERIFY(app().guard().isUp());
    QCOMPARE(bench.panel(2), QStringLiteral("OK"));
    QCOMPARE(bench.light(), IndicatorLight::green);
}

void TestFrequencyBox::otherKeysAndTextsSendNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("key");
    QTest::addRow("tab") << "106.5" << int(Qt::Key_Tab);
    QTest::addRow("space") << "106.5" << int(Qt::Key_Space);
    QTest::addRow("a digit") << "106" << int(Qt::Key_5);
    QTest::addRow("words") << "one hundred" << int(Qt::Key_Return);
    QTest::addRow("empty") << "" << int(Qt::Key_Return);
    QTest::addRow("two points") << "106.5.1" << int(Qt::Key_Return);
    QTest::addRow("a comma") << "106,5" << int(Qt::Key_Return);
}

void TestFrequencyBox::otherKeysAndTextsSendNothing()
{
    QFETCH(const QString, text);
    QFETCH(const int, key);
    ConnectedBench bench;
    bench.frequency()->setFocus();
    bench.frequency()->setText(text);
    QTest::keyClick(bench.frequency(), static_cast<Qt::Key>(key));
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(bench.frequency()->text().startsWith(text));
    QVERIFY(app().guard().isUp());
}

void TestFrequencyBox::theReleaseOfAnEnterFromElsewhereSendsNothing()
{
    ConnectedBench bench;
    bench.type(QStringLiteral("105"));
    QTest::keyRelease(bench.frequency(), Qt::Key_Return);
    QCOMPARE(bench.sent(), QStringList());

    // Pressed here, but the focus was elsewhere in between.
    QTest::keyPress(bench.frequency(), Qt::Key_Return);
    bench.slider()->setFocus();
    bench.frequency()->setFocus();
    QTest::keyRelease(bench.frequency(), Qt::Key_Return);
    QCOMPARE(bench.sent(), QStringList());
}

void TestFrequencyBox::aHeldEnterSendsOnce()
{
    ConnectedBench bench;
    bench.type(QStringLiteral("105"));
    QTest::keyPress(bench.frequency(), Qt::Key_Return);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(bench.frequency(), &up);
        QCoreApplication::sendEvent(bench.frequency(), &down);
    }
    QCOMPARE(bench.sent(), QStringList());
    QTest::keyRelease(bench.frequency(), Qt::Key_Return);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 200")});
}

void TestFrequencyBox::nothingIsSentWhileTheGuardIsDown()
{
    ConnectedBench bench;
    app().guard().set(false);
    bench.enter(QStringLiteral("105"));
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(!app().guard().isUp());
    // The slider is where the unit is.
    QCOMPARE(bench.slider()->value(), 0);
    QCOMPARE(bench.slider()->sliderPosition(), 0);
}

void TestFrequencyBox::aFrequencyOutsideTheRangeIsRefusedByTheUnitsObject()
{
    ConnectedBench bench;
    bench.boxes().expect(QStringLiteral("Cannot set the device to a frequency outside its range."),
                         MessageBox::Exclamation);
    bench.enter(QStringLiteral("110.001"));
    QVERIFY(bench.boxes().allShown());
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(app().guard().isUp());
    // What was typed stays to be mended.
    QCOMPARE(bench.frequency()->text(), QStringLiteral("110.001"));
}

void TestFrequencyBox::doubleClickSendsTheShownFrequencyAgain()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("106.5"));
    bench.sent();
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 260")});
    // The number that the text begins with counts.
    bench.frequency()->setText(QStringLiteral("101 and more"));
    QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 40")});
    QVERIFY(app().guard().isUp());
}

void TestFrequencyBox::doubleClickOnAnEmptyBoxOrZeroSendsNothing()
{
    ConnectedBench bench;
    for (const char *text : {"", "0", "-101", "MHz"}) {
        bench.frequency()->setText(QString::fromLatin1(text));
        QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
        QCOMPARE(bench.sent(), QStringList());
        QVERIFY(app().guard().isUp());
    }
}

void TestFrequencyBox::aBadReplyPutsBoxAndSliderBack()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("105"));
    bench.reply("*STEP 40", "WHAT?");
    bench.boxes().expect(
        QStringLiteral("The device did not respond correctly to a 'current step' command."),
        MessageBox::Exclamation);
    bench.enter(QStringLiteral("101"));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("105"));
    QCOMPARE(bench.slider()->value(), 200);
    QCOMPARE(bench.light(), IndicatorLight::red);
    QCOMPARE(bench.panel(2), QStringLiteral("OK"));
}

void TestFrequencyBox::aRefusalPutsBoxAndSliderBackAndAsksForThePassword()
{
    ConnectedBench bench;
    bench.enter(QStringLiteral("105"));
    bench.sent();
    bench.reply("*STEP 40", "PERMISSION DENIED");
    QString title;
    QTimer::singleShot(200, bench.window.get(), [&] {
        title = QApplication::activeModalWidget()->windowTitle();
        QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    });
    bench.enter(QStringLiteral("101"));
    QCOMPARE(title, QStringLiteral("  KELDO-X Control Program"));
    QCOMPARE(bench.frequency()->text(), QStringLiteral("105"));
    QCOMPARE(bench.slider()->value(), 200);
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*STEP 40"), QStringLiteral("PASSWORD ")}));
    QCOMPARE(bench.light(), IndicatorLight::red);
}

void TestFrequencyBox::enterDuringAWaitIsIgnored()
{
    ConnectedBench bench;
    bool tried = false;
    bench.whileWaiting([&] {
        QVERIFY(!app().guard().isUp());
        bench.frequency()->setText(QStringLiteral("107"));
        QTest::keyClick(bench.frequency(), Qt::Key_Return);
        QTest::mouseDClick(bench.frequency(), Qt::LeftButton);
        tried = true;
    });
    bench.enter(QStringLiteral("105"));
    QVERIFY(tried);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 200")});
    QCOMPARE(bench.frequency()->text(), QStringLiteral("105"));
}

KELDOX_TEST(TestFrequencyBox)
#include "TestFrequencyBox.moc"
