// Input that no unit sends: the monitor takes it in bounded time and memory. bench/ measures the
// times; here they are generous, for a loaded machine.
#include "MonitorBench.h"
#include "support/TestMain.h"

#include "core/clsLogger.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>

namespace {

constexpr int stallMs = 1000;

struct Flooded : Machine
{
    Flooded()
    {
        logger->setDisplayWindow(window);
        installEventLog(logger);
        window->show();
        window->findChild<QComboBox *>(QStringLiteral("comboComPort"))
            ->setEditText(QStringLiteral("250"));
        window->findChild<QPushButton *>(QStringLiteral("cmdConnect"))->click();
        window->hide();
    }
    ~Flooded() { installEventLog(nullptr); }

    // Turns the event loop until the condition holds; the longest turn in milliseconds.
    static qint64 longestTurn(const std::function<bool()> &done)
    {
        qint64 longest = 0;
        QElapsedTimer whole;
        whole.start();
        bool isDone = false;
        while (!isDone && whole.elapsed() < 20000) {
            QElapsedTimer turn;
            turn.start();
            isDone = done();
            QCoreApplication::processEvents();
            longest = std::max(longest, turn.elapsed());
            QTest::qSleep(1);
        }
        return isDone ? longest : whole.elapsed();
    }

    std::shared_ptr<frmIODaemon> window = std::make_shared<frmIODaemon>();
    std::shared_ptr<clsLogger> logger = std::make_shared<clsLogger>();
};

} // namespace

class TestHostileMonitor : public QObject
{
    Q_OBJECT

private slots:
    void aPortWithoutCarriageReturns_data();
    void aPortWithoutCarriageReturns();
    void textsOfAnyLength_data();
    void textsOfAnyLength();
    void aLoggedTextIsCutToItsBeginning();
    void markupIsShownAsItIs();
};

void TestHostileMonitor::aPortWithoutCarriageReturns_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::addRow("shown") << true;
    QTest::addRow("hidden") << false;
}

void TestHostileMonitor::aPortWithoutCarriageReturns()
{
    QFETCH(const bool, isShown);
    Flooded on;
    if (isShown)
        on.window->show();
    constexpr std::uint64_t total = 500'000;
    std::uint64_t sent = 0;
    qsizetype longestText = 0;
    const qint64 longest = Flooded::longestTurn([&] {
        const std::uint64_t arrived = on.line.bitsOnWire() / 10;
        if (sent < total && sent - arrived < 50'000) {
            on.line.send(std::string(50'000, 'x'));
            sent += 50'000;
        }
        longestText = std::max(longestText, on.window->displayText().size());
        return arrived == total;
    });
    QTest::qWait(300); // what comes too fast is lost, as on a line; the end is to be seen
    on.line.send("the end\r");
    QTRY_VERIFY(on.window->displayText().endsWith(QStringLiteral("the end\r\n")));
    QVERIFY2(longest < stallMs, qPrintable(QString::number(longest)));
    QVERIFY(longestText <= frmIODaemon::displayLimit);
    // Shown in pieces as it came, not kept until its end.
    for (const QString &line : on.window->displayText().split(QStringLiteral("\r\n")))
        QVERIFY2(line.size() < 1200, qPrintable(line));
}

void TestHostileMonitor::textsOfAnyLength_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("isShown");
    QTest::addRow("as long as it shows whole") << frmIODaemon::longestText << true;
    QTest::addRow("one more") << frmIODaemon::longestText + 1 << true;
    QTest::addRow("10 MB") << 10'000'000 << true;
    QTest::addRow("10 MB, hidden") << 10'000'000 << false;
}

void TestHostileMonitor::textsOfAnyLength()
{
    QFETCH(const int, length);
    QFETCH(const bool, isShown);
    Flooded on;
    if (isShown)
        on.window->show();
    const QString text(length, QLatin1Char('x'));
    int shown = 0;
    const qint64 longest = Flooded::longestTurn([&] {
        on.window->Display(QString(), text);
        return ++shown == 30;
    });
    QVERIFY2(longest < stallMs, qPrintable(QString::number(longest)));
    // What is cut by proportion settles at a multiple of what is added.
    QVERIFY(on.window->displayText().size() < 5 * frmIODaemon::longestText);
    const bool isWhole = length <= frmIODaemon::longestText;
    QCOMPARE(on.window->displayText().endsWith(QStringLiteral(" more characters)\r\n")), !isWhole);
}

void TestHostileMonitor::aLoggedTextIsCutToItsBeginning()
{
    const Flooded on;
    logEvent(QStringLiteral("s"), QString(9999, QLatin1Char('x')));
    QVERIFY(on.window->displayText().endsWith(QString(2000, QLatin1Char('x')) +
                                              QStringLiteral("... (7999 more characters)\r\n")));
}

void TestHostileMonitor::markupIsShownAsItIs()
{
    Flooded on;
    on.window->show();
    on.line.send("<b>bold</b><img src='x'>\r");
    QTRY_VERIFY(text1(*on.window)
                    ->toPlainText()
                    .contains(QStringLiteral("received <b>bold</b><img src='x'>\n")));
}

KELDOX_TEST(TestHostileMonitor)
#include "TestHostileMonitor.moc"
