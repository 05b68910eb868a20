// Makes the application, hands start-up its windows and runs until the main window is closed.
#include "app/PoliteEnd.h"
#include "app/StartOptions.h"
#include "app/modMain_KeldoX2.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "platform/FontsAhead.h"
#include "platform/ServedPorts.h"
#include "ui/main/ProgramIcon.h"
#include "widgets/MessageBox.h"
#include "windowMakers.h"

#include <QApplication>

#include <cstdio>

static bool asksForText(const StartOptions &options)
{
    if (options.action != StartOptions::Action::Print)
        return false;
    std::fputs(qPrintable(options.text), options.exitCode == 0 ? stdout : stderr);
    return true;
}

// All words, or none where some of them are the window system's: "-style", "-platform".
static QStringList ownWords(int argc, char **argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        const QString word = QString::fromLocal8Bit(argv[i]);
        const bool isOneDash = word.startsWith(QLatin1Char('-')) &&
                               !word.startsWith(QLatin1String("--")) && word.size() > 2;
        if (isOneDash)
            return {};
        words.append(word);
    }
    return words;
}

static bool addSimulatedUnits(ServedPorts &ports)
{
    const QString failure =
        ports.add(QStringLiteral("keldo-x-sim"), QStringLiteral("simulated line"));
    if (failure.isEmpty())
        return true;
    // The first for a terminal, the second for a menu.
    std::fputs(qPrintable(QStringLiteral("keldo-x: %1\n").arg(failure)), stderr);
    MessageBox::show(failure, MessageBox::Critical);
    return false;
}

int main(int argc, char **argv)
{
    // Texts need no display.
    const StartOptions early = startOptions(ownWords(argc, argv));
    if (asksForText(early))
        return early.exitCode;

    FontsAhead fonts;
    QApplication application(argc, argv);
    fonts.wait();
    QApplication::setApplicationName(applicationTitle());
    QApplication::setApplicationVersion(applicationVersion());
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(QStringLiteral("keldo-x"));
    // Closing the main window ends the program by itself; the other windows only hide.
    QApplication::setQuitOnLastWindowClosed(false);

    const StartOptions options = startOptions(QApplication::arguments().mid(1));
    if (asksForText(options))
        return options.exitCode;

    const PoliteEnd politeEnd;
    installMessageBoxes();
    ServedPorts simulated;
    if (options.simulator && !addSimulatedUnits(simulated))
        return 1;
    runWhenReady(options);
    Main(windowMakers());
    const int result = EventQueue::ending() ? 0 : QApplication::exec();
    resetAppState(); // the windows go before the application that they need
    return result;
}
