// The fine-tuning scroll bar, and what may happen while the unit works.
#include "BinderFixture.h"
#include "support/LeaksAllowed.h"

class TestPelltrimScrollBar : public QObject
{
    Q_OBJECT

private slots:
    void arrowKeysSendAndKeepTheFocus();
    void everyMovementOfADragIsSent();
    void theNewestValueWaitsWhileOneIsSent();
    void theHeldThumbIsNotMovedByAnAnswer();
    void aRefusalEndsTheDrag();
    void aBadReplyEndsTheDrag();
    void theScrollBarRespectsTheGuard();
    void settingsFromTheUnitAreNotSentBack();
    void theTextIsNotClampedButTheBarIs();
    void aFailingDisplayIsReportedUnderItsSource();
    void theUnitBeforeIsLetGo();
    void unitReplacedDuringAWait();
    void programEndedDuringAWait();
    void unitUnpluggedDuringAWait();
};

void TestPelltrimScrollBar::arrowKeysSendAndKeepTheFocus()
{
    BinderFixture bench(calibratedUnit());
    QVERIFY(QTest::qWaitForWindowActive(&bench.panel));
    bench.panel.bar->setFocus();
    bool looked = false;
    QTimer::singleShot(0, &bench.panel, [&] {
        QVERIFY(!bench.panel.bar->isEnabled());
        QVERIFY(!app().guard().isUp());
        looked = true;
    });
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QVERIFY(looked);
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QCOMPARE(bench.sent(), QStringList({QStringLiteral("*ZNSE 41"), QStringLiteral("*ZNSE 42")}));
    QVERIFY(bench.panel.bar->isEnabled());
    QVERIFY(bench.panel.bar->hasFocus());
    QCOMPARE(bench.panel.box->text(), QStringLiteral("42"));
}

void TestPelltrimScrollBar::everyMovementOfADragIsSent()
{
    BinderFixture bench(calibratedUnit());
    bench.press();
    QStringList expected;
    for (int i = 0; i < 3; ++i) {
        bench.drag(20);
        expected.append(QStringLiteral("*ZNSE %1").arg(bench.panel.bar->sliderPosition()));
    }
    const int end = bench.panel.bar->sliderPosition();
    QCOMPARE(bench.simulated->fineTuning(), end);
    bench.release();
    expected.append(QStringLiteral("*ZNSE %1").arg(end)); // the change at the end of the drag
    QCOMPARE(bench.sent(), expected);
    QCOMPARE(bench.panel.bar->value(), end);
}

void TestPelltrimScrollBar::theNewestValueWaitsWhileOneIsSent()
{
    BinderFixture bench(calibratedUnit());
    bench.press();
    int newest = 0;
    QTimer::singleShot(0, &bench.panel, [&] {
        for (int i = 0; i < 4; ++i)
            bench.drag(10);
        newest = bench.panel.bar->sliderPosition();
    });
    bench.drag(20);
    const QStringList sent = bench.sent();
    QVERIFY(newest > 0);
    QCOMPARE(sent.size(), 2); // the first and the newest, none in between
    QCOMPARE(sent.last(), QStringLiteral("*ZNSE %1").arg(newest));
    QCOMPARE(bench.simulated->fineTuning(), newest);
    QVERIFY(app().guard().isUp());
    bench.release();
}

void TestPelltrimScrollBar::theHeldThumbIsNotMovedByAnAnswer()
{
    BinderFixture bench(calibratedUnit());
    bench.press();
    bench.drag(30);
    const int held = bench.panel.bar->sliderPosition();
    emit bench.unit->ZNChange(200);
    QCOMPARE(bench.panel.bar->sliderPosition(), held);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("200"));
    bench.release();
    QCOMPARE(bench.simulated->fineTuning(), held);
}

void TestPelltrimScrollBar::aRefusalEndsTheDrag()
{
    BinderFixture bench(calibratedUnit());
    int asked = 0;
    QObject::connect(bench.unit.get(), &clsKeldoX::GetPassword, &bench.panel, [&] { ++asked; });
    bench.simulated->setPassword("secret");
    bench.press();
    bench.drag(20);
    QVERIFY(!bench.panel.bar->isSliderDown());
    QCOMPARE(bench.panel.bar->value(), 40);
    QCOMPARE(bench.panel.bar->sliderPosition(), 40);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
    // The button is still down; moving on and letting go do nothing more.
    bench.drag(20);
    bench.drag(20);
    bench.release();
    QCOMPARE(bench.sent().size(), 1);
    QCOMPARE(asked, 1);
    QCOMPARE(bench.panel.bar->value(), 40);
    QCOMPARE(bench.panel.bar->sliderPosition(), 40);
}

void TestPelltrimScrollBar::aBadReplyEndsTheDrag()
{
    BinderFixture bench(calibratedUnit());
    bench.line.setFault(sim::Fault::Garbage, "*ZNSE ");
    bench.boxes().expect(
        QStringLiteral("The device did not respond correctly to an 'Pelltrim setting' command."),
        MessageBox::Exclamation);
    bench.press();
    bench.drag(20);
    bench.drag(20);
    bench.release();
    QVERIFY(bench.boxes().allShown()); // one box and not a storm of them
    QCOMPARE(bench.panel.bar->value(), 40);
    QCOMPARE(bench.sent().size(), 1);
}

void TestPelltrimScrollBar::theScrollBarRespectsTheGuard()
{
    BinderFixture bench(calibratedUnit());
    app().guard().set(false);
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QCOMPARE(bench.panel.bar->value(), 40);
    bench.press();
    bench.drag(20);
    bench.release();
    bench.enter(QStringLiteral("55"));
    QCOMPARE(bench.sent(), QStringList());
    QCOMPARE(bench.panel.bar->value(), 40);
    QCOMPARE(bench.panel.bar->sliderPosition(), 40);
    QVERIFY(!app().guard().isUp());
}

void TestPelltrimScrollBar::settingsFromTheUnitAreNotSentBack()
{
    BinderFixture bench(calibratedUnit());
    emit bench.unit->ZNChange(77);
    QCOMPARE(bench.panel.bar->value(), 77);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("77"));
    QCOMPARE(bench.sent(), QStringList());
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*ZNSE 78")});
}

void TestPelltrimScrollBar::theTextIsNotClampedButTheBarIs()
{
    BinderFixture bench(calibratedUnit());
    emit bench.unit->ZNChange(300);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("300"));
    QCOMPARE(bench.panel.bar->value(), 255);
    emit bench.unit->ZNChange(-5);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("-5"));
    QCOMPARE(bench.panel.bar->value(), 0);
    QCOMPARE(bench.sent(), QStringList());
}

void TestPelltrimScrollBar::aFailingDisplayIsReportedUnderItsSource()
{
    const LeaksAllowed throughQt;
    BinderFixture bench(calibratedUnit());
    bench.boxes().acceptAll();
    QObject::connect(bench.panel.box, &QLineEdit::textChanged, &bench.panel,
                     [] { throw RunTimeError(ErrorNumber::InvalidProcedureCall); });
    bench.binder.mDevice_ZNChange(12);
    QCOMPARE(bench.boxes().shown().size(), 1);
    QVERIFY(
        bench.log->lines().join(QLatin1Char('\n')).contains(QStringLiteral("clsZN.DUT_ZNChange")));
    bench.panel.box->disconnect(&bench.panel);
}

void TestPelltrimScrollBar::theUnitBeforeIsLetGo()
{
    BinderFixture bench(calibratedUnit());
    const auto other = std::make_shared<clsKeldoX>();
    bench.binder.setDevice(other);
    emit bench.unit->ZNChange(99);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("40"));
    emit other->ZNChange(98);
    QCOMPARE(bench.panel.box->text(), QStringLiteral("98"));
    QCOMPARE(bench.binder.device(), other);
}

void TestPelltrimScrollBar::unitReplacedDuringAWait()
{
    BinderFixture bench(calibratedUnit());
    const auto other = std::make_shared<clsKeldoX>();
    QTimer::singleShot(0, &bench.panel, [&] {
        bench.binder.setDevice(other);
        bench.panel.bar->setValue(200); // waits for a unit that is no longer shown
    });
    bench.enter(QStringLiteral("55"));
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*ZNSE 55")});
    QVERIFY(app().guard().isUp());
}

void TestPelltrimScrollBar::programEndedDuringAWait()
{
    BinderFixture bench(calibratedUnit());
    bench.reply("*ZNSE 41", std::nullopt);
    bench.boxes().acceptAll();
    QElapsedTimer time;
    QTimer::singleShot(0, &bench.panel, [&] {
        time.start();
        EventQueue::endProgram();
    });
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QVERIFY(time.isValid());
    QVERIFY(time.elapsed() < 200);
    QVERIFY(bench.boxes().shown().isEmpty());
}

void TestPelltrimScrollBar::unitUnpluggedDuringAWait()
{
    BinderFixture bench(calibratedUnit());
    bench.reply("*ZNSE 41", std::nullopt);
    bench.boxes().acceptAll();
    QTimer::singleShot(100, &bench.panel, [&] { bench.line.unplug(); });
    QTest::keyClick(bench.panel.bar, Qt::Key_Right);
    QVERIFY(bench.isEnabled(false, false, false));
    QVERIFY(!bench.panel.bar->isEnabledTo(&bench.panel)); // not by its frame alone
    QCOMPARE(bench.panel.box->text(), QString());
    QVERIFY(app().guard().isUp());
    QVERIFY(bench.boxes().shown().size() <= 1);
}

KELDOX_TEST(TestPelltrimScrollBar)
#include "TestPelltrimScrollBar.moc"
