// Rules that every source file keeps: it says what it is for, and only the ground floor knows which
// system the program runs on.
#include "support/TestMain.h"

#include "SourceTree.h"

#include <QRegularExpression>

class TestSources : public QObject
{
    Q_OBJECT

private slots:
    void everyFileBeginsWithWhatItIsFor();
    void onlyThePlatformFolderKnowsTheSystem();
    void noWaitOfTheSerialPortBlocks();
    void theProgramCallsNoHookOfTheTests();
    void theRulesSeeABreach();
};

static bool beginsWithComment(const QString &source)
{
    static const QRegularExpression opening(QStringLiteral(R"(^//+ \S.{10,})"));
    return opening.match(source).hasMatch();
}

static bool asksForTheSystem(const QString &source)
{
    static const QRegularExpression macro(
        QStringLiteral(R"(\b(Q_OS_\w+|_WIN32|WIN32|__linux__|__unix__|__APPLE__|__MINGW32__)\b)"));
    return macro.match(source).hasMatch();
}

static bool blocks(const QString &source)
{
    static const QRegularExpression call(QStringLiteral(R"(\bwaitFor(ReadyRead|BytesWritten)\b)"));
    return call.match(source).hasMatch();
}

// A hook is defined where the thing stands that it takes the place of, and called by tests alone.
static bool callsAHook(const QString &source)
{
    static const QRegularExpression call(QStringLiteral(R"(^[ \t]+.*\bTestHooks::\w)"),
                                         QRegularExpression::MultilineOption);
    return call.match(source).hasMatch();
}

void TestSources::theProgramCallsNoHookOfTheTests()
{
    QStringList calling;
    for (const QString &file : sourceFiles(QStringLiteral("src")))
        if (callsAHook(contentsOf(file)))
            calling.append(file);
    QVERIFY2(calling.isEmpty(), qPrintable(calling.join(QStringLiteral("\n"))));
}

// On Windows these calls wait for another thread, with a time of 0 too, and stop the window.
void TestSources::noWaitOfTheSerialPortBlocks()
{
    QStringList blocking;
    for (const char *folder : {"src", "ctl"})
        for (const QString &file : sourceFiles(QString::fromLatin1(folder)))
            if (blocks(contentsOf(file)))
                blocking.append(file);
    QVERIFY2(blocking.isEmpty(), qPrintable(blocking.join(QStringLiteral("\n"))));
}

void TestSources::everyFileBeginsWithWhatItIsFor()
{
    QStringList silent;
    for (const char *folder : {"src", "ctl", "sim", "tests", "bench", "fuzz"})
        for (const QString &file : sourceFiles(QString::fromLatin1(folder)))
            if (!beginsWithComment(contentsOf(file)))
                silent.append(file);
    QVERIFY2(silent.isEmpty(), qPrintable(silent.join(QStringLiteral("\n"))));
}

void TestSources::onlyThePlatformFolderKnowsTheSystem()
{
    QStringList asking;
    const QStringList files =
        sourceFiles(QStringLiteral("src")) + sourceFiles(QStringLiteral("ctl"));
    QVERIFY(files.size() > 20);
    for (const QString &file : files)
        if (!file.startsWith(QLatin1String("src/platform/")) && asksForTheSystem(contentsOf(file)))
            asking.append(file);
    QVERIFY2(asking.isEmpty(), qPrintable(asking.join(QStringLiteral("\n"))));
}

void TestSources::theRulesSeeABreach()
{
    QVERIFY(!beginsWithComment(QStringLiteral("#pragma once\n// What this is for.\n")));
    QVERIFY(!beginsWithComment(QStringLiteral("\n// What this is for.\n")));
    QVERIFY(!beginsWithComment(QStringLiteral("//\n")));
    QVERIFY(beginsWithComment(QStringLiteral("// What this is for.\n#pragma once\n")));
    QVERIFY(asksForTheSystem(QStringLiteral("#ifdef Q_OS_WIN\n")));
    QVERIFY(asksForTheSystem(QStringLiteral("#if defined(__linux__)\n")));
    QVERIFY(!asksForTheSystem(QStringLiteral("#ifdef NDEBUG\n")));
    QVERIFY(blocks(QStringLiteral("m_port.waitForReadyRead(0);")));
    QVERIFY(!blocks(QStringLiteral("m_port.readAll();")));
    QVERIFY(callsAHook(QStringLiteral("    TestHooks::failOpening(8005);")));
    QVERIFY(!callsAHook(QStringLiteral("void TestHooks::failOpening(int errorNumber)")));
}

KELDOX_TEST(TestSources)
#include "TestSources.moc"
