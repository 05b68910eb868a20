// Makes the application, hands start-up its windows and runs until the main window is closed.
#include "app/modMain_KeldoX2.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "ui/main/ProgramIcon.h"
#include "windowMakers.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(applicationTitle());
    QApplication::setApplicationVersion(applicationVersion());
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(QStringLiteral("keldo-x"));
    // Closing the main window ends the program by itself; the other windows only hide.
    QApplication::setQuitOnLastWindowClosed(false);

    installMessageBoxes();
    Main(windowMakers());
    const int result = EventQueue::ending() ? 0 : QApplication::exec();
    resetAppState(); // the windows go before the application that they need
    return result;
}
