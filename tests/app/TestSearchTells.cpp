// What the end of a search tells the operator beside the stated text: ports that could not be
// looked at, and lines that may carry addressed units.
#include "support/DeniedLine.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include "platform/CommControl.h"

class TestSearchTells : public QObject
{
    Q_OBJECT

private slots:
    void aPortInUseIsNamedWithItsRemedy();
    void aDeviceThatIsGoneIsNamed();
    void aPortWithoutAccessRightIsNamed();
    void eachCauseIsAParagraph();
    void aSilentLineMayHaveAddressedUnits();
    void anEchoingLineMayHaveAddressedUnits();
    void whatAnswersOtherwiseHasNone();
    void addressedUnitsThatWereCalledAreNotSuggested();
    void withUnitsFoundNothingIsSaid();
    void nothingIsSaidOfNumbersWithoutADevice();
    void afterEscapeNoBoxFollows();

private:
    static QString toldAfter(SearchBench &bench, int mode, const char *port = "")
    {
        bench.fixture.boxes.expect(checkConnections, 48);
        SearchPorts(static_cast<std::int16_t>(mode), QString::fromLatin1(port));
        return bench.fixture.boxes.shown().isEmpty()
                   ? QString()
                   : bench.fixture.boxes.shown().last().informative;
    }
};

void TestSearchTells::aPortInUseIsNamedWithItsRemedy()
{
    SearchBench bench;
    bench.line(4);
    CommControl other;
    other.setCommPort(4);
    other.setPortOpen(true);
    const QString told = toldAfter(bench, 1);
    QVERIFY2(told.startsWith(QStringLiteral("COM4: ")), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral(" is open in this program already")), qPrintable(told));
}

void TestSearchTells::aDeviceThatIsGoneIsNamed()
{
    SearchBench bench;
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    QCOMPARE(toldAfter(bench, 1),
             QStringLiteral("COM6: /nowhere/ttyUSB7 is not there. Check that it is plugged in."));
}

void TestSearchTells::aPortWithoutAccessRightIsNamed()
{
    SearchBench bench;
    const QString device = QString::fromStdString(bench.line(4).device());
    DeniedLine::install(device);
    const QString told = toldAfter(bench, 1);
    QCOMPARE(told, QStringLiteral("COM4: ") + DeniedLine::told(device));
    QVERIFY(told.contains(QStringLiteral("group \"dialout\"")));
    QCOMPARE(bench.sentTo(4), QStringList());
}

void TestSearchTells::eachCauseIsAParagraph()
{
    SearchBench bench;
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    bench.fixture.plug(9, QStringLiteral("/nowhere/ttyUSB8"));
    QCOMPARE(toldAfter(bench, 1),
             QStringLiteral("COM6: /nowhere/ttyUSB7 is not there. Check that it is plugged in.\n\n"
                            "COM9: /nowhere/ttyUSB8 is not there. Check that it is plugged in."));
}

void TestSearchTells::aSilentLineMayHaveAddressedUnits()
{
    SearchBench bench;
    bench.silence(2);
    bench.waitOnly(30);
    const QString told = toldAfter(bench, 1);
    QVERIFY2(told.startsWith(QStringLiteral("Addressed units (Tovin-R)")), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("\"Unit is an addressable Tovin-R\"")), qPrintable(told));
}

void TestSearchTells::anEchoingLineMayHaveAddressedUnits()
{
    SearchBench bench;
    bench.unit(2);
    bench.line(2).setFault(sim::Fault::Echo);
    QVERIFY(toldAfter(bench, 1).contains(QStringLiteral("Tovin-R")));
}

void TestSearchTells::whatAnswersOtherwiseHasNone()
{
    SearchBench bench;
    bench.answerAlways(2, "modem");
    QCOMPARE(toldAfter(bench, 1), QString());
}

void TestSearchTells::addressedUnitsThatWereCalledAreNotSuggested()
{
    SearchBench bench;
    bench.silence(2);
    bench.waitOnly(10);
    QCOMPARE(toldAfter(bench, 2, "2"), QString());
}

void TestSearchTells::withUnitsFoundNothingIsSaid()
{
    SearchBench bench;
    bench.unit(3);
    bench.fixture.plug(6, QStringLiteral("/nowhere/ttyUSB7"));
    SearchPorts(1);
    QVERIFY(bench.fixture.boxes.shown().isEmpty());
}

void TestSearchTells::nothingIsSaidOfNumbersWithoutADevice()
{
    SearchBench bench;
    QCOMPARE(toldAfter(bench, 1), QString());
}

void TestSearchTells::afterEscapeNoBoxFollows()
{
    SearchBench bench;
    bench.silence(2);
    QTimer::singleShot(50, this, [] { app().search->cancel(); });
    SearchPorts(1);
    QVERIFY(bench.fixture.boxes.shown().isEmpty());
    QCOMPARE(bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    QCOMPARE(bench.mainWindow->wasCancelled, std::optional(true));
    QVERIFY(bench.logOf(QStringLiteral("SearchPorts"))
                .contains(QStringLiteral("Could not find any KELDO-X's")));
}

KELDOX_TEST(TestSearchTells)
#include "TestSearchTells.moc"
