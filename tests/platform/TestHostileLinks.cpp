// Whatever a link in the ports folder leads to: what is no serial line is refused at once, nothing
// is written to it, and nothing waits for it.
#include "platform/CommControl.h"
#include "platform/PortDirectory.h"
#include "platform/RunTimeError.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

class TestHostileLinks : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNoSerialLineIsRefused_data();
    void whatIsNoSerialLineIsRefused();
    void aFileBehindALinkKeepsItsContents();
    void aLinkIsNamedByWhatItLeadsTo();
};

namespace {

bool makeSocket(const QString &name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, qPrintable(name), sizeof address.sun_path);
    const int made = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool bound =
        ::bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(made);
    return bound;
}

} // namespace

void TestHostileLinks::whatIsNoSerialLineIsRefused_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a pipe that nobody reads") << QStringLiteral("pipe");
    QTest::newRow("a folder") << QStringLiteral("folder");
    QTest::newRow("a socket") << QStringLiteral("socket");
    QTest::newRow("a circle of links") << QStringLiteral("circle");
    QTest::newRow("nothing") << QStringLiteral("nothing");
    QTest::newRow("the null device") << QStringLiteral("/dev/null");
    QTest::newRow("endless zeros") << QStringLiteral("/dev/zero");
    QTest::newRow("the process's memory") << QStringLiteral("/proc/self/mem");
}

void TestHostileLinks::whatIsNoSerialLineIsRefused()
{
    QFETCH(const QString, target);
    const QTemporaryDir folder;
    const auto inFolder = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
    QCOMPARE(::mkfifo(qPrintable(inFolder("pipe")), 0600), 0);
    QVERIFY(QDir().mkdir(inFolder("folder")));
    QVERIFY(makeSocket(inFolder("socket")));
    QVERIFY(QFile::link(inFolder("circle"), inFolder("circle")));

    Fixture fixture;
    fixture.plug(3, target.startsWith(QLatin1Char('/')) ? target : folder.filePath(target));
    CommControl control;
    control.setCommPort(3);
    QElapsedTimer clock;
    clock.start();
    int number = 0;
    try {
        control.setPortOpen(true);
    } catch (const RunTimeError &error) {
        number = error.number();
    }
    QVERIFY2(number != 0, "opened");
    QVERIFY(!control.portOpen());
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
}

void TestHostileLinks::aFileBehindALinkKeepsItsContents()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("letter")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.write("Dear Sir") > 0 && file.flush());
    Fixture fixture;
    fixture.plug(3, file.fileName());
    CommControl control;
    control.setCommPort(3);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, control.setPortOpen(true));
    file.seek(0);
    QCOMPARE(file.readAll(), QByteArray("Dear Sir"));
}

// A link cannot pass itself off as another device.
void TestHostileLinks::aLinkIsNamedByWhatItLeadsTo()
{
    Fixture fixture;
    fixture.plug(3, QStringLiteral("/dev/ttyOther"));
    const PortDirectory::Device port = PortDirectory::instance().find(3).value();
    QCOMPARE(port.location, QStringLiteral("/dev/ttyOther"));
    QCOMPARE(port.name, QStringLiteral("ttyOther"));
    QVERIFY(port.description.contains(QLatin1String("linked as com3")));
}

KELDOX_TEST(TestHostileLinks)
#include "TestHostileLinks.moc"
