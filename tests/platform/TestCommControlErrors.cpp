// The serial control's error numbers: what it refuses, and how a port that cannot be opened says
// why.
#include "TerminalEnd.h"
#include "support/TestMain.h"

#include "platform/EventQueue.h"

#include <QTemporaryDir>

class TestCommControlErrors : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aNumberBelowOneIsInvalid();
    void theNumberCannotChangeWhileThePortIsOpen();
    void settingsAreFourWords_data();
    void settingsAreFourWords();
    void badSettingsLeaveTheOldOnes();
    void aNumberWithoutADeviceIsInvalid();
    void aNumberWhoseDeviceIsGoneIsInvalid();
    void anOpenPortCannotBeOpenedAgain();
    void aPortHeldBySomebodyElseIsAlreadyOpen();
    void aPortThatWasReleasedCanBeOpened();
    void whatIsNoSerialLineCannotBeOpened();
    void outputNeedsAnOpenPort();
    void aPeerThatTakesNothingMakesTheDeviceBusy();
    void whenTheProgramEndsNoPortOpens();
    void closingAClosedPortIsHarmless();

private:
    void open(CommControl &port);

    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<TerminalEnd> end;
    std::unique_ptr<CommControl> control;
};

void TestCommControlErrors::init()
{
    fixture = std::make_unique<Fixture>();
    end = std::make_unique<TerminalEnd>();
    control = std::make_unique<CommControl>();
    fixture->plug(3, end->device());
}

void TestCommControlErrors::cleanup()
{
    control.reset();
    end.reset();
    fixture.reset();
}

void TestCommControlErrors::open(CommControl &port)
{
    port.setCommPort(3);
    port.setPortOpen(true);
}

void TestCommControlErrors::aNumberBelowOneIsInvalid()
{
    QCOMPARE(raisedNumber([&] { control->setCommPort(0); }), 8002);
    QCOMPARE(raisedNumber([&] { control->setCommPort(-1); }), 8002);
    QCOMPARE(control->commPort(), 1);
}

void TestCommControlErrors::theNumberCannotChangeWhileThePortIsOpen()
{
    open(*control);
    QCOMPARE(raisedNumber([&] { control->setCommPort(4); }), 8000);
    QCOMPARE(control->commPort(), 3);
    control->setPortOpen(false);
    QCOMPARE(raisedNumber([&] { control->setCommPort(4); }), 0);
}

void TestCommControlErrors::settingsAreFourWords_data()
{
    QTest::addColumn<QString>("settings");
    QTest::addColumn<bool>("good");
    const auto row = [](const char *settings, bool good) {
        QTest::addRow("<%s>", settings) << QString::fromLatin1(settings) << good;
    };
    row("19200,N,8,1", true);
    row("9600,e,7,2", true);
    row("300,O,5,1.5", true);
    row("115200,M,8,1", true);
    row("", false);
    row("19200", false);
    row("19200,N,8", false);
    row("19200,N,8,1,1", false);
    row("0,N,8,1", false);
    row("-9600,N,8,1", false);
    row("fast,N,8,1", false);
    row("19200,X,8,1", false);
    row("19200,N,4,1", false);
    row("19200,N,9,1", false);
    row("19200,N,8,3", false);
}

void TestCommControlErrors::settingsAreFourWords()
{
    QFETCH(const QString, settings);
    QFETCH(const bool, good);
    QCOMPARE(raisedNumber([&] { control->setSettings(settings); }), good ? 0 : 380);
}

void TestCommControlErrors::badSettingsLeaveTheOldOnes()
{
    control->setSettings(QStringLiteral("19200,N,8,1"));
    raisedNumber([&] { control->setSettings(QStringLiteral("nonsense")); });
    QCOMPARE(control->settings(), QStringLiteral("19200,N,8,1"));
}

void TestCommControlErrors::aNumberWithoutADeviceIsInvalid()
{
    control->setCommPort(4);
    QCOMPARE(raisedNumber([&] { control->setPortOpen(true); }), 8002);
    QVERIFY(!control->portOpen());
}

void TestCommControlErrors::aNumberWhoseDeviceIsGoneIsInvalid()
{
    const QTemporaryDir folder; // the link is there, its target is not
    fixture->plug(3, folder.filePath(QStringLiteral("ttyUSB9")));
    QCOMPARE(raisedNumber([&] { open(*control); }), 8002);
    QVERIFY(!control->portOpen());
}

void TestCommControlErrors::anOpenPortCannotBeOpenedAgain()
{
    open(*control);
    QCOMPARE(raisedNumber([&] { control->setPortOpen(true); }), 8005);
    QVERIFY(control->portOpen());
}

void TestCommControlErrors::aPortHeldBySomebodyElseIsAlreadyOpen()
{
    open(*control);
    CommControl second;
    QCOMPARE(raisedNumber([&] { open(second); }), 8005);
    QVERIFY(!second.portOpen());
    QVERIFY(control->portOpen());
}

void TestCommControlErrors::aPortThatWasReleasedCanBeOpened()
{
    open(*control);
    control->setPortOpen(false);
    CommControl second;
    QCOMPARE(raisedNumber([&] { open(second); }), 0);
    second.setPortOpen(false);
    QCOMPARE(raisedNumber([&] { open(*control); }), 0);
}

void TestCommControlErrors::whatIsNoSerialLineCannotBeOpened()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("ttyNone")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    fixture->plug(3, file.fileName());
    const int number = raisedNumber([&] { open(*control); });
    QVERIFY2(number == 8012 || number == 8015, qPrintable(QString::number(number)));
    QVERIFY(!control->portOpen());
}

void TestCommControlErrors::outputNeedsAnOpenPort()
{
    const QSignalSpy sent(control.get(), &CommControl::BytesSent);
    QCOMPARE(raisedNumber([&] { control->output(QStringLiteral("*ID?\r")); }), 8018);
    QCOMPARE(sent.size(), 0);
}

void TestCommControlErrors::aPeerThatTakesNothingMakesTheDeviceBusy()
{
    open(*control);
    const QSignalSpy hangUps(control.get(), &CommControl::HungUp);
    const QString piece(256, QLatin1Char('x'));
    int number = 0;
    int pieces = 0;
    while (number == 0 && pieces < 1000) {
        number = raisedNumber([&] { control->output(piece); });
        pieces += number == 0 ? 1 : 0;
        EventQueue::yield();
    }
    QCOMPARE(number, 8019);
    QVERIFY(control->portOpen());
    QCOMPARE(hangUps.size(), 0);

    // A peer that wakes up gets everything, and the port works again.
    QCOMPARE(end->received(pieces * 256).size(), pieces * 256);
    QCOMPARE(raisedNumber([&] { control->output(QStringLiteral("*ID?\r")); }), 0);
    QVERIFY(end->received(pieces * 256 + 5).endsWith("x*ID?\r"));
}

void TestCommControlErrors::whenTheProgramEndsNoPortOpens()
{
    EventQueue::endProgram();
    QCOMPARE(raisedNumber([&] { open(*control); }), 8002);
    QVERIFY(!control->portOpen());
}

void TestCommControlErrors::closingAClosedPortIsHarmless()
{
    QCOMPARE(raisedNumber([&] { control->setPortOpen(false); }), 0);
    QVERIFY(!control->portOpen());
}

KELDOX_TEST(TestCommControlErrors)
#include "TestCommControlErrors.moc"
