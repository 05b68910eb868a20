// The serial control's comm events: when they are raised and how much one hands over.
#include "TerminalEnd.h"
#include "support/TestMain.h"

class TestCommEvents : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void withoutAThresholdThereIsNoEvent();
    void receivedBytesRaiseAReceiveEvent();
    void anEventWaitsForItsThreshold();
    void oneEventHandsOverAtMostNinetySevenBytes();
    void bytesThatComeDuringAnEventRaiseTheNextOne();
    void aHandlerMayCloseThePort();
    void aHandlerMayDropTheControl();

private:
    std::unique_ptr<Fixture> fixture;
    std::unique_ptr<TerminalEnd> end;
    std::unique_ptr<CommControl> control;
};

void TestCommEvents::init()
{
    fixture = std::make_unique<Fixture>();
    end = std::make_unique<TerminalEnd>();
    control = std::make_unique<CommControl>();
    fixture->plug(3, end->device());
    control->setCommPort(3);
    control->setPortOpen(true);
    control->setRThreshold(1);
    control->setInputLen(1);
}

void TestCommEvents::cleanup()
{
    control.reset();
    end.reset();
    fixture.reset();
}

void TestCommEvents::withoutAThresholdThereIsNoEvent()
{
    control->setRThreshold(0);
    QSignalSpy events(control.get(), &CommControl::OnComm);
    end->send("abc");
    QTRY_COMPARE_WITH_TIMEOUT(control->inBufferCount(), 3, 2000);
    QTest::qWait(20);
    QCOMPARE(events.size(), 0);
}

void TestCommEvents::receivedBytesRaiseAReceiveEvent()
{
    QString text;
    int kind = -1;
    connect(control.get(), &CommControl::OnComm, this, [&] {
        kind = control->commEvent();
        while (control->inBufferCount() >= 1)
            text += control->input();
    });
    QCOMPARE(control->commEvent(), 0);
    end->send("OK\r");
    QTRY_COMPARE_WITH_TIMEOUT(text, QStringLiteral("OK\r"), 2000);
    QCOMPARE(kind, 2);
    QCOMPARE(control->commEvent(), 0);
}

void TestCommEvents::anEventWaitsForItsThreshold()
{
    control->setRThreshold(3);
    QSignalSpy events(control.get(), &CommControl::OnComm);
    connect(control.get(), &CommControl::OnComm, control.get(), [&] { control->discardInput(); });
    end->send("ab");
    QTRY_COMPARE_WITH_TIMEOUT(control->inBufferCount(), 2, 2000);
    QTest::qWait(20);
    QCOMPARE(events.size(), 0);
    end->send("c");
    QTRY_COMPARE_WITH_TIMEOUT(events.size(), 1, 2000);
}

void TestCommEvents::oneEventHandsOverAtMostNinetySevenBytes()
{
    QList<int> sizes;
    QString text;
    bool received = false;
    connect(control.get(), &CommControl::BytesReceived, this, [&] { received = true; });
    connect(control.get(), &CommControl::OnComm, this, [&] {
        int count = 0;
        while (control->inBufferCount() >= 1) {
            text += control->input();
            ++count;
        }
        sizes.append(count);
    });
    QByteArray reply;
    for (int i = 0; i < 300; ++i)
        reply.append(static_cast<char>('a' + i % 26));
    end->send(reply);
    QTRY_COMPARE_WITH_TIMEOUT(text, QString::fromLatin1(reply), 2000);
    QVERIFY(received);
    QCOMPARE(sizes, (QList<int>{97, 97, 97, 9}));
}

void TestCommEvents::bytesThatComeDuringAnEventRaiseTheNextOne()
{
    QStringList texts;
    bool inside = false;
    bool nested = false;
    connect(control.get(), &CommControl::OnComm, this, [&] {
        nested = nested || inside;
        inside = true;
        QString text;
        while (control->inBufferCount() >= 1)
            text += control->input();
        texts.append(text);
        if (texts.size() == 1) {
            end->send("second");
            QTest::qWait(50);
        }
        inside = false;
    });
    end->send("first");
    QTRY_COMPARE_WITH_TIMEOUT(
        texts, (QStringList{QStringLiteral("first"), QStringLiteral("second")}), 2000);
    QVERIFY(!nested);
}

void TestCommEvents::aHandlerMayCloseThePort()
{
    QSignalSpy events(control.get(), &CommControl::OnComm);
    connect(control.get(), &CommControl::OnComm, control.get(),
            [&] { control->setPortOpen(false); });
    end->send(QByteArray(150, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(events.size(), 1, 2000);
    QTest::qWait(20);
    QCOMPARE(events.size(), 1);
    QCOMPARE(control->inBufferCount(), 0);
}

void TestCommEvents::aHandlerMayDropTheControl()
{
    connect(control.get(), &CommControl::OnComm, this, [&] { control.reset(); });
    end->send("x");
    QTRY_VERIFY_WITH_TIMEOUT(!control, 2000);
}

KELDOX_TEST(TestCommEvents)
#include "TestCommEvents.moc"
