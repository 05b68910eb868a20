// Co-operative waiting on Qt's event loop.
#include "platform/EventQueue.h"

#include "platform/TestHooks.h"

#include <QCoreApplication>
#include <QEventLoop>

static bool programIsEnding = false;

void EventQueue::yield()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void EventQueue::sleepUntilEvent()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

bool EventQueue::ending()
{
    return programIsEnding;
}

void EventQueue::endProgram()
{
    programIsEnding = true;
    QCoreApplication::exit(0);
}

void TestHooks::takeBackEnding()
{
    if (!programIsEnding)
        return;
    programIsEnding = false;
    // After an exit that no exec() was there for, Qt lets no loop run until one exec() has come
    // and gone.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
}
