// What the operator's road needs: the program's real windows and their controls by name, typing,
// and pictures of the windows where KELDOX_PICTURES says.
#pragma once

#include "support/Fixture.h"
#include "support/Hand.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "app/modMain_KeldoX2.h"
#include "platform/EventQueue.h"
#include "ui/main/ProgramIcon.h"
#include "windowMakers.h"

#include <QtWidgets>

namespace road {

constexpr char mainName[] = "frmMain_KeldoX2";
constexpr char channelsName[] = "frmChannels";
constexpr char monitorName[] = "frmIODaemon";

inline QWidget *window(const char *name)
{
    for (QWidget *top : QApplication::topLevelWidgets())
        if (top->objectName() == QString::fromLatin1(name))
            return top;
    return nullptr;
}

template <class Widget> Widget *control(const char *windowName, const char *name)
{
    const QWidget *top = window(windowName);
    return top ? top->findChild<Widget *>(QString::fromLatin1(name)) : nullptr;
}

// Keys go to whoever has the focus, which for a combo box's line edit is the combo box.
inline QWidget *keyReceiver(QLineEdit *box)
{
    return box->focusProxy() ? box->focusProxy() : box;
}

inline void typeInto(QLineEdit *box, const QString &text)
{
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(keyReceiver(box), text);
    QTest::keyClick(keyReceiver(box), Qt::Key_Return);
}

inline QString mainText(const char *label)
{
    const auto *found = control<QLabel>(mainName, label);
    return found ? found->text() : QStringLiteral("(no such label)");
}

inline void trigger(const char *windowName, const char *entry)
{
    window(windowName)->findChild<QAction *>(QString::fromLatin1(entry))->trigger();
}

// Empty when no pictures are wanted.
inline QString pictureFolder()
{
    return qEnvironmentVariable("KELDOX_PICTURES");
}

inline void picture(QWidget *shown, const char *file)
{
    if (pictureFolder().isEmpty())
        return;
    EventQueue::yield();
    shown->grab().save(pictureFolder() + QLatin1Char('/') + QString::fromLatin1(file) +
                       QStringLiteral(".png"));
}

inline void picture(const char *windowName, const char *file)
{
    picture(window(windowName), file);
}

// As the program starts: its icon, its windows, and the event guard up in the end.
inline void startProgram()
{
    QApplication::setWindowIcon(programIcon());
    Main(windowMakers());
    QTRY_VERIFY(app().guard().isUp());
}

} // namespace road
