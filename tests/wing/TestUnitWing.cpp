// The unit's wing alone: a program without windows, with nothing but QtCore and QtSerialPort, finds
// a unit, tunes it and is told of a bad reply.
#include "core/EventLog.h"
#include "core/Message.h"
#include "device/clsKeldoX.h"
#include "discovery/PortSearch.h"
#include "platform/PortDirectory.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class TestUnitWing : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void aSearchFindsTheUnit();
    void theUnitIsTunedAndReadBack();
    void aBadReplyIsToldAtTheMessageDoor();
    void withoutADoorAMessageIsALineOfText();

private:
    void connectUnit();

    static constexpr std::int16_t port = 7;

    QTemporaryDir home;
    std::unique_ptr<sim::SimulatedLine> line;
    std::shared_ptr<clsKeldoX> unit;
    QStringList messages;
};

void TestUnitWing::initTestCase()
{
    QVERIFY(!qApp->inherits("QGuiApplication"));
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
}

void TestUnitWing::init()
{
    line = std::make_unique<sim::SimulatedLine>();
    line->addUnit(std::make_shared<sim::SimulatedUnit>());
    QDir().mkpath(PortDirectory::linkFolder());
    const QString link = PortDirectory::linkFolder() + QStringLiteral("/com%1").arg(port);
    QFile::remove(link);
    QVERIFY(QFile::link(QString::fromStdString(line->device()), link));
    TestHooks::listPorts([] { return QList<PortDirectory::Device>(); });
    installMessageDoor([this](const QString &text, int, const QString &) {
        messages.append(text);
        return MessageBox::Answer::Ok;
    });
    messages.clear();
}

void TestUnitWing::cleanup()
{
    unit.reset();
    line.reset();
    installMessageDoor({});
}

void TestUnitWing::connectUnit()
{
    unit = std::make_shared<clsKeldoX>();
    unit->setConnection(clsKeldoX::SerialPort);
    unit->commPort()->setPortNumber(port);
    QVERIFY(unit->Initialize());
}

void TestUnitWing::aSearchFindsTheUnit()
{
    PortSearch search;
    QSignalSpy found(&search, &PortSearch::UnitFound);
    QSignalSpy looking(&search, &PortSearch::LookingAt);
    search.searchAllPorts();
    QCOMPARE(search.outcome(), PortSearch::Outcome::Found);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.at(0).at(0).toInt(), int(port));
    QCOMPARE(looking.size(), int(PortDirectory::lastNumber));
}

void TestUnitWing::theUnitIsTunedAndReadBack()
{
    connectUnit();
    QSignalSpy changes(unit.get(), &clsKeldoX::FreqChange);
    const double wanted = unit->StartFreq() + unit->StepsToMHz(12);
    unit->setCurrentFreq(wanted);
    QCOMPARE(unit->CurrentStep(), 12);
    QCOMPARE(unit->currentFreq(), wanted);
    QVERIFY(!changes.isEmpty());
    QVERIFY(messages.isEmpty());
}

void TestUnitWing::aBadReplyIsToldAtTheMessageDoor()
{
    connectUnit();
    line->setFault(sim::Fault::Garbage);
    unit->setCurrentStep(3);
    QCOMPARE(messages, QStringList{QStringLiteral("The device did not respond correctly to a "
                                                  "'current step' command.")});
    QCOMPARE(unit->lastStatus(), std::int32_t(clsKeldoX::BadReply));
}

void TestUnitWing::withoutADoorAMessageIsALineOfText()
{
    installMessageDoor({});
    QCOMPARE(showMessage(QStringLiteral("nobody is there to press a button"), 0),
             MessageBox::Answer::Ok);
}

QTEST_GUILESS_MAIN(TestUnitWing)
#include "TestUnitWing.moc"
