// Why a port could not be opened, in the operator's words.
#include "TerminalEnd.h"
#include "support/TestMain.h"

#include "platform/PortRefusal.h"

#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

class TestPortRefusal : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aRunningHolderIsNamed();
    void aDeadProgramsLockDoesNotLockOut();
    void aDeadLockThatCannotBeRemovedNamesFileAndOwner();
    void aPortThatIsHeldWithoutALockFileIsInUse();
    void aHolderWithoutALockFileIsNamedWhereTheSystemTells();
    void aMissingDeviceSaysSo();
    void theRemedyIsNeverTheGroupRoot();

private:
    QString refusal() const
    {
        return portRefusal(end->device(), QSerialPort::PermissionError, QStringLiteral("system"))
            .description();
    }
    void writeLock(qint64 process, const char *program) const
    {
        QFile file(lockFileOf(end->device()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::number(process) + '\n' + program + '\n' +
                   QSysInfo::machineHostName().toUtf8() + '\n');
    }

    std::unique_ptr<TerminalEnd> end;
    static constexpr qint64 nobody = 4194303; // above what the kernel gives to processes
};

void TestPortRefusal::init()
{
    end = std::make_unique<TerminalEnd>();
    if (lockFileOf(end->device()).isEmpty())
        QSKIP("this system has no folder for lock files");
}

void TestPortRefusal::cleanup()
{
    QFile::remove(lockFileOf(end->device()));
}

void TestPortRefusal::aRunningHolderIsNamed()
{
    writeLock(getppid(), "otherprog");
    QCOMPARE(refusal(),
             QStringLiteral("%1 is in use by otherprog (process %2). Close that program, "
                            "then try again.")
                 .arg(end->device())
                 .arg(getppid()));
    QCOMPARE(portRefusal(end->device(), QSerialPort::PermissionError, {}).number(), 8005);
}

// The lock of a program that no longer runs is taken over.
void TestPortRefusal::aDeadProgramsLockDoesNotLockOut()
{
    writeLock(nobody, "deadprog");
    Fixture fixture;
    fixture.plug(3, end->device());
    CommControl control;
    control.setCommPort(3);
    control.setPortOpen(true);
    QVERIFY(control.portOpen());
}

void TestPortRefusal::aDeadLockThatCannotBeRemovedNamesFileAndOwner()
{
    writeLock(nobody, "deadprog");
    const QString file = lockFileOf(end->device());
    const QString text = refusal();
    QVERIFY2(text.contains(file), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("of %1 ").arg(QFileInfo(file).owner())),
             qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("sudo rm ") + file), qPrintable(text));
    QCOMPARE(portRefusal(end->device(), QSerialPort::PermissionError, {}).number(), 8012);
}

void TestPortRefusal::aPortThatIsHeldWithoutALockFileIsInUse()
{
    QCOMPARE(refusal(),
             QStringLiteral("%1 is in use by another program. Close that program, then try again.")
                 .arg(end->device()));
}

void TestPortRefusal::aHolderWithoutALockFileIsNamedWhereTheSystemTells()
{
    if (!QFileInfo::exists(QStringLiteral("/proc/self/fd")))
        QSKIP("this system does not tell who has a file open");
    QProcess other;
    other.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("exec 3<>%1; echo; exec sleep 60").arg(end->device())});
    QVERIFY(other.waitForReadyRead(10'000));
    QTRY_COMPARE(refusal(),
                 QStringLiteral("%1 is in use by sleep (process %2). Close that program, then try "
                                "again.")
                     .arg(end->device())
                     .arg(other.processId()));
    other.kill();
    other.waitForFinished();
}

void TestPortRefusal::aMissingDeviceSaysSo()
{
    const RunTimeError error =
        portRefusal(QStringLiteral("/dev/ttyUSB9"), QSerialPort::DeviceNotFoundError, {});
    QCOMPARE(error.number(), 8002);
    QCOMPARE(error.description(),
             QStringLiteral("/dev/ttyUSB9 is not there. Check that it is plugged in."));
}

void TestPortRefusal::theRemedyIsNeverTheGroupRoot()
{
    const QString device = QStringLiteral("/dev/ttyS0");
    const QString joined = noAccessText(device, QStringLiteral("root"), QStringLiteral("dialout"));
    QVERIFY(joined.contains(QStringLiteral("sudo usermod -aG dialout $USER")));
    for (const QString &group : {QStringLiteral("root"), QString()}) {
        const QString text = noAccessText(device, QStringLiteral("root"), group);
        QVERIFY2(!text.contains(QStringLiteral("usermod")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("It belongs to root")), qPrintable(text));
    }
}

KELDOX_TEST(TestPortRefusal)
#include "TestPortRefusal.moc"
