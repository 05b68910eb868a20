// The main window after loading: its captions, names, focus order and first activation.
#include "MainBench.h"

#include "ui/dialogs/frmPasswordBox.h"

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void loadingShowsThatNoUnitIsConnected();
    void captionsAreAsTheOperatorsKnowThem_data();
    void captionsAreAsTheOperatorsKnowThem();
    void loadingCreatesThePresetsAndTheirDisplays();
    void loadingEmptiesChannelsOneToFourAndLeavesTheOthers();
    void everyControlHasANameForScreenReaders();
    void tabGoesThroughTheControlsInReadingOrder();
    void withoutAUnitOnlyPresetsAndMenusCanBeUsed();
    void nothingIsSentBeforeTheFirstActivation();
    void firstActivationArmsTheGuardAndTheTimerOnce();
    void theFirstActivationsHourglassIsSeenByWhoeverWaitsInIt();
    void firstActivationStartsPollingWhenItIsChecked();
};

void TestMainWindow::loadingShowsThatNoUnitIsConnected()
{
    const MainBench bench;
    QCOMPARE(bench.window->objectName(), QStringLiteral("frmMain_KeldoX2"));
    QCOMPARE(bench.window->windowTitle(), QStringLiteral("   KELDO-X Control Program"));
    QCOMPARE(bench.caption("lblCurrentChannel"), QStringLiteral("No active channel"));
    QCOMPARE(bench.panel(1), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.panel(2), QString());
    QCOMPARE(bench.slider()->pageStep(), 10);
    QVERIFY(!bench.polling()->isEnabled());
    QVERIFY(!bench.entry("mnuEnablePolling")->isChecked());
    QCOMPARE(bench.light(), IndicatorLight::buttonFace);
    QVERIFY(!app().guard().isUp());
    QCOMPARE(bench.window->device()->Connection(), 0);
}

void TestMainWindow::captionsAreAsTheOperatorsKnowThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *property, const char *text) {
        QTest::addRow("%s", name) << QString::fromLatin1(name) << QString::fromLatin1(property)
                                  << QString::fromLatin1(text);
    };
    row("FramePelltrim", "title", "Pelltrim Tuning");
    row("FrameInputLimiting", "title", "Input Limiting");
    row("chkPelltrimCalMode", "text", "Calibrated");
    row("cmdSetPresets", "text", "set presets");
    row("optInputLimit_1", "text", "nominal");
    row("optInputLimit_2", "text", "-1");
    row("optInputLimit_3", "text", "-2");
    row("lblPressEnter", "text", "(press enter after typing the desired frequency in MHz)");
    row("lbl32DBlight", "text", "Input Attenuation");
    row("lblCommStatusLight", "text", "Communication Status");
    row("lblCurrentFreq", "text", "Current RX Frequency");
}

void TestMainWindow::captionsAreAsTheOperatorsKnowThem()
{
    QFETCH(const QString, name);
    QFETCH(const QString, property);
    QFETCH(const QString, text);
    const MainBench bench;
    const auto *control = bench.window->findChild<QWidget *>(name);
    QVERIFY(control);
    QCOMPARE(control->property(property.toLatin1()).toString(), text);
}

void TestMainWindow::loadingCreatesThePresetsAndTheirDisplays()
{
    const MainBench bench;
    for (int i = 1; i <= 7; ++i) {
        const auto preset = app().presets[i];
        QVERIFY(preset);
        const QString name =
            QStringLiteral("%1_%2").arg(QLatin1String(i < 4 ? "txtFreq" : "cmdSetDUTFreq")).arg(i);
        QCOMPARE(preset->Display()->objectName(), name);
        QCOMPARE(preset->Button() != nullptr, i >= 4);
        QCOMPARE(preset->Index(), static_cast<std::int16_t>(i < 4 ? -1 : i));
    }
    for (int i = 1; i <= 3; ++i)
        QVERIFY(qobject_cast<QLineEdit *>(app().presets[i]->Display())->isReadOnly());
}

void TestMainWindow::loadingEmptiesChannelsOneToFourAndLeavesTheOthers()
{
    const MainBench bench;
    for (int channel = 1; channel <= 8; ++channel) {
        const QString left = channel <= 4 ? QString() : QStringLiteral("full");
        QCOMPARE(bench.channels->text("txtChanFreq_%1", channel), left);
        QCOMPARE(bench.channels->text("txtChanAtten_%1", channel), left);
        QCOMPARE(bench.channels->text("txtChanAGCoffset_%1", channel), left);
        QCOMPARE(bench.channels->text("txtChanInputAtten_%1", channel), QStringLiteral("full"));
    }
}

void TestMainWindow::everyControlHasANameForScreenReaders()
{
    MainBench bench;
    bench.show();
    const auto widgets = bench.window->centralWidget()->findChildren<QWidget *>();
    for (const QWidget *control : widgets) {
        QVERIFY2(!control->objectName().isEmpty(), control->metaObject()->className());
        if (qobject_cast<const QLabel *>(control) || control->layout() ||
            control->objectName() == QStringLiteral("qt_scrollarea_viewport"))
            continue;
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    }
}

void TestMainWindow::tabGoesThroughTheControlsInReadingOrder()
{
    ConnectedBench bench;
    bench.slider()->setFocus();
    QStringList visited;
    for (int i = 0; i < 16; ++i) {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited.join(QLatin1Char(' ')),
             QStringLiteral("HScroll1 txtFreq_1 txtFreq_2 txtFreq_3 txtCurrentFreq cmdSetDUTFreq_4 "
                            "cmdSetDUTFreq_5 cmdSetDUTFreq_6 cmdSetDUTFreq_7 cmdSetPresets "
                            "chkPelltrimCalMode HScroll_Pelltrim txtPelltrim optInputLimit_1 "
                            "optInputLimit_2 optInputLimit_3"));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("HScroll1"));
}

void TestMainWindow::withoutAUnitOnlyPresetsAndMenusCanBeUsed()
{
    MainBench bench;
    bench.show();
    for (const char *name : {"txtCurrentFreq", "HScroll1", "FramePelltrim", "chkPelltrimCalMode",
                             "HScroll_Pelltrim", "txtPelltrim", "FrameInputLimiting",
                             "optInputLimit_1", "optInputLimit_2", "optInputLimit_3"})
        QVERIFY2(!bench.find<QWidget>(name)->isEnabled(), name);
    for (const char *name : {"cmdSetDUTFreq_4", "cmdSetDUTFreq_7", "cmdSetPresets", "menuBar"})
        QVERIFY2(bench.find<QWidget>(name)->isEnabled(), name);
}

void TestMainWindow::nothingIsSentBeforeTheFirstActivation()
{
    MainBench bench;
    bench.boxes().acceptAll();
    bench.find<QPushButton>("cmdSetPresets")->click();
    QVERIFY(!app().presets[4]->SetMode());
    bench.find<QPushButton>("cmdSetDUTFreq_4")->click();
    QVERIFY(bench.boxes().shown().isEmpty());
}

void TestMainWindow::firstActivationArmsTheGuardAndTheTimerOnce()
{
    MainBench bench;
    bench.show();
    QCOMPARE(bench.polling()->interval(), 1000);
    QVERIFY(!bench.polling()->isEnabled());
    QCOMPARE(bench.window->cursor().shape(), Qt::ArrowCursor);
    QVERIFY(bench.entry("mnuConnectComport")->isEnabled());

    bench.polling()->setInterval(77);
    app().guard().set(false);
    bench.window->hide();
    bench.window->show();
    QVERIFY(QTest::qWaitForWindowActive(bench.window.get()));
    QCoreApplication::processEvents();
    QVERIFY(!app().guard().isUp());
    QCOMPARE(bench.polling()->interval(), 77);
}

void TestMainWindow::theFirstActivationsHourglassIsSeenByWhoeverWaitsInIt()
{
    MainBench bench;
    Qt::CursorShape during = Qt::ArrowCursor;
    connect(&app().guard(), &EventGuard::changed, this, [&](bool up) {
        if (!up)
            return;
        QCoreApplication::processEvents();
        during = bench.window->cursor().shape();
    });
    bench.show();
    QCOMPARE(during, Qt::WaitCursor);
    QCOMPARE(bench.window->cursor().shape(), Qt::ArrowCursor);
}

void TestMainWindow::firstActivationStartsPollingWhenItIsChecked()
{
    MainBench bench;
    bench.entry("mnuEnablePolling")->setChecked(true);
    bench.show();
    QVERIFY(bench.polling()->isEnabled());
}

KELDOX_TEST(TestMainWindow)
#include "TestMainWindow.moc"
