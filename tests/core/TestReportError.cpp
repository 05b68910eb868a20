// The error report: the account in the log and the one in the box, word for word, and reports that
// are made at a bad time.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "app/AppState.h"
#include "core/ResumeNext.h"
#include "core/modErrorHandling.h"
#include "platform/RunTimeError.h"
#include "support/FakeViews.h"

#include <functional>

namespace {

const QString title = QStringLiteral("KELDO-X Control Program");

void report(const std::exception_ptr &error, const char *source, const char *extra = "")
{
    try {
        std::rethrow_exception(error);
    } catch (...) {
        ReportError(QString::fromLatin1(source), QString::fromLatin1(extra));
    }
}

void report(const RunTimeError &error, const char *source, const char *extra = "")
{
    report(std::make_exception_ptr(error), source, extra);
}

// A log that does something of the test's when an event reaches it.
class ActingLog : public EventLog
{
public:
    void LogEvent(const QString &, const QString &text, bool, bool) override
    {
        texts.append(text);
        if (action)
            action();
    }
    bool hasDisplay() const override { return display; }

    std::function<void()> action;
    QStringList texts;
    bool display = true;
};

} // namespace

class TestReportError : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aBusyPortIsReportedWordForWord();
    void aTextEqualToTheLibrarysHasNoErrorLine();
    void anUnlistedNumberAlwaysHasTheErrorLine();
    void anOwnDescriptionStandsInBothAccounts();
    void theExtraTextIsTheLastOfBoth();
    void aSourceEqualToTheErrorsOwnHasNoInLine();
    void anEmptySourceHasNoInLine();
    void aNegativeNumberKeepsItsSignAndHasNoBlank();
    void theBoxIsAWarningWithTheApplicationsStyleAndTitle();
    void theLogHearsOfItBeforeTheBoxIsShown();
    void aNumberOutsideSixteenBitsPassesToTheCallerUnreported();
    void anyOtherExceptionIsReportedAsANumberedError();
    void theErrorStaysPending();
    void aReportMadeWhileReportingSkipsTheLogAndShowsItsBox();
    void aFailingLogDoesNotStopTheBox();
    void beforeTheLogHasADisplayOnlyTheBoxIsShown();
    void withoutALogOnlyTheBoxIsShown();

private:
    std::unique_ptr<Fixture> fixture;
    std::shared_ptr<FakeLog> log;
};

void TestReportError::init()
{
    fixture = std::make_unique<Fixture>();
    log = std::make_shared<FakeLog>();
    installEventLog(log);
}

void TestReportError::cleanup()
{
    fixture.reset();
}

void TestReportError::aBusyPortIsReportedWordForWord()
{
    fixture->boxes.expect(QStringLiteral("Error 8005 (Port already open)\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in clsCommPort.InitializePort\r\n"),
                          48);
    report(RunTimeError(8005), "clsCommPort.InitializePort");
    QCOMPARE(log->events.size(), 1);
    QCOMPARE(log->events.at(0).first, QStringLiteral("modErrorHandling"));
    QCOMPARE(log->events.at(0).second,
             QStringLiteral("Error number = 8005\r\n"
                            "ErrText = <Port already open>  \r\n"
                            "Error$ = <Application-defined or object-defined error>\r\n"
                            "Err.description = <Application-defined or object-defined error>\r\n"
                            "Err.source = <KELDO-X Control Program>from "
                            "<clsCommPort.InitializePort>\r\n"));
    QCOMPARE(log->flags.at(0), qMakePair(true, true));
}

void TestReportError::aTextEqualToTheLibrarysHasNoErrorLine()
{
    fixture->boxes.expect(QStringLiteral("Error 380 (Invalid property value)\r\n"
                                         "Invalid property value\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in x.y\r\n"));
    report(RunTimeError(380), "x.y");
    QCOMPARE(log->events.at(0).second,
             QStringLiteral("Error number = 380\r\n"
                            "ErrText = <Invalid property value>  \r\n"
                            "Err.source = <KELDO-X Control Program>from <x.y>\r\n"));
}

void TestReportError::anUnlistedNumberAlwaysHasTheErrorLine()
{
    fixture->boxes.expect(QStringLiteral("Error 13 ('Type mismatch')\r\n"
                                         "Type mismatch\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in x.y\r\n"));
    report(RunTimeError(13), "x.y");
    QCOMPARE(log->events.at(0).second,
             QStringLiteral("Error number = 13\r\n"
                            "ErrText = <'Type mismatch'>  \r\n"
                            "Error$ = <Type mismatch>\r\n"
                            "Err.description = <Type mismatch>\r\n"
                            "Err.source = <KELDO-X Control Program>from <x.y>\r\n"));
}

void TestReportError::anOwnDescriptionStandsInBothAccounts()
{
    fixture->boxes.expect(QStringLiteral("Error 3050 (cannot write to serial port)\r\n"
                                         "the cable is out\r\n"
                                         " from the port\r\n"
                                         " in x.y\r\n"));
    report(RunTimeError(3050, QStringLiteral("the cable is out"), QStringLiteral("the port")),
           "x.y");
    QCOMPARE(log->events.at(0).second,
             QStringLiteral("Error number = 3050\r\n"
                            "ErrText = <cannot write to serial port>  \r\n"
                            "Error$ = <Application-defined or object-defined error>\r\n"
                            "Err.description = <the cable is out>\r\n"
                            "Err.source = <the port>from <x.y>\r\n"));
}

void TestReportError::theExtraTextIsTheLastOfBoth()
{
    fixture->boxes.expect(QStringLiteral("Error 380 (Invalid property value)\r\n"
                                         "Invalid property value\r\n"
                                         " from KELDO-X Control Program\r\n"
                                         " in x.y\r\n"
                                         "while testing"));
    report(RunTimeError(380), "x.y", "while testing");
    QVERIFY(log->events.at(0).second.endsWith(
        QStringLiteral("from <x.y>\r\nextra info: <while testing>\r\n")));
}

void TestReportError::aSourceEqualToTheErrorsOwnHasNoInLine()
{
    fixture->boxes.expect(QStringLiteral("Error 380 (Invalid property value)\r\n"
                                         "Invalid property value\r\n"
                                         " from x.y\r\n"));
    report(RunTimeError(380, {}, QStringLiteral("x.y")), "x.y");
    QVERIFY(log->events.at(0).second.endsWith(QStringLiteral("Err.source = <x.y>from <x.y>\r\n")));
}

void TestReportError::anEmptySourceHasNoInLine()
{
    fixture->boxes.expect(QStringLiteral("Error 380 (Invalid property value)\r\n"
                                         "Invalid property value\r\n"
                                         " from x.y\r\n"));
    report(RunTimeError(380, {}, QStringLiteral("x.y")), "");
    QVERIFY(log->events.at(0).second.endsWith(QStringLiteral("Err.source = <x.y>from <>\r\n")));
}

void TestReportError::aNegativeNumberKeepsItsSignAndHasNoBlank()
{
    fixture->boxes.expectStart(
        QStringLiteral("Error -5 ('Application-defined or object-defined error')\r\n from "));
    report(RunTimeError(-5), "x.y");
    QVERIFY(log->events.at(0).second.startsWith(QStringLiteral("Error number = -5\r\n")));
}

void TestReportError::theBoxIsAWarningWithTheApplicationsStyleAndTitle()
{
    app().messageBoxStyle = {0x1000, 0, 0x2000};
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    report(RunTimeError(380), "x.y");
    QCOMPARE(fixture->boxes.shown().at(0).style, 48 + 0x1000 + 0x2000);
    QCOMPARE(fixture->boxes.shown().at(0).title, title);
}

void TestReportError::theLogHearsOfItBeforeTheBoxIsShown()
{
    qsizetype loggedAtBox = -1;
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    fixture->boxes.whileOpen([&] { loggedAtBox = log->events.size(); });
    report(RunTimeError(380), "x.y");
    QCOMPARE(loggedAtBox, 1);
}

void TestReportError::aNumberOutsideSixteenBitsPassesToTheCallerUnreported()
{
    int passed = 0;
    try {
        report(RunTimeError(70000), "x.y");
    } catch (const RunTimeError &error) {
        passed = error.number();
    }
    QCOMPARE(passed, 6);
    QVERIFY(log->events.isEmpty());

    // The procedures' own handler ends it silently.
    QVERIFY(!reportAndEnd("x.y", [] { throw RunTimeError(70000); }));
    QVERIFY(log->events.isEmpty());
    QVERIFY(fixture->boxes.shown().isEmpty());
}

void TestReportError::anyOtherExceptionIsReportedAsANumberedError()
{
    fixture->boxes.expectStart(QStringLiteral("Error 51 ('Internal error')\r\nthe words\r\n"));
    report(std::make_exception_ptr(std::runtime_error("the words")), "x.y");
    fixture->boxes.expectStart(QStringLiteral("Error 7 ('Out of memory')\r\n"));
    report(std::make_exception_ptr(std::bad_alloc()), "x.y");
    fixture->boxes.expectStart(QStringLiteral("Error 51 ('Internal error')\r\n"));
    report(std::make_exception_ptr(42), "x.y");
}

void TestReportError::theErrorStaysPending()
{
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    int number = 0;
    try {
        throw RunTimeError(380);
    } catch (...) {
        ReportError(QStringLiteral("x.y"), {});
        try {
            throw;
        } catch (const RunTimeError &error) {
            number = error.number();
        }
    }
    QCOMPARE(number, 380);
}

void TestReportError::aReportMadeWhileReportingSkipsTheLogAndShowsItsBox()
{
    const auto acting = std::make_shared<ActingLog>();
    acting->action = [] { report(RunTimeError(6), "the display"); };
    installEventLog(acting);
    fixture->boxes.expectStart(QStringLiteral("Error 6 ('Overflow')"));
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    report(RunTimeError(380), "x.y");
    QCOMPARE(acting->texts.size(), 1);

    acting->action = {};
    fixture->boxes.expectStart(QStringLiteral("Error 13"));
    report(RunTimeError(13), "x.y");
    QCOMPARE(acting->texts.size(), 2);
}

void TestReportError::aFailingLogDoesNotStopTheBox()
{
    const auto acting = std::make_shared<ActingLog>();
    acting->action = [] { throw RunTimeError(75); };
    installEventLog(acting);
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    report(RunTimeError(380), "x.y");
    fixture->boxes.expectStart(QStringLiteral("Error 13"));
    report(RunTimeError(13), "x.y");
    QCOMPARE(acting->texts.size(), 2); // and the next report is logged again
}

void TestReportError::beforeTheLogHasADisplayOnlyTheBoxIsShown()
{
    const auto acting = std::make_shared<ActingLog>();
    acting->display = false;
    installEventLog(acting);
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    report(RunTimeError(380), "x.y");
    QVERIFY(acting->texts.isEmpty());
}

void TestReportError::withoutALogOnlyTheBoxIsShown()
{
    installEventLog(nullptr);
    fixture->boxes.expectStart(QStringLiteral("Error 380"));
    report(RunTimeError(380), "x.y");
}

KELDOX_TEST(TestReportError)
#include "TestReportError.moc"
