// What the windows say after something has failed is true, in both of them.
#include "Road.h"

#include "device/clsKeldoX.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"
#include "widgets/IndicatorLight.h"

using namespace road;

class TestRoadOfTruth : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aUnitThatDoesNotAnswerIsNoGreenLight();
    void nothingOfTheUnitBeforeIsLeftForTheNext();
    void oneEscapeEndsTheConnectionThatASearchMakes();
    void bothWindowsSayThatNothingWasFound();
    void readingASilentUnitAgainWaitsOnce();
    void aBadReplyMarksAndReadingAgainUnmarks();
    void reconnectingMayBeSwitchedOnAfterTheUnplug();

private:
    sim::SimulatedLine &plug(int number, const sim::UnitSettings &settings = {});
    static void search() { trigger(mainName, "mnuConnectComport"); }
    static void choose(const char *button)
    {
        auto *option = control<QAbstractButton>(channelsName, button);
        QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
    }
    static QString channelsPanel() { return control<QLabel>(channelsName, "StatusBar_1")->text(); }
    static QColor light()
    {
        return control<IndicatorLight>(mainName, "ShapeStatusLight")->fillColor();
    }
    static int count(const sim::SimulatedLine &line, const std::string &command)
    {
        const auto all = line.commands();
        return static_cast<int>(std::count(all.begin(), all.end(), command));
    }

    std::map<int, std::unique_ptr<sim::SimulatedLine>> m_lines;
    std::unique_ptr<Fixture> m_fixture;
};

void TestRoadOfTruth::init()
{
    m_fixture = std::make_unique<Fixture>();
    startProgram();
}

void TestRoadOfTruth::cleanup()
{
    m_fixture.reset();
    m_lines.clear();
}

sim::SimulatedLine &TestRoadOfTruth::plug(int number, const sim::UnitSettings &settings)
{
    auto &line = m_lines[number];
    line = std::make_unique<sim::SimulatedLine>();
    line->addUnit(std::make_shared<sim::SimulatedUnit>(settings));
    m_fixture->plug(number, line->device());
    return *line;
}

void TestRoadOfTruth::aUnitThatDoesNotAnswerIsNoGreenLight()
{
    plug(2);
    plug(5);
    search();
    QCOMPARE(light(), IndicatorLight::green);
    m_lines.at(5)->setFault(sim::Fault::Silence);
    m_fixture->boxes.expect(QStringLiteral("The device did not respond correctly to an ID query."));
    TestHooks::shortenTimers(300);
    QColor meanwhile;
    QTimer::singleShot(100, this, [&] { meanwhile = light(); });
    choose("optPortNum_2");
    QCOMPARE(meanwhile, QColor(IndicatorLight::buttonFace));
    QCOMPARE(light(), QColor(IndicatorLight::red));
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(channelsPanel(), QStringLiteral("NOT CONNECTED"));
    QVERIFY(!window(mainName)
                 ->findChild<QAction *>(QStringLiteral("mnuOptionsReadAgain"))
                 ->isEnabled());
}

void TestRoadOfTruth::nothingOfTheUnitBeforeIsLeftForTheNext()
{
    plug(5);
    search();
    m_lines.at(5)->setFault(sim::Fault::Garbage, "*ID?", 1);
    m_fixture->boxes.expect(QStringLiteral("The device did not respond correctly to an ID query."));
    choose("optPortNum_1");
    QVERIFY(!control<QLineEdit>(mainName, "txtCurrentFreq")->isEnabled());
    const int before = count(*m_lines.at(5), "*START FREQ?");
    choose("optPortNum_1");
    QVERIFY(count(*m_lines.at(5), "*START FREQ?") > before); // asked anew: it may be another unit
    QVERIFY(control<QLineEdit>(mainName, "txtCurrentFreq")->isEnabled());
}

void TestRoadOfTruth::oneEscapeEndsTheConnectionThatASearchMakes()
{
    plug(5).setFault(sim::Fault::Silence, "*REV");
    QElapsedTimer since;
    QTimer::singleShot(500, this, [&] {
        since.start();
        QTest::keyClick(window(channelsName), Qt::Key_Escape);
    });
    search(); // and no box follows
    QVERIFY(since.isValid());
    QVERIFY2(since.elapsed() < 5000, qPrintable(QString::number(since.elapsed())));
    QCOMPARE(count(*m_lines.at(5), "*ID?"), 2); // the search's and the one connection's
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(channelsPanel(), QStringLiteral("NOT CONNECTED"));
    QVERIFY(control<QAbstractButton>(channelsName, "optPortNum_1")->isEnabled()); // to try again
}

void TestRoadOfTruth::bothWindowsSayThatNothingWasFound()
{
    m_fixture->boxes.expectStart(QStringLiteral("Check data and power connections"));
    search();
    QCOMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    QCOMPARE(channelsPanel(), QStringLiteral("NOT CONNECTED"));
}

void TestRoadOfTruth::readingASilentUnitAgainWaitsOnce()
{
    plug(5);
    search();
    m_lines.at(5)->setFault(sim::Fault::Silence);
    m_lines.at(5)->clearCommands();
    m_fixture->boxes.expectStart(QStringLiteral("The device did not respond correctly"));
    TestHooks::shortenTimers(200);
    QTest::keyClick(window(mainName), Qt::Key_F5);
    QCOMPARE(m_lines.at(5)->commands(), std::vector<std::string>{"*STEP?"});
    m_fixture->boxes.expectStart(QStringLiteral("The device did not respond correctly"));
    control<QCheckBox>(channelsName, "chkChanAGC_1")->click();
    QCOMPARE(m_lines.at(5)->commands().size(), std::size_t(2));
}

void TestRoadOfTruth::aBadReplyMarksAndReadingAgainUnmarks()
{
    plug(5);
    search();
    auto *box = control<QLineEdit>(channelsName, "txtChanAtten_1");
    const QString before = box->accessibleDescription() + box->toolTip();
    m_lines.at(5)->setFault(sim::Fault::Garbage, "*ATTN ", 1);
    m_fixture->boxes.expectStart(QStringLiteral("The device did not respond correctly"));
    typeInto(box, QStringLiteral("5"));
    QVERIFY(box->accessibleDescription() + box->toolTip() != before);
    QTest::keyClick(window(mainName), Qt::Key_F5);
    QCOMPARE(box->accessibleDescription() + box->toolTip(), before);
}

void TestRoadOfTruth::reconnectingMayBeSwitchedOnAfterTheUnplug()
{
    plug(5);
    search();
    m_fixture->boxes.expectStart(QStringLiteral("Error 8020"));
    m_lines.at(5)->unplug();
    QTRY_COMPARE(mainText("StatusBar_1"), QStringLiteral("NOT CONNECTED"));
    TestHooks::shortenTimers(200);
    trigger(mainName, "mnuReconnect");
    plug(5);
    QTRY_COMPARE_WITH_TIMEOUT(mainText("StatusBar_1"), QStringLiteral("CONNECTED AGAIN ON COM5"),
                              8000);
    trigger(mainName, "mnuReconnect"); // kept otherwise
}

KELDOX_TEST(TestRoadOfTruth)
#include "TestRoadOfTruth.moc"
