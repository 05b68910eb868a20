// Runs all measurements, on the display that there is or else offscreen, and ends non-zero when one
// exceeds its bound.
#include "bench/Bench.h"

#include "app/AppState.h"
#include "platform/Application.h"
#include "platform/TestHooks.h"
#include "widgets/MessageBox.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>
#include <ctime>

void Report::figure(const std::string &what, double value, const std::string &unit,
                    const std::string &reference, double referenceValue,
                    const std::string &referenceUnit)
{
    std::printf("%-44s %10.2f %-4s %-26s %10.2f %s\n", what.c_str(), value, unit.c_str(),
                reference.c_str(), referenceValue, referenceUnit.c_str());
}

void Report::note(const std::string &what, double value, const std::string &unit)
{
    std::printf("%-44s %10.3f %s\n", what.c_str(), value, unit.c_str());
}

void Report::bound(const std::string &what, double value, const std::string &unit, double most)
{
    const bool holds = value <= most;
    m_failures += holds ? 0 : 1;
    std::printf("%-44s %10.3f %-4s at most %.2f: %s\n", what.c_str(), value, unit.c_str(), most,
                holds ? "holds" : "EXCEEDED");
}

void Report::fail(const std::string &what)
{
    ++m_failures;
    std::printf("FAILED: %s\n", what.c_str());
}

double processorMs()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void failOnBoxes(Report &report)
{
    TestHooks::answerBoxes([&report](const MessageBox::Request &box) {
        report.fail("unexpected box: " + box.text.toStdString());
        return MessageBox::Answer::Ok;
    });
}

int main(int argc, char **argv)
{
    if (argc > 2 && std::strcmp(argv[1], "--start") == 0)
        return runStartChild(argc, argv);
    if (argc > 2 && std::strcmp(argv[1], "--empty-window") == 0)
        return runEmptyWindowChild(argc, argv);

    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    if (!qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setApplicationName(applicationTitle());
    QApplication::setQuitOnLastWindowClosed(false);

    Report report;
    installMessageBoxes();
    failOnBoxes(report);
    benchPacedSteps(report);
    benchExchange(report);
    benchSilentUnit(report);
    benchEmptySearch(report);
    benchEventDisplay(report);
    benchHostileMonitor(report);
    benchStart(report);
    resetAppState();
    TestHooks::answerBoxes({});
    std::printf("%d bounds exceeded\n", report.failures());
    return report.failures() == 0 ? 0 : 1;
}
