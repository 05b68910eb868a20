// What the tests of the connect-to-port dialog share: it is opened on simulated lines and acted on
// by mouse and keyboard.
#pragma once

#include "app/AppState.h"
#include "support/SearchBench.h"
#include "ui/connect/frmConnectToComport.h"

#include <QtWidgets>

inline QPushButton &button(QWidget &dialog, const char *name)
{
    return *dialog.findChild<QPushButton *>(QString::fromLatin1(name));
}

inline QCheckBox &tovinR(QWidget &dialog)
{
    return *dialog.findChild<QCheckBox *>(QStringLiteral("chkTovinR"));
}

inline void press(QWidget &dialog, const char *name)
{
    QTest::mouseClick(&button(dialog, name), Qt::LeftButton);
}

// Opens the dialog and acts once it is ready: by default when its list is enabled.
template <class Action>
void open(frmConnectToComport &dialog, Action action, std::function<bool()> isReady = {})
{
    if (!isReady)
        isReady = [&] { return dialog.comboComPort().isEnabled(); };
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (QApplication::activeModalWidget() != &dialog || (!isReady() && clock.elapsed() < 5000))
            return;
        poll.stop();
        const bool ready = isReady();
        if (ready)
            action();
        if (!ready || QTest::currentTestFailed())
            dialog.reject(); // else it would wait for ever
        QVERIFY(ready);
    });
    poll.start(5);
    dialog.showModal();
    QVERIFY(!dialog.isVisible());
}

// What is true after the dialog, however it ended.
inline void verifyAtRest(const SearchBench &bench)
{
    QVERIFY(app().searchFinished);
    QVERIFY(!bench.channels->progressVisible);
    QCOMPARE(bench.calls->last(), QStringLiteral("main.bringUpToDate"));
}
