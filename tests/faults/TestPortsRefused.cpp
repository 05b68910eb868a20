// Ports that cannot be opened. The operator is told which of the causes it is, and what to do.
#include "FaultBench.h"

#include "platform/PortRefusal.h"
#include "sim/PseudoTerminal.h"

#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

using namespace faults;

namespace {

constexpr qint64 nobodysProcess = 4194303; // above what the kernel gives to processes
constexpr uid_t nobody = 65534;

// As a user who may not touch other users' files, for as long as it lives.
class AsNobody
{
public:
    AsNobody() : m_user(getuid())
    {
        if (m_user == 0)
            QVERIFY(setresuid(nobody, nobody, 0) == 0);
    }
    ~AsNobody()
    {
        if (m_user == 0) [[maybe_unused]]
            const int back = setresuid(0, 0, 0);
    }
    AsNobody(const AsNobody &) = delete;
    AsNobody &operator=(const AsNobody &) = delete;

private:
    uid_t m_user;
};

void writeLock(const QString &name, qint64 process, const char *program)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::number(process) + '\n' + program + '\n' +
               QSysInfo::machineHostName().toUtf8() + '\n');
}

void allow(const std::string &device, QFile::Permissions everybody)
{
    QVERIFY(QFile::setPermissions(QString::fromStdString(device),
                                  QFile::ReadOwner | QFile::WriteOwner | everybody));
}

// The folder of the links is the first user's own.
void listOnly(const QString &device)
{
    TestHooks::listPorts([device] {
        return QList<PortDirectory::Device>{{device, QStringLiteral("pts"), {}, {}}};
    });
}

// Another program, which holds the port by its lock file.
class Holder
{
public:
    explicit Holder(const QString &device)
    {
        m_process.start(QStringLiteral("sleep"), {QStringLiteral("60")});
        QVERIFY(m_process.waitForStarted());
        writeLock(lockFileOf(device), m_process.processId(), "sleep");
    }
    ~Holder()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    qint64 process() const { return m_process.processId(); }

private:
    QProcess m_process;
};

} // namespace

class TestPortsRefused : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void busy();
    void denied();
    void missing();
    void staleLock();
    void staleLockOfAnotherUser();
    void allToldApart();

private:
    QString device(int number) { return QString::fromStdString(m_bench->line(number).device()); }
    // What the search says of the ports beside its one box.
    QString searchInVain();

    std::unique_ptr<FaultBench> m_bench;
    QStringList m_locks;
};

void TestPortsRefused::init()
{
    m_bench = std::make_unique<FaultBench>();
    m_bench->plug(5);
    if (lockFileOf(device(5)).isEmpty())
        QSKIP("this system has no folder for lock files");
    m_locks = {lockFileOf(device(5))};
}

void TestPortsRefused::cleanup()
{
    for (const QString &lock : std::as_const(m_locks))
        QFile::remove(lock);
    m_bench.reset();
}

QString TestPortsRefused::searchInVain()
{
    m_bench->boxes().clear();
    m_bench->boxes().expectStart(QStringLiteral("Check data and power connections"));
    search();
    return m_bench->boxes().shown().isEmpty() ? QString()
                                              : m_bench->boxes().shown().first().informative;
}

void TestPortsRefused::busy()
{
    {
        const Holder other(device(5));
        QCOMPARE(searchInVain(), QStringLiteral("COM5: %1 is in use by sleep (process %2). Close "
                                                "that program, then try again.")
                                     .arg(device(5))
                                     .arg(other.process()));
        seesNotConnected();
        QVERIFY(m_bench->line(5).commands().empty()); // the other program's unit is left alone
        QVERIFY(QFile::exists(m_locks.first()));      // and so is its lock
    }
    search(); // it has ended
    seesConnected(5);
}

void TestPortsRefused::denied()
{
    allow(m_bench->line(5).device(), {});
    if (getuid() != 0)
        QVERIFY(QFile::setPermissions(device(5), {}));
    QString told;
    {
        const AsNobody user;
        listOnly(device(5));
        told = searchInVain();
    }
    QVERIFY2(told.contains(QStringLiteral("No permission to open %1. It belongs to %2; ask the "
                                          "administrator of this computer")
                               .arg(device(5), QFileInfo(device(5)).owner())),
             qPrintable(told));
    seesNotConnected();
    QVERIFY(m_bench->line(5).commands().empty());
    allow(m_bench->line(5).device(), {});
    TestHooks::listPorts([] { return QList<PortDirectory::Device>(); });
    search();
    seesConnected(5);
}

void TestPortsRefused::missing()
{
    m_bench->fixture.unplug(5);
    m_bench->fixture.plug(6, QStringLiteral("/dev/no-such-device"));
    TestHooks::listPorts([] {
        return QList<PortDirectory::Device>{
            {QStringLiteral("/dev/ttyUSB99"), QStringLiteral("ttyUSB99"), {}, {}}};
    });
    QCOMPARE(searchInVain(), QStringLiteral("COM1: /dev/ttyUSB99 is not there. Check that it is "
                                            "plugged in.\n\nCOM6: /dev/no-such-device is not "
                                            "there. Check that it is plugged in."));
    seesNotConnected();
    m_bench->plug(5);
    search();
    seesConnected(5);
}

void TestPortsRefused::staleLock()
{
    writeLock(lockFileOf(device(5)), nobodysProcess, "deadprog");
    search(); // and no box follows
    seesConnected(5);
    QCOMPARE(frequency(), QStringLiteral("100"));
}

void TestPortsRefused::staleLockOfAnotherUser()
{
    if (getuid() != 0)
        QSKIP("needs a second user");
    allow(m_bench->line(5).device(),
          QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther);
    QString lock;
    {
        const AsNobody user; // who may write in other folders
        lock = lockFileOf(device(5));
    }
    m_locks.append(lock);
    writeLock(lock, nobodysProcess, "deadprog");
    QString told;
    {
        const AsNobody user;
        listOnly(device(5));
        told = searchInVain();
    }
    const QString remedy =
        QStringLiteral("Ask root or the administrator to remove it (sudo rm %1)");
    QVERIFY2(
        told.contains(QStringLiteral("%1 is locked by the file %2, which a program of root has "
                                     "left behind")
                          .arg(device(5), lock)),
        qPrintable(told));
    QVERIFY2(told.contains(remedy.arg(lock)), qPrintable(told));
    seesNotConnected();
    QVERIFY(QFile::exists(lock));
}

// One search over all of them finds the unit that is there; without it, each is named with its
// own cause.
void TestPortsRefused::allToldApart()
{
    const Holder other(device(5));
    m_bench->plug(6);
    m_locks.append(lockFileOf(device(6)));
    writeLock(lockFileOf(device(6)), nobodysProcess, "deadprog");
    TestHooks::listPorts([] {
        return QList<PortDirectory::Device>{
            {QStringLiteral("/dev/ttyUSB99"), QStringLiteral("ttyUSB99"), {}, {}}};
    });
    search(); // the dead program's lock does not lock out
    seesConnected(6);
    m_bench->fixture.unplug(6);
    const QStringList told = searchInVain().split(QStringLiteral("\n\n"));
    QCOMPARE(told.size(), 2);
    QVERIFY(told.at(0).startsWith(QStringLiteral("COM1: /dev/ttyUSB99 is not there.")));
    QVERIFY(told.at(1).startsWith(QStringLiteral("COM5: %1 is in use by sleep").arg(device(5))));
    seesNotConnected();
}

KELDOX_TEST(TestPortsRefused)
#include "TestPortsRefused.moc"
