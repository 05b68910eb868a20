// A port that the person may not open says so, names the device and tells the remedy.
#include "TerminalEnd.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

// Root may open everything. As root this test runs itself again as somebody who may not.
class TestPortPermission : public QObject
{
    Q_OBJECT

private slots:
    void aPortWithoutAccessRightNamesTheDeviceAndTheGroup();
};

static constexpr char deviceVariable[] = "KELDOX_FORBIDDEN_DEVICE";

static void verifyRefusal(const QString &device)
{
    Fixture fixture;
    fixture.plug(3, device);
    CommControl control;
    control.setCommPort(3);
    int number = 0;
    QString description;
    try {
        control.setPortOpen(true);
    } catch (const RunTimeError &error) {
        number = error.number();
        description = error.description();
    }
    QCOMPARE(number, 8012);
    QVERIFY2(description.contains(device), qPrintable(description));
    QVERIFY2(description.contains(QFileInfo(device).group()), qPrintable(description));
    QVERIFY(!control.portOpen());
}

static void verifyAsSomebodyElse(const QString &device)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(deviceVariable), device);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QStringLiteral("setpriv"),
                {QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                 QStringLiteral("--clear-groups"), QCoreApplication::applicationFilePath(),
                 QStringLiteral("-class"), QStringLiteral("TestPortPermission")});
    if (!child.waitForStarted())
        QSKIP("setpriv is not installed");
    QVERIFY(child.waitForFinished(30000));
    const QByteArray output = child.readAll();
    if (output.startsWith("setpriv:"))
        QSKIP("this root may not become somebody else, or that one may not run the test");
    QVERIFY2(child.exitCode() == 0, output.constData());
}

void TestPortPermission::aPortWithoutAccessRightNamesTheDeviceAndTheGroup()
{
    const QString given = qEnvironmentVariable(deviceVariable);
    if (!given.isEmpty()) {
        QVERIFY(geteuid() != 0);
        verifyRefusal(given);
        return;
    }
    const TerminalEnd end;
    QVERIFY(QFile::setPermissions(end.device(), QFile::Permissions()));
    if (geteuid() == 0)
        verifyAsSomebodyElse(end.device());
    else
        verifyRefusal(end.device());
}

KELDOX_TEST(TestPortPermission)
#include "TestPortPermission.moc"
