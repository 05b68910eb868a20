// The list of ports: which ones stand in it, and that none stays open.
#include "discovery/PortList.h"
#include "platform/EventQueue.h"
#include "support/SearchBench.h"
#include "support/TestMain.h"

#include <QSerialPort>

class TestListedPorts : public QObject
{
    Q_OBJECT

private slots:
    void whatOpensAndWhatIsRefusedIsListedAndNothingElse();
    void aPortIsClosedBeforeItIsTold();
    void theProgramsEndEndsTheList();
};

static const char nowhere[] = "/nowhere/ttyUSB7";

void TestListedPorts::whatOpensAndWhatIsRefusedIsListedAndNothingElse()
{
    SearchBench bench;
    bench.unit(3);
    bench.silence(255);
    bench.fixture.plug(6, QString::fromLatin1(nowhere));
    QStringList listed;
    listOpenablePorts([&](const ListedPort &port) {
        listed.append(
            QStringLiteral("%1 %2 %3").arg(port.number).arg(port.opens).arg(port.failure));
    });
    QCOMPARE(listed,
             (QStringList{QStringLiteral("3 1 "),
                          QStringLiteral("6 0 /nowhere/ttyUSB7 is not there. Check that it is "
                                         "plugged in."),
                          QStringLiteral("255 1 ")}));
    QCOMPARE(bench.sentTo(3), QStringList());
}

// Who hears of a port may want it at once.
void TestListedPorts::aPortIsClosedBeforeItIsTold()
{
    SearchBench bench;
    bench.line(2);
    bench.line(3);
    QList<bool> free;
    listOpenablePorts([&](const ListedPort &port) {
        QSerialPort other(QString::fromStdString(bench.line(port.number).device()));
        free.append(other.open(QIODevice::ReadWrite));
    });
    QCOMPARE(free, (QList<bool>{true, true}));
}

void TestListedPorts::theProgramsEndEndsTheList()
{
    SearchBench bench;
    bench.unit(3);
    bench.unit(4);
    QList<int> listed;
    listOpenablePorts([&](const ListedPort &port) {
        listed.append(port.number);
        EventQueue::endProgram();
    });
    QCOMPARE(listed, QList<int>{3});
}

KELDOX_TEST(TestListedPorts)
#include "TestListedPorts.moc"
