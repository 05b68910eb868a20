// The windows' side: a search over all numbers without a device, the event display under load, and
// start-up to a usable main window.
#include "bench/Bench.h"

#include "app/PoliteEnd.h"
#include "app/modMain_KeldoX2.h"
#include "app/modSearchPorts.h"
#include "core/DebugSwitches.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "platform/FontsAhead.h"
#include "platform/PortDirectory.h"
#include "platform/TestHooks.h"
#include "sim/SimulatedLine.h"
#include "ui/main/ProgramIcon.h"
#include "widgets/MessageBox.h"
#include "windowMakers.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QProcess>
#include <QPushButton>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <unistd.h>
#include <vector>

namespace {

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// The time of the process's start, handed to the child by its parent on the same clock.
double millisecondsSince(const char *startNs)
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return (static_cast<double>(std::chrono::nanoseconds(now).count()) - std::atof(startNs)) / 1e6;
}

long peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const auto at = text.indexOf("VmHWM:");
    return at < 0 ? 0 : text.mid(at + 6).trimmed().split(' ').first().toLong();
}

int printAndLeave(const char *startNs)
{
    std::printf("%.1f %ld\n", millisecondsSince(startNs), peakKiB());
    std::fflush(stdout);
    return 0;
}

struct ChildResult
{
    double ms = 0;
    double mebibytes = 0;
};

ChildResult runChild(const QString &mode)
{
    QProcess child;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    child.start(QApplication::applicationFilePath(),
                {mode, QString::number(std::chrono::nanoseconds(now).count())});
    child.waitForFinished(20000);
    const QList<QByteArray> words = child.readAllStandardOutput().simplified().split(' ');
    if (words.size() != 2)
        return {};
    return {words.at(0).toDouble(), words.at(1).toDouble() / 1024.0};
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Starts
{
    std::vector<double> ms;
    std::vector<double> mebibytes;

    void add(const ChildResult &child)
    {
        ms.push_back(child.ms);
        mebibytes.push_back(child.mebibytes);
    }
};

} // namespace

void benchEmptySearch(Report &report)
{
    resetAppState();
    TestHooks::listPorts([] { return QList<PortDirectory::Device>(); });
    TestHooks::answerBoxes([](const MessageBox::Request &) { return MessageBox::Answer::Ok; });
    Main(windowMakers());
    EventQueue::yield();

    QElapsedTimer timer;
    timer.start();
    SearchPorts(1);
    const double search = milliseconds(timer);

    timer.restart();
    for (int number = 1; number <= PortDirectory::lastNumber; ++number)
        if (const int file = ::open("/dev/no-such-port", O_RDWR); file >= 0)
            ::close(file);
    const double bare = milliseconds(timer);
    report.figure("search over 255 numbers, no device", search, "ms", "255 failing open(2)", bare,
                  "ms");
    report.bound("  search", search, "ms", 50);
    failOnBoxes(report);
}

void benchEventDisplay(Report &report)
{
    constexpr int eventsPerSecond = 10000;
    // Shown, the monitor lists the ports, and reports a machine that has none.
    const sim::SimulatedLine line;
    TestHooks::listPorts([device = QString::fromStdString(line.device())] {
        return QList<PortDirectory::Device>{{device, QStringLiteral("simulated"), {}}};
    });
    const auto monitor = app().ioMonitor();
    monitor->show();
    EventQueue::yield();
    // As they would come: 10,000 in a second, the display painting meanwhile and once after it.
    constexpr int total = 2 * eventsPerSecond;
    constexpr double afterwardsMs = 200;
    const double processorBefore = processorMs();
    double longest = 0;
    int sent = 0;
    QElapsedTimer timer;
    timer.start();
    while (milliseconds(timer) < 1000.0 * total / eventsPerSecond + afterwardsMs) {
        const int due =
            std::min(total, static_cast<int>(milliseconds(timer) * eventsPerSecond / 1000));
        for (; sent < due; ++sent)
            logEvent(QStringLiteral("bench"), QStringLiteral(" sending *STEP 250 to com port 1"));
        QElapsedTimer turn;
        turn.start();
        EventQueue::yield();
        longest = std::max(longest, milliseconds(turn));
        QThread::msleep(1);
    }
    const double used = processorMs() - processorBefore;
    report.figure("processor time, 20,000 events in 2 s, shown", used, "ms",
                  "the time they may take", 2000, "ms");
    report.bound("  share of a core", 100 * used / 2000, "%", 5);
    report.bound("  longest turn of the event loop", longest, "ms", 16);
}

namespace {

// The longest turn of the event loop while something is done, and for half a second after it, so
// that the display has painted it.
double longestTurn(const std::function<bool()> &goesOn)
{
    constexpr double afterwardsMs = 500;
    constexpr double mostMs = 60'000;
    double longest = 0;
    QElapsedTimer whole;
    QElapsedTimer rest;
    whole.start();
    rest.start();
    while (milliseconds(rest) < afterwardsMs) {
        if (milliseconds(whole) > mostMs)
            return mostMs; // nobody takes it
        QElapsedTimer turn;
        turn.start();
        if (goesOn())
            rest.restart();
        EventQueue::yield();
        longest = std::max(longest, milliseconds(turn));
        QThread::usleep(100);
    }
    return longest;
}

// Ten megabytes without a carriage return at the monitor's own port, as fast as it takes them.
double floodPort(sim::SimulatedLine &line)
{
    constexpr std::uint64_t total = 10'000'000;
    constexpr std::uint64_t piece = 65'536; // in flight: what the line keeps for a slow reader
    const std::uint64_t before = line.bitsOnWire() / 10;
    std::uint64_t sent = 0;
    return longestTurn([&] {
        const std::uint64_t arrived = line.bitsOnWire() / 10 - before;
        if (sent < total && sent - arrived < piece) {
            line.send(std::string(piece, 'x'));
            sent += piece;
        }
        return arrived < total;
    });
}

double floodDisplay(EventDisplay &display, qsizetype length, int times)
{
    const QString text(length, QLatin1Char('x'));
    int shown = 0;
    return longestTurn([&] {
        if (shown == times)
            return false;
        display.Display(QStringLiteral("bench"), text);
        ++shown;
        return true;
    });
}

} // namespace

void benchHostileMonitor(Report &report)
{
    constexpr double stallMs = 16;
    sim::SimulatedLine line;
    const sim::SimulatedLine last; // the highest port is not listed
    TestHooks::listPorts([devices = std::vector{line.device(), last.device()}] {
        QList<PortDirectory::Device> all;
        for (const std::string &device : devices)
            all.append({QString::fromStdString(device), QStringLiteral("simulated"), {}});
        return all;
    });
    const auto monitor = std::dynamic_pointer_cast<QMainWindow>(app().ioMonitor());
    const auto display = app().ioMonitor();
    display->show();
    EventQueue::yield();
    monitor->findChild<QComboBox *>(QStringLiteral("comboComPort"))
        ->setEditText(QStringLiteral("1"));
    monitor->findChild<QPushButton *>(QStringLiteral("cmdConnect"))->click();
    const long memoryBefore = peakKiB();
    for (const bool isShown : {true, false}) {
        monitor->setVisible(isShown);
        EventQueue::yield();
        const std::string where = isShown ? ", shown" : ", hidden";
        report.bound("longest turn, 10 MB at its port" + where, floodPort(line), "ms", stallMs);
        debugSwitches().bytesReceived = true;
        report.bound("  and every byte logged" + where, floodPort(line), "ms", stallMs);
        debugSwitches().bytesReceived = false;
        report.bound("  texts of 10 MB to display" + where, floodDisplay(*display, 10'000'000, 20),
                     "ms", stallMs);
        report.bound("  texts of 32 KiB to display" + where, floodDisplay(*display, 32'768, 200),
                     "ms", stallMs);
    }
    report.bound("  memory that all of it took",
                 static_cast<double>(peakKiB() - memoryBefore) / 1024.0, "MiB", 64);
    display->closeComPort();
}

void benchStart(Report &report)
{
    // In turns, and the middle of many: a computer that others use too is not as fast at one moment
    // as at the next.
    constexpr int pairs = 31;
    Starts program;
    Starts reference;
    for (int i = 0; i < pairs; ++i) {
        program.add(runChild(QStringLiteral("--start")));
        reference.add(runChild(QStringLiteral("--empty-window")));
    }
    report.figure("start to usable main window, median", median(program.ms), "ms",
                  "an empty QMainWindow", median(reference.ms), "ms");
    report.bound("  ratio", median(program.ms) / median(reference.ms), "", 1.3);
    report.figure("memory then, median", median(program.mebibytes), "MiB", "an empty QMainWindow",
                  median(reference.mebibytes), "MiB");
    report.bound("  peak", median(program.mebibytes), "MiB", 32);
}

int runStartChild(int argc, char **argv)
{
    FontsAhead fonts;
    QApplication application(argc, argv);
    fonts.wait();
    QApplication::setApplicationName(applicationTitle());
    QApplication::setWindowIcon(programIcon());
    const PoliteEnd politeEnd;
    installMessageBoxes();
    const char *start = argv[2];
    QObject::connect(&app().guard(), &EventGuard::changed, &application, [start](bool up) {
        if (up) {
            printAndLeave(start);
            EventQueue::endProgram();
        }
    });
    Main(windowMakers());
    if (!EventQueue::ending())
        QApplication::exec();
    std::_Exit(0);
}

int runEmptyWindowChild(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setCentralWidget(new QLabel(QStringLiteral("empty")));
    window.show();
    QTimer::singleShot(0, &window, [&] {
        printAndLeave(argv[2]);
        QApplication::quit();
    });
    return QApplication::exec();
}
