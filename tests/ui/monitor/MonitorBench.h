// What the tests of the IO monitor share.
#pragma once

#include "app/AppState.h"
#include "sim/SimulatedLine.h"
#include "support/FakeViews.h"
#include "support/Fixture.h"
#include "ui/monitor/frmIODaemon.h"

#include <QAction>
#include <QPlainTextEdit>

// A machine with a serial port: without one, listing the ports is reported.
struct Machine : Fixture
{
    Machine() { plug(250, line.device()); }

    sim::SimulatedLine line;
};

inline QPlainTextEdit *text1(const frmIODaemon &window)
{
    return window.findChild<QPlainTextEdit *>(QStringLiteral("Text1"));
}

inline QAction *entry(const frmIODaemon &window, const char *name)
{
    return window.findChild<QAction *>(QLatin1String(name));
}
