// The program's exchange with a unit against the raw line: paced steps against the line's own time,
// one unpaced exchange against a bare write, poll and read, and a silent unit's processor time.
#include "bench/Bench.h"

#include "device/clsKeldoX.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSerialPort>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int port = 1;

// A unit on a line of its own, which is COM 1, and the program's object for it.
struct Connection
{
    Connection()
    {
        line.addUnit(std::make_shared<sim::SimulatedUnit>());
        TestHooks::listPorts([this] {
            return QList<PortDirectory::Device>{
                {QString::fromStdString(line.device()), QStringLiteral("simulated"), {}}};
        });
        unit->setConnection(clsKeldoX::SerialPort);
        unit->commPort()->setPortNumber(port);
        unit->setDisplayErrors(false);
    }

    sim::SimulatedLine line;
    std::shared_ptr<clsKeldoX> unit = std::make_shared<clsKeldoX>();
};

double microseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

// One exchange without Qt and without this program.
void bareExchange(int file, const char *command, std::size_t length)
{
    if (::write(file, command, length) != static_cast<ssize_t>(length))
        return;
    std::array<char, 64> bytes{};
    for (;;) {
        pollfd waiting{file, POLLIN, 0};
        ::poll(&waiting, 1, 1000);
        const ssize_t count = ::read(file, bytes.data(), bytes.size());
        if (count <= 0 ||
            std::find(bytes.begin(), bytes.begin() + count, '\r') != bytes.begin() + count)
            return;
    }
}

std::vector<double> timeBareExchanges(const std::string &device, int times)
{
    const int file = ::open(device.c_str(), O_RDWR | O_NOCTTY);
    termios settings{};
    ::tcgetattr(file, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(file, TCSANOW, &settings);
    std::vector<double> each;
    constexpr char command[] = "*STEP 250\r";
    for (int i = 0; i < times; ++i) {
        QElapsedTimer timer;
        timer.start();
        bareExchange(file, command, sizeof command - 1);
        each.push_back(microseconds(timer));
    }
    ::close(file);
    return each;
}

// One exchange as any Qt program would make it: the library's port, its signal, an event loop.
std::vector<double> timeLibraryExchanges(const std::string &device, int times)
{
    QSerialPort bare(QString::fromStdString(device));
    bare.setBaudRate(QSerialPort::Baud19200);
    if (!bare.open(QIODevice::ReadWrite))
        return {0};
    QEventLoop loop;
    QByteArray reply;
    QObject::connect(&bare, &QSerialPort::readyRead, &loop, [&] {
        reply += bare.readAll();
        if (reply.contains('\r'))
            loop.quit();
    });
    std::vector<double> each;
    for (int i = 0; i < times; ++i) {
        QElapsedTimer timer;
        timer.start();
        reply.clear();
        bare.write("*STEP 250\r");
        loop.exec();
        each.push_back(microseconds(timer));
    }
    return each;
}

} // namespace

void benchPacedSteps(Report &report)
{
    Connection connection;
    if (!connection.unit->Initialize()) {
        report.fail("1,000 paced steps: the unit did not answer");
        return;
    }
    connection.line.setPaced(true);
    const std::uint64_t bitsBefore = connection.line.bitsOnWire();
    QElapsedTimer timer;
    timer.start();
    for (int step = 1; step <= 1000; ++step)
        connection.unit->setCurrentStep(step);
    const double total = microseconds(timer) / 1000.0;
    const double wire =
        static_cast<double>(connection.line.bitsOnWire() - bitsBefore) / 19200.0 * 1000.0;
    report.figure("1,000 step commands, paced", total, "ms", "the line's own time", wire, "ms");
    report.bound("  ratio", total / wire, "", 1.02);
}

void benchExchange(Report &report)
{
    constexpr int times = 3000;
    Connection connection;
    if (!connection.unit->Initialize()) {
        report.fail("one exchange: the unit did not answer");
        return;
    }
    std::vector<double> each;
    for (int i = 0; i < times; ++i) {
        QElapsedTimer timer;
        timer.start();
        connection.unit->setCurrentStep(250);
        each.push_back(microseconds(timer));
    }
    connection.unit->commPort()->ClosePort();
    const double ours = median(each);
    const double library = median(timeLibraryExchanges(connection.line.device(), times));
    const double bare = median(timeBareExchanges(connection.line.device(), times));
    report.figure("one exchange, unpaced, median", ours, "us", "QSerialPort in an event loop",
                  library, "us");
    report.bound("  added to the library's", ours - library, "us", 10);
    report.figure("  without Qt", ours, "us", "bare write, poll, read", bare, "us");
}

void benchSilentUnit(Report &report)
{
    Connection connection;
    connection.unit->InitThePort();
    connection.unit->commPort()->settimeOutMs(2000);
    connection.line.setFault(sim::Fault::Silence);

    double before = processorMs();
    connection.unit->deviceWrite(QStringLiteral("*ID?"));
    const double waiting = processorMs() - before;

    before = processorMs();
    QElapsedTimer timer;
    timer.start();
    ::usleep(2'000'000);
    const double asleep = processorMs() - before;
    report.figure("processor time, silent unit awaited 2 s", waiting, "ms", "asleep for 2 s",
                  asleep, "ms");
    report.bound("  spent", waiting, "ms", 20);
}
