// Start-up: the order in which things come to be, and what a failing step costs.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "FakeStartUp.h"
#include "app/modMain_KeldoX2.h"
#include "core/clsLogger.h"
#include "platform/EventQueue.h"

class TestStartUp : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everythingComesToBeInItsOrder();
    void theStyleWordsStartAtZero();
    void channelSlotZeroStaysEmpty();
    void theProgramYieldsAfterTheSplashAndAfterEachChannel();
    void aFailingStepIsReportedAndStartUpGoesOn_data();
    void aFailingStepIsReportedAndStartUpGoesOn();
    void aFailingChannelCostsOnlyItself();
    void theSplashIsUnloadedWhetherItIsReadyOrNot();
    void theProgramMayEndWhileItStarts();
    void theLoggerIsMadeOverTheMonitor();
    void theLoggerWithoutAMonitorHasNoDisplay();
    void aMonitorThatAsksForItselfWhileItIsMadeGetsNothing();

private:
    WindowMakers makers();
    void note(const QString &call) { calls->append(call); }
    // Fails when the maker of that name is the failing one.
    void checkpoint(const QString &name);

    std::unique_ptr<Fixture> fixture;
    CallRecord calls;
    QString failing;
    std::shared_ptr<FakeIOMonitor> monitor;
    std::function<void()> whileMakingChannel;
    QObject queue;
};

void TestStartUp::init()
{
    fixture = std::make_unique<Fixture>();
    calls = std::make_shared<QStringList>();
    failing.clear();
    whileMakingChannel = {};
    monitor.reset();
}

void TestStartUp::cleanup()
{
    monitor.reset();
    fixture.reset();
}

void TestStartUp::checkpoint(const QString &name)
{
    note(name + QStringLiteral(".make"));
    if (name == failing)
        throw RunTimeError(ErrorNumber::InvalidProcedureCall);
}

WindowMakers TestStartUp::makers()
{
    WindowMakers all;
    all.splash = [this] {
        checkpoint(QStringLiteral("splash"));
        return std::make_unique<FakeSplash>(calls);
    };
    all.mainWindow = [this] {
        checkpoint(QStringLiteral("main"));
        return std::make_shared<FakeMainWindow>(calls);
    };
    all.ioMonitor = [this] {
        checkpoint(QStringLiteral("monitor"));
        monitor = std::make_shared<FakeIOMonitor>(calls);
        return monitor;
    };
    all.channel = [this] {
        checkpoint(QStringLiteral("channel"));
        if (whileMakingChannel)
            whileMakingChannel();
        return std::make_shared<FakeChannel>(calls);
    };
    return all;
}

static QStringList channelCalls(int number)
{
    return {QStringLiteral("channel.make"), QStringLiteral("channel.Index %1").arg(number),
            QStringLiteral("splash.advance")};
}

void TestStartUp::everythingComesToBeInItsOrder()
{
    Main(makers());
    QStringList order = {QStringLiteral("splash.make"),  QStringLiteral("splash.show"),
                         QStringLiteral("main.make"),    QStringLiteral("monitor.make"),
                         QStringLiteral("monitor.load"), QStringLiteral("main.load")};
    for (int number = 1; number <= 8; ++number)
        order += channelCalls(number);
    order += {QStringLiteral("main.show"), QStringLiteral("splash.ReadyToClose"),
              QStringLiteral("splash.unload")};
    QCOMPARE(*calls, order);
    QVERIFY(eventLog());
    QVERIFY(app().mainWindow);
}

void TestStartUp::theStyleWordsStartAtZero()
{
    app().messageBoxStyle = {1, 2, 3};
    Main(makers());
    QCOMPARE(app().messageBoxStyle, (std::array<std::int16_t, 3>{0, 0, 0}));
}

void TestStartUp::channelSlotZeroStaysEmpty()
{
    Main(makers());
    QVERIFY(!app().channels[0]);
    for (int number = 1; number <= 8; ++number)
        QCOMPARE(std::dynamic_pointer_cast<FakeChannel>(app().channels[number])->number, number);
}

void TestStartUp::theProgramYieldsAfterTheSplashAndAfterEachChannel()
{
    const auto postEvent = [this] {
        QMetaObject::invokeMethod(
            &queue, [this] { note(QStringLiteral("event")); }, Qt::QueuedConnection);
    };
    postEvent();
    whileMakingChannel = postEvent;
    Main(makers());
    QCOMPARE(calls->indexOf(QStringLiteral("event")),
             calls->indexOf(QStringLiteral("splash.show")) + 1);
    QCOMPARE(calls->count(QStringLiteral("event")), 9);
    for (qsizetype at = calls->indexOf(QStringLiteral("channel.make")); at >= 0;
         at = calls->indexOf(QStringLiteral("channel.make"), at + 1)) {
        QCOMPARE(calls->at(at + 2), QStringLiteral("event"));
        QCOMPARE(calls->at(at + 3), QStringLiteral("splash.advance"));
    }
}

void TestStartUp::aFailingStepIsReportedAndStartUpGoesOn_data()
{
    QTest::addColumn<QString>("failingStep");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("boxesAfterIt"); // later steps that miss what was not made
    const QString main = QStringLiteral("modMain_KeldoX2.Main");
    QTest::addRow("splash") << QStringLiteral("splash") << main << 0;
    QTest::addRow("main window") << QStringLiteral("main") << main << 2;
    QTest::addRow("IO monitor") << QStringLiteral("monitor")
                                << QStringLiteral("modMain_KeldoX.InitTheLogger") << 0;
}

void TestStartUp::aFailingStepIsReportedAndStartUpGoesOn()
{
    QFETCH(const QString, failingStep);
    QFETCH(const QString, source);
    QFETCH(const int, boxesAfterIt);
    failing = failingStep;
    fixture->boxes.expect(QStringLiteral("Error 5 ('Invalid procedure call or argument')\r\n"
                                         "Invalid procedure call or argument\r\n"
                                         " from KELDO-X Control Program\r\n in %1\r\n")
                              .arg(source),
                          48);
    for (int box = 0; box < boxesAfterIt; ++box)
        fixture->boxes.expectStart(QStringLiteral("Error 91 ('Object variable not set')"));
    Main(makers());
    for (int number = 1; number <= 8; ++number)
        QVERIFY(app().channels[number]);
    QVERIFY(eventLog());
    QCOMPARE(calls->contains(QStringLiteral("main.show")), failing != QLatin1String("main"));
    QCOMPARE(calls->contains(QStringLiteral("splash.unload")), failing != QLatin1String("splash"));
}

void TestStartUp::aFailingChannelCostsOnlyItself()
{
    int made = 0;
    whileMakingChannel = [&] {
        if (++made == 3)
            throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    };
    fixture->boxes.expectStart(QStringLiteral("Error 5 "));
    Main(makers());
    QVERIFY(!app().channels[3]);
    QVERIFY(app().channels[4]);
    QVERIFY(app().channels[8]);
    QCOMPARE(calls->count(QStringLiteral("splash.advance")), 8);
    QVERIFY(calls->contains(QStringLiteral("main.show")));
}

void TestStartUp::theSplashIsUnloadedWhetherItIsReadyOrNot()
{
    Main(makers()); // the fake is never ready
    QCOMPARE(calls->last(), QStringLiteral("splash.unload"));
}

void TestStartUp::theProgramMayEndWhileItStarts()
{
    int made = 0;
    whileMakingChannel = [&] {
        if (++made == 3)
            EventQueue::endProgram();
    };
    Main(makers());
    QCOMPARE(made, 3);
    QVERIFY(!calls->contains(QStringLiteral("main.show")));
}

void TestStartUp::theLoggerIsMadeOverTheMonitor()
{
    const auto file = std::make_shared<LogFileRecord>();
    app().makers = makers();
    app().makers.logFile = [file] { return std::make_unique<FakeLogFile>(file); };
    InitTheLogger();
    QCOMPARE(*calls, (QStringList{QStringLiteral("monitor.make"), QStringLiteral("monitor.load")}));
    const auto logger = std::dynamic_pointer_cast<clsLogger>(eventLog());
    QVERIFY(logger);
    QCOMPARE(logger->displayWindow(), std::static_pointer_cast<EventDisplay>(monitor));
    QVERIFY(!logger->isFileActive()); // start-up opens no file

    const QTemporaryDir folder;
    logger->setLogPath(folder.path());
    logger->FileOpen();
    QVERIFY(file->pathname.endsWith(QStringLiteral("\\Keldo-X.log")));
}

void TestStartUp::theLoggerWithoutAMonitorHasNoDisplay()
{
    InitTheLogger();
    QVERIFY(eventLog());
    QVERIFY(!eventLog()->hasDisplay());
}

void TestStartUp::aMonitorThatAsksForItselfWhileItIsMadeGetsNothing()
{
    // The monitor has a seeker, whose port object looks at the monitor's switches.
    int made = 0;
    std::shared_ptr<IOMonitorView> seenInside = std::make_shared<FakeIOMonitor>();
    app().makers.ioMonitor = [&]() -> std::shared_ptr<IOMonitorView> {
        if (++made > 3)
            return nullptr;
        seenInside = app().ioMonitor();
        return std::make_shared<FakeIOMonitor>(calls);
    };
    const auto first = app().ioMonitor();
    QCOMPARE(made, 1);
    QVERIFY(!seenInside);
    QVERIFY(first);
    QCOMPARE(app().ioMonitor(), first);
}

KELDOX_TEST(TestStartUp)
#include "TestStartUp.moc"
