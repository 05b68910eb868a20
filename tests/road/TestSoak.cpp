// Eight units for a long time: tuned, read again and changed between at random while the polling
// timer ticks, the display compared with the unit after each step; memory, descriptors and objects
// stay flat. KELDOX_SOAK_SECONDS asks for more real time, KELDOX_SOAK_HOURS for more of a simulated
// time: a tick of the timer each second, an operation every ten, a reading of the unit each minute.
#include "Road.h"

#include "platform/TimerControl.h"
#include "sim/SimulatedLine.h"
#include "support/Footprint.h"

#include <random>

using namespace road;

namespace {

constexpr int unitCount = 8;
constexpr int firstPort = 3;

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void realTime();
    void simulatedTime();

private:
    int choose(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    void operate();
    void changeChannel(int channel);
    void tune();
    void press(const char *slider);
    void attenuate();
    void readAgain();
    void compare();
    static Footprint settled();
    void compareFlat(const Footprint &before);
    sim::SimulatedUnit &shown() { return *m_units.at(static_cast<std::size_t>(m_channel - 1)); }

    std::mt19937 m_random;
    std::unique_ptr<Fixture> m_fixture;
    std::vector<std::shared_ptr<sim::SimulatedUnit>> m_units;
    std::vector<std::unique_ptr<sim::SimulatedLine>> m_lines;
    int m_channel = 1;
    int m_operations = 0;
};

void TestSoak::initTestCase()
{
    m_fixture = std::make_unique<Fixture>();
    for (int i = 0; i < unitCount; ++i) {
        m_units.push_back(std::make_shared<sim::SimulatedUnit>());
        m_lines.push_back(std::make_unique<sim::SimulatedLine>());
        m_lines.back()->addUnit(m_units.back());
        m_fixture->plug(firstPort + i, m_lines.back()->device());
    }
    startProgram();
    trigger(mainName, "mnuConnectComport");
    QCOMPARE(int(app().foundUnits), unitCount);
    // What is made once and kept is made before anything is counted.
    for (int channel = 1; channel <= unitCount; ++channel)
        changeChannel(channel);
    for (int i = 0; i < 50; ++i)
        operate();
}

void TestSoak::cleanupTestCase()
{
    m_fixture.reset();
}

void TestSoak::operate()
{
    ++m_operations;
    for (const auto &line : m_lines)
        line->clearCommands(); // else the simulator's memory is what grows
    switch (choose(8)) {
    case 0:
        return changeChannel(1 + choose(unitCount));
    case 1:
        return press("HScroll1");
    case 2:
        return press("HScroll_Pelltrim");
    case 3:
        return attenuate();
    case 4:
        return readAgain();
    default:
        return tune();
    }
}

void TestSoak::changeChannel(int channel)
{
    m_channel = channel;
    auto *option = control<QAbstractButton>(
        channelsName, qPrintable(QStringLiteral("optPortNum_%1").arg(m_channel)));
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
    QCOMPARE(mainText("lblCurrentChannel"), QStringLiteral("Active Channel %1").arg(m_channel));
    compare();
}

void TestSoak::tune()
{
    const int step = choose(4001);
    typeInto(control<QLineEdit>(mainName, "txtCurrentFreq"),
             QString::number(100 + 0.025 * step, 'f', 3));
    QCOMPARE(shown().step(), step);
    compare();
}

void TestSoak::press(const char *slider)
{
    auto *bar = control<QScrollBar>(mainName, slider);
    bar->setFocus();
    QTest::keyClick(bar, choose(2) ? Qt::Key_Right : Qt::Key_Left);
    compare();
}

void TestSoak::attenuate()
{
    const double decibels = choose(51);
    typeInto(control<QLineEdit>(channelsName,
                                qPrintable(QStringLiteral("txtChanAtten_%1").arg(m_channel))),
             QString::number(decibels));
    QCOMPARE(shown().attenuation(), decibels);
}

void TestSoak::readAgain()
{
    trigger(mainName, "mnuOptionsReadAgain");
    compare();
}

// What is shown is what the unit has.
void TestSoak::compare()
{
    const double shownMHz = control<QLineEdit>(mainName, "txtCurrentFreq")->text().toDouble();
    QCOMPARE(qRound((shownMHz - 100) / 0.025), shown().step());
    QCOMPARE(control<QScrollBar>(mainName, "HScroll1")->value(), shown().step());
    QCOMPARE(control<QScrollBar>(mainName, "HScroll_Pelltrim")->value(), shown().fineTuning());
    QCOMPARE(mainText("StatusBar_2"), QStringLiteral("OK"));
}

// Once the toolkit's own animations have ended.
Footprint TestSoak::settled()
{
    QTest::qWait(500);
    return Footprint::now();
}

void TestSoak::compareFlat(const Footprint &before)
{
    const Footprint after = settled();
    qInfo("before %s", qPrintable(before.text()));
    qInfo("after %d operations %s", m_operations, qPrintable(after.text()));
    QCOMPARE(after.descriptors, before.descriptors);
    QCOMPARE(after.objects, before.objects);
    // Noise of the allocator, and the event display's texts up to their limit.
    constexpr qint64 mostKiB = 8192;
    QVERIFY(!memoryTells || after.residentKiB - before.residentKiB <= mostKiB);
}

void TestSoak::realTime()
{
    const int seconds = std::max(qEnvironmentVariableIntValue("KELDOX_SOAK_SECONDS"), 2);
    auto *polling = window(mainName)->findChild<TimerControl *>(QStringLiteral("tmrPollingTimer"));
    trigger(mainName, "mnuEnablePolling");
    QVERIFY(polling->isEnabled());
    const Footprint before = settled();
    QElapsedTimer clock;
    clock.start();
    int minute = 0;
    while (clock.elapsed() < 1000LL * seconds) {
        operate();
        if (QTest::currentTestFailed())
            return;
        QTest::qWait(50 + choose(200));
        if (clock.elapsed() / 60'000 != minute)
            qInfo("minute %d: %s", ++minute, qPrintable(Footprint::now().text()));
    }
    compareFlat(before);
    trigger(mainName, "mnuEnablePolling");
    QVERIFY(!polling->isEnabled());
}

void TestSoak::simulatedTime()
{
    const int hours = qEnvironmentVariableIntValue("KELDOX_SOAK_HOURS");
    const int seconds = hours > 0 ? hours * 3600 : 600;
    auto *polling = window(mainName)->findChild<TimerControl *>(QStringLiteral("tmrPollingTimer"));
    const Footprint before = settled();
    for (int second = 1; second <= seconds; ++second) {
        emit polling->Timer();
        if (second % 10 == 0)
            operate();
        if (second % 60 == 0)
            readAgain();
        if (QTest::currentTestFailed())
            return;
        // The program's own event loop would do so on its way round.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (second % (24 * 3600) == 0)
            qInfo("day %d: %s", second / (24 * 3600), qPrintable(Footprint::now().text()));
    }
    compareFlat(before);
}

KELDOX_TEST(TestSoak)
#include "TestSoak.moc"
