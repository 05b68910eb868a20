// The connect-to-port dialog while the unit that it found is being read: breaking that off by
// Escape, by Cancel and by the frame, and clicking OK once more.
#include "ConnectDialogBench.h"
#include "support/TestMain.h"

#include "app/ConnectToDevice.h"

class TestConnectDialogBrokenOff : public QObject
{
    Q_OBJECT

private slots:
    void theReadingIsBrokenOff_data();
    void theReadingIsBrokenOff();
    void okOnceMoreDoesNothing_data();
    void okOnceMoreDoesNothing();
    void okPressedTwiceBeforeItIsHandledConnectsOnce();
};

namespace {

// A unit on COM 1 that tells its name, and goes on so slowly that it is read for as long as the
// test wants. Channel 1 connects as the real one does.
struct SlowUnit
{
    SlowUnit()
    {
        bench.line(1).setResponder([](const std::string &command) -> std::optional<std::string> {
            return command == "*ID?" ? std::optional<std::string>("KELDO-X") : std::nullopt;
        });
        bench.line(2);
        bench.rows[1]->onClick = [](FakeChannelRow &row) {
            auto unit = row.mDevice;
            ConnectToDevice(unit, 1);
        };
    }

    // Presses OK, and acts once while the unit is being read.
    void whileItIsRead(frmConnectToComport &dialog, const std::function<void()> &act)
    {
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &dialog, [&] {
            if (!app().connecting || bench.sentTo(1).size() < 3)
                return;
            look.stop();
            clock.start();
            act();
            acted = true;
        });
        look.start(5);
        open(dialog, [&] { press(dialog, "OKButton"); });
        QVERIFY(acted);
    }

    int timesIdentified()
    {
        return static_cast<int>(bench.sentTo(1).count(QStringLiteral("*ID?")));
    }

    SearchBench bench;
    QElapsedTimer clock; // since the act
    bool acted = false;
};

} // namespace

void TestConnectDialogBrokenOff::theReadingIsBrokenOff_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"Escape", "Cancel", "frame"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void TestConnectDialogBrokenOff::theReadingIsBrokenOff()
{
    QFETCH(const QString, by);
    SlowUnit slow;
    frmConnectToComport dialog;
    std::shared_ptr<clsKeldoX> unit;
    bool stayed = false;
    slow.whileItIsRead(dialog, [&] {
        unit = app().connecting;
        if (by == QStringLiteral("Escape"))
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else if (by == QStringLiteral("Cancel"))
            press(dialog, "CancelButton");
        else
            dialog.close();
        stayed = dialog.isVisible(); // until the search has ended
    });
    QVERIFY2(slow.clock.elapsed() < 1000, qPrintable(QString::number(slow.clock.elapsed())));
    QVERIFY(stayed);
    QVERIFY(!unit->PortIsOpen());
    QVERIFY(!app().connecting);
    QVERIFY(!app().search);
    QCOMPARE(slow.timesIdentified(), 2); // by the search and by the connection, and not once more
    QCOMPARE(slow.bench.mainWindow->panels[1], QStringLiteral("NOT CONNECTED"));
    QCOMPARE(slow.bench.mainWindow->wasCancelled, std::optional(true));
    verifyAtRest(slow.bench);
}

void TestConnectDialogBrokenOff::okOnceMoreDoesNothing_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"mouse", "Enter", "reader"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void TestConnectDialogBrokenOff::okOnceMoreDoesNothing()
{
    QFETCH(const QString, by);
    SlowUnit slow;
    frmConnectToComport dialog;
    qsizetype sent = 0;
    slow.whileItIsRead(dialog, [&] {
        const auto search = app().search;
        sent = slow.bench.sentTo(1).size();
        if (by == QStringLiteral("mouse"))
            press(dialog, "OKButton");
        else if (by == QStringLiteral("Enter"))
            QTest::keyClick(&dialog, Qt::Key_Return);
        else
            emit button(dialog, "OKButton").clicked();
        QVERIFY(dialog.isVisible());
        QVERIFY(app().connecting);
        QCOMPARE(app().search, search);
        QCOMPARE(slow.bench.sentTo(1).size(), sent);
        dialog.reject();
    });
    QCOMPARE(slow.timesIdentified(), 2);
    verifyAtRest(slow.bench);
}

// A double click: the second one comes while the first one's search has just begun.
void TestConnectDialogBrokenOff::okPressedTwiceBeforeItIsHandledConnectsOnce()
{
    SearchBench bench;
    bench.unit(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QMetaObject::invokeMethod(
            &dialog, [&] { press(dialog, "OKButton"); }, Qt::QueuedConnection);
        press(dialog, "OKButton");
    });
    QCOMPARE(bench.sentTo(1), QStringList{QStringLiteral("*ID?")});
    verifyAtRest(bench);
}

KELDOX_TEST(TestConnectDialogBrokenOff)
#include "TestConnectDialogBrokenOff.moc"
