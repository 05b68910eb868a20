// A port with a process behind it: its bytes, its end, its silence, and what it may not do to the
// program.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/CommControl.h"
#include "platform/PortDirectory.h"
#include "platform/PortProcess.h"
#include "platform/RunTimeError.h"
#include "sim/SimulatedLine.h"

class TestProcessLine : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyByteValuePassesBothWays();
    void theUnitAnswersAndKeepsItsStateWhileThePortIsClosed();
    void aProcessKilledInMidReplyIsAnUnplug();
    void theNextOpeningPlugsItInAgain();
    void aProcessThatCannotBeStartedIsAnUnplug();
    void silenceIsWaitedForByNobody();
    void endlessOutputIsBounded();
    void whatArrivesAtAClosedPortIsLost();
    void aPeerThatTakesNothingIsBusy();
    void whatHasNotLeftCanBeTakenBack();
    void onlyOneHasItOpen();
    void aPortOfTheSystemMayFollowOnTheSameControl();
    void theProcessEndsWithItsPort();

private:
    void serve(const QString &program, const QStringList &arguments);
    void serveShell(const char *command)
    {
        serve(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QString::fromLatin1(command)});
    }
    void serveUnit(const QStringList &words = {});
    // What the control gives until the text ends so.
    QString answer(const QString &end = QStringLiteral("\r"));
    static int errorOf(const std::function<void()> &step);

    static constexpr int number = 3;
    std::unique_ptr<Fixture> m_fixture;
    std::unique_ptr<CommControl> m_control;
};

void TestProcessLine::init()
{
    m_fixture = std::make_unique<Fixture>();
    m_control = std::make_unique<CommControl>();
    m_control->setCommPort(number);
}

void TestProcessLine::cleanup()
{
    m_control.reset();
    PortDirectory::instance().serve({});
    m_fixture.reset();
}

// Behind COM3, which the control opens.
void TestProcessLine::serve(const QString &program, const QStringList &arguments)
{
    const QString name = QStringLiteral("line 1");
    PortDirectory::instance().serve(
        {{name, name, {}, {}, std::make_shared<PortProcess>(program, arguments)}});
    m_control->setPortOpen(true);
}

void TestProcessLine::serveUnit(const QStringList &words)
{
    serve(qEnvironmentVariable("KELDOX_BIN_DIR") + QStringLiteral("/keldo-x-sim"),
          QStringList{QStringLiteral("--stdio"), QStringLiteral("1")} + words);
}

QString TestProcessLine::answer(const QString &end)
{
    QString text;
    [[maybe_unused]] const bool came = QTest::qWaitFor(
        [&] {
            text += m_control->input();
            return text.endsWith(end);
        },
        5000);
    return text;
}

int TestProcessLine::errorOf(const std::function<void()> &step)
{
    try {
        step();
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}

void TestProcessLine::everyByteValuePassesBothWays()
{
    serve(QStringLiteral("cat"), {});
    QString all;
    for (int byte = 0; byte < 256; ++byte)
        if (byte != '\n') // the control swallows it after a carriage return
            all.append(QChar(byte));
    m_control->output(all);
    QCOMPARE(answer(all.right(1)), all);
}

void TestProcessLine::theUnitAnswersAndKeepsItsStateWhileThePortIsClosed()
{
    serveUnit();
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(answer(), QStringLiteral("KELDO-X\r"));
    m_control->output(QStringLiteral("*STEP 1234\r"));
    QCOMPARE(answer(), QStringLiteral("LOCKED\r"));
    m_control->setPortOpen(false);
    QVERIFY(!m_control->portOpen());
    m_control->setPortOpen(true);
    m_control->output(QStringLiteral("*STEP?\r"));
    QCOMPARE(answer(), QStringLiteral("1234\r"));
}

void TestProcessLine::aProcessKilledInMidReplyIsAnUnplug()
{
    serveShell("head -c 5 >/dev/null; printf 'KELD'; kill -9 $$");
    QSignalSpy hungUp(m_control.get(), &CommControl::HungUp);
    QSignalSpy received(m_control.get(), &CommControl::BytesReceived);
    m_control->output(QStringLiteral("*ID?\r"));
    QVERIFY(hungUp.wait(5000));
    QVERIFY(!m_control->portOpen());
    QCOMPARE(received.count(), 1);
    QCOMPARE(received.at(0).at(0).toByteArray(), QByteArray("KELD"));
    QCOMPARE(m_control->inBufferCount(), 0);
    QCOMPARE(errorOf([this] { m_control->output(QStringLiteral("*ID?\r")); }), 8018);
    QTest::qWait(50);
    QCOMPARE(hungUp.count(), 1);
}

void TestProcessLine::theNextOpeningPlugsItInAgain()
{
    serveUnit({QStringLiteral("--fault"), QStringLiteral("unplug:*STEP")});
    QSignalSpy hungUp(m_control.get(), &CommControl::HungUp);
    m_control->output(QStringLiteral("*STEP?\r"));
    QVERIFY(hungUp.wait(5000));
    m_control->setPortOpen(true);
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(answer(), QStringLiteral("KELDO-X\r"));
}

void TestProcessLine::aProcessThatCannotBeStartedIsAnUnplug()
{
    // Some systems say so at once, others a little later.
    const int error = errorOf([this] { serve(QStringLiteral("/no/such/program"), {}); });
    QVERIFY(error == 0 || error == 8002);
    QTRY_VERIFY(!m_control->portOpen());
}

void TestProcessLine::silenceIsWaitedForByNobody()
{
    serveUnit({QStringLiteral("--fault"), QStringLiteral("silence")});
    QSignalSpy received(m_control.get(), &CommControl::BytesReceived);
    QElapsedTimer time;
    time.start();
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(m_control->input(), QString());
    QVERIFY(time.elapsed() < 100);
    QVERIFY(!received.wait(200));
    QVERIFY(m_control->portOpen());
}

void TestProcessLine::endlessOutputIsBounded()
{
    serve(QStringLiteral("cat"), {QStringLiteral("/dev/zero")});
    qint64 came = 0;
    connect(m_control.get(), &CommControl::BytesReceived, this,
            [&](const QByteArray &bytes) { came += bytes.size(); });
    int turns = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ++turns; });
    timer.start(10);
    QTRY_VERIFY_WITH_TIMEOUT(came > 20'000'000, 20'000);
    QVERIFY2(turns > 2, qPrintable(QString::number(turns))); // others have their turn
    QCOMPARE(m_control->inBufferCount(), m_control->InBufferSize());
    m_control->setPortOpen(false);
}

void TestProcessLine::whatArrivesAtAClosedPortIsLost()
{
    serveShell("echo ready; read go; echo late; exec sleep 60");
    QCOMPARE(answer(QStringLiteral("\n")), QStringLiteral("ready\n"));
    m_control->output(QStringLiteral("go\n"));
    QSignalSpy received(m_control.get(), &CommControl::BytesReceived);
    const auto process = PortDirectory::instance().find(number)->process;
    QTRY_COMPARE(process->bytesToWrite(), 0);
    m_control->setPortOpen(false);
    QTest::qWait(300);
    QVERIFY(!process->holdsInput()); // it is not kept for anybody
    m_control->setPortOpen(true);
    QTest::qWait(50);
    QCOMPARE(m_control->input(), QString());
    QCOMPARE(received.count(), 0);
}

void TestProcessLine::aPeerThatTakesNothingIsBusy()
{
    serve(QStringLiteral("sleep"), {QStringLiteral("60")});
    const QString command(1000, QLatin1Char('x'));
    int error = 0;
    int commands = 0;
    while (error == 0 && commands < 1000) {
        error = errorOf([&] { m_control->output(command); });
        ++commands;
        QTest::qWait(1);
    }
    QCOMPARE(error, 8019);
    QVERIFY(m_control->portOpen());
}

void TestProcessLine::whatHasNotLeftCanBeTakenBack()
{
    serve(QStringLiteral("cat"), {});
    m_control->output(QStringLiteral("first "));
    m_control->output(QStringLiteral("second "));
    m_control->discardOutput();
    m_control->output(QStringLiteral("third\r"));
    QCOMPARE(answer(), QStringLiteral("first third\r"));
}

void TestProcessLine::onlyOneHasItOpen()
{
    serveUnit();
    CommControl other;
    other.setCommPort(number);
    QCOMPARE(errorOf([&] { other.setPortOpen(true); }), 8005);
    QVERIFY(!other.portOpen());
    m_control->setPortOpen(false);
    other.setPortOpen(true);
    // And what arrives is for the one that has it.
    QSignalSpy received(&other, &CommControl::BytesReceived);
    QSignalSpy notForThis(m_control.get(), &CommControl::BytesReceived);
    other.output(QStringLiteral("*ID?\r"));
    QVERIFY(received.wait(5000));
    QCOMPARE(notForThis.count(), 0);
}

void TestProcessLine::aPortOfTheSystemMayFollowOnTheSameControl()
{
    serveUnit();
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(answer(), QStringLiteral("KELDO-X\r"));
    m_control->setPortOpen(false);
    sim::SimulatedLine line;
    line.setResponder([](const std::string &) { return "another unit"; });
    m_fixture->plug(7, line.device());
    PortDirectory::instance().refresh();
    m_control->setCommPort(7);
    m_control->setPortOpen(true);
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(answer(), QStringLiteral("another unit\r"));
    m_control->setPortOpen(false);
    m_control->setCommPort(number);
    m_control->setPortOpen(true);
    m_control->output(QStringLiteral("*ID?\r"));
    QCOMPARE(answer(), QStringLiteral("KELDO-X\r"));
}

void TestProcessLine::theProcessEndsWithItsPort()
{
    serveShell("echo $$; exec cat");
    const QString process = answer(QStringLiteral("\n")).trimmed();
    const QString place = QStringLiteral("/proc/") + process;
    QVERIFY2(process.toInt() > 0 && QFileInfo::exists(place), qPrintable(process));
    m_control->setPortOpen(false);
    QVERIFY(QFileInfo::exists(place));
    m_control.reset();
    QVERIFY(QFileInfo::exists(place));
    PortDirectory::instance().serve({});
    QVERIFY(!QFileInfo::exists(place));
}

KELDOX_TEST(TestProcessLine)
#include "TestProcessLine.moc"
