// The names under which the main window's handlers report what fails in them, and that the window
// goes on afterwards.
#include "MainBench.h"

#include "support/Failures.h"
#include "support/LeaksAllowed.h"

class TestErrorSources : public QObject
{
    Q_OBJECT

private slots:
    void aUnitChange();
    void aFrequency();
    void aDragOfTheSlider();
    void handlersThatSend_data();
    void handlersThatSend();
    void aStatus();
    void anInputLimitingMode();
    void enablingAPreset();

private:
    LeaksAllowed m_throughQt;
};

static void expectFailureIn(MainBench &bench, const char *source)
{
    bench.boxes().expect(failureIn(source), MessageBox::Exclamation);
}

// What follows the failing statement is done.
void TestErrorSources::aUnitChange()
{
    ConnectedBench bench;
    bench.find<QLabel>("lblChannelSpacing")->clear();
    bench.slider()->setMaximum(7);
    connect(bench.slider(), &StepSlider::rangeChanged, this, fail, Qt::SingleShotConnection);
    expectFailureIn(bench, "frmMain.mDevice_DUTChange");
    emit bench.unit->DUTChange();
    QVERIFY(bench.boxes().allShown());
    QCOMPARE(bench.caption("lblChannelSpacing"), QStringLiteral(" 25 kHz frequency spacing"));
}

void TestErrorSources::aFrequency()
{
    ConnectedBench bench;
    connect(bench.slider(), &StepSlider::valueChanged, this, fail, Qt::SingleShotConnection);
    expectFailureIn(bench, "frmMain.DUT_FreqChange");
    emit bench.unit->FreqChange(123, 103.075);
    QVERIFY(bench.boxes().allShown());
    QCOMPARE(bench.frequency()->text(), QStringLiteral("103.075"));
    QTest::keyClick(bench.slider(), Qt::Key_Right);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 124")});
}

void TestErrorSources::aDragOfTheSlider()
{
    ConnectedBench bench;
    connect(bench.frequency(), &QLineEdit::textChanged, this, fail, Qt::SingleShotConnection);
    expectFailureIn(bench, "frmMain.HScroll1_Scroll");
    bench.slider()->setSliderDown(true);
    bench.slider()->setSliderPosition(40);
    QVERIFY(bench.boxes().allShown());
    bench.slider()->setSliderDown(false);
    QCOMPARE(bench.sent(), QStringList{QStringLiteral("*STEP 40")});
}

void TestErrorSources::handlersThatSend_data()
{
    using Hand = std::function<void(ConnectedBench &)>;
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<Hand>("act");
    QTest::addColumn<QString>("command");
    QTest::addRow("slider") << QByteArray("frmMain.HScroll1_Change") << Hand([](ConnectedBench &b) {
        QTest::keyClick(b.slider(), Qt::Key_Right);
    }) << QStringLiteral("*STEP 1");
    QTest::addRow("Enter") << QByteArray("frmMain.txtCurrentFreq_KeyUp")
                           << Hand([](ConnectedBench &b) { b.enter(QStringLiteral("101")); })
                           << QStringLiteral("*STEP 40");
    QTest::addRow("double-click") << QByteArray("frmMain.txtCurrentFreq_DblClick")
                                  << Hand([](ConnectedBench &b) {
                                         b.frequency()->setText(QStringLiteral("102"));
                                         QTest::mouseDClick(b.frequency(), Qt::LeftButton);
                                     })
                                  << QStringLiteral("*STEP 80");
}

// They fail before they have sent anything, and send the next time.
void TestErrorSources::handlersThatSend()
{
    QFETCH(const QByteArray, source);
    QFETCH(const std::function<void(ConnectedBench &)>, act);
    QFETCH(const QString, command);
    ConnectedBench bench;
    connect(&app().guard(), &EventGuard::changed, this, fail, Qt::SingleShotConnection);
    expectFailureIn(bench, source.constData());
    act(bench);
    QVERIFY(bench.boxes().allShown());
    QCOMPARE(bench.sent(), QStringList());
    QVERIFY(app().guard().isUp());
    act(bench);
    QCOMPARE(bench.sent(), QStringList{command});
}

void TestErrorSources::aStatus()
{
    MainBench bench;
    const FailsOn tip(bench.find<QWidget>("ShapeStatusLight"), QEvent::ToolTipChange);
    expectFailureIn(bench, "formMain.DUT_StatusChange");
    emit bench.window->device()->StatusChange(clsKeldoX::Unlocked);
    QVERIFY(bench.boxes().allShown());
    QCOMPARE(bench.panel(2), QStringLiteral("VCO UNLOCKED"));
}

void TestErrorSources::anInputLimitingMode()
{
    MainBench bench;
    auto *second = bench.find<QRadioButton>("optInputLimit_2");
    connect(second, &QRadioButton::toggled, this, fail, Qt::SingleShotConnection);
    expectFailureIn(bench, "formMain.DUT_InputLimitingModeChange");
    emit bench.window->device()->InputLimitingModeChange(2);
    QVERIFY(bench.boxes().allShown());
    emit bench.window->device()->InputLimitingModeChange(3);
    QVERIFY(bench.find<QRadioButton>("optInputLimit_3")->isChecked());
}

void TestErrorSources::enablingAPreset()
{
    MainBench bench;
    for (int i = 4; i <= 7; ++i)
        app().presets[i]->Disable();
    const FailsOn change(bench.find<QWidget>("cmdSetDUTFreq_4"), QEvent::EnabledChange);
    expectFailureIn(bench, "clsPresetButton.EnableIfValid");
    bench.window->EnablePresetsIfTheyreValid();
    QVERIFY(bench.boxes().allShown());
    QVERIFY(bench.find<QWidget>("cmdSetDUTFreq_7")->isEnabled());
}

KELDOX_TEST(TestErrorSources)
#include "TestErrorSources.moc"
