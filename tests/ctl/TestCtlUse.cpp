// The console tool's command line: texts, wrong use, and that help, man page, completion and the
// tool's own tables name the same things.
#include "CtlBench.h"

#include <QRegularExpression>

class TestCtlUse : public QObject
{
    Q_OBJECT

private slots:
    void helpIsAResult();
    void versionIsAResult();
    void wrongUseIsToldBeforeAPortIsOpened_data();
    void wrongUseIsToldBeforeAPortIsOpened();
    void negativeValuesAreNoOptions();
    void everyOptionOfTheHelpIsTaken();
    void everyNameOfTheHelpIsKnown();
    void manPageAndCompletionNameWhatTheHelpNames();

private:
    static QString help() { return CtlBench::run("--help").out; }
    static QStringList optionsOf(const QString &text);
    static QStringList namesOf(const QString &helpText);
    static QString file(const char *name);
};

QString TestCtlUse::file(const char *name)
{
    QFile source(qEnvironmentVariable("KELDOX_SOURCE_DIR") + QLatin1Char('/') +
                 QString::fromLatin1(name));
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

QStringList TestCtlUse::optionsOf(const QString &text)
{
    static const QRegularExpression option(QStringLiteral("--([a-z-]+)"));
    QStringList names;
    for (auto match = option.globalMatch(text); match.hasNext();)
        names.append(match.next().captured(1));
    names.removeDuplicates();
    return names;
}

// The section "Names": what can be set stands before its values, what can be read by itself.
QStringList TestCtlUse::namesOf(const QString &helpText)
{
    static const QRegularExpression section(QStringLiteral("Names:\n(.*?)\n\n"),
                                            QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression aside(QStringLiteral(R"(\([^)]*\)|to set|to read|these, and)"),
                                          QRegularExpression::DotMatchesEverythingOption);
    QString text = section.match(helpText).captured(1);
    text.replace(aside, QStringLiteral(","));
    QStringList names;
    for (const QString &entry : text.split(QLatin1Char(',')))
        if (const QString words = entry.simplified(); !words.isEmpty())
            names.append(words.section(QLatin1Char(' '), 0, 0));
    return names;
}

void TestCtlUse::helpIsAResult()
{
    for (const char *option : {"--help", "-h"}) {
        const Outcome outcome = CtlBench::run(option);
        QCOMPARE(outcome.code, 0);
        QVERIFY(outcome.out.startsWith(QStringLiteral("Usage: keldo-x-ctl COMMAND")));
        QVERIFY(outcome.err.isEmpty());
    }
    for (const QString &line : help().split(QLatin1Char('\n')))
        QVERIFY2(line.size() < 80, qPrintable(line));
}

void TestCtlUse::versionIsAResult()
{
    CTL_COMPARE(CtlBench::run("--version"), 0, "keldo-x-ctl " KELDOX_VERSION "\n");
}

void TestCtlUse::wrongUseIsToldBeforeAPortIsOpened_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *arguments, const char *message) {
        QTest::newRow(arguments) << QString::fromUtf8(arguments) << QString::fromUtf8(message);
    };
    row("", "Which command?");
    row("tune 146.5 --port COM7", "There is no command \"tune\"");
    row("get frequency", "Which port?");
    row("preset 1", "Which port?");
    row("get frequency --port tty", "\"tty\" is no port");
    row("get frequency --port COM0", "\"COM0\" is no port");
    row("get frequency --port COM256", "\"COM256\" is no port");
    row("get frequency --port COM7:9", "\"COM7:9\" is no port");
    row("get frequency --port COM7:1 --address 2", "\"COM7:1\" is no port");
    row("get frequency --port COM7 --address 9", "--address \"9\"");
    row("get nothing --port COM7", "There is no value \"nothing\"");
    row("set frequency --port COM7", "\"set\" needs more words");
    row("set agc on bypass --port COM7", "bypass needs a value");
    row("set frequency 146,5 --port COM7", "\"146,5\" is no value for frequency");
    row("set frequency 146.5 dB --port COM7", "\"146.5 dB\" is no value for frequency");
    row("set frequency step 1.5 --port COM7", "\"1.5\" is no value for step");
    row("set attenuation much --port COM7", "\"much\" is no value for attenuation");
    row("set agc yes --port COM7", "\"yes\" is no value for agc: it takes on or off");
    row("set limiting -3 --port COM7", "\"-3\" is no value for limiting");
    row("set pelltrim 99999 --port COM7", "\"99999\" is no value for pelltrim");
    row("set lock on --port COM7", "lock can only be read");
    row("watch now --port COM7", "\"watch\" does not take \"now\"");
    row("watch --count 0 --port COM7", "--count \"0\"");
    row("watch --interval soon --port COM7", "--interval \"soon\" is no number of seconds");
    row("get --count 2 --port COM7", "\"get\" does not take --count");
    row("get --timeout 0 --port COM7", "--timeout \"0\"");
    row("get --nonsense --port COM7", "Unknown option 'nonsense'");
    row("raw --port COM7", "\"raw\" needs more words");
    row("preset 5 --port COM7", "The presets are 1 to 4");
    row("preset 1 --port COM7", "Preset 1 is not set");
    row("follow --port COM7", "\"follow\" needs more words");
    row("follow host:99999 --port COM7", "\"host:99999\" is no HOST:PORT");
    row("follow host --offset far --port COM7", "--offset \"far\" is no frequency");
    row("follow host --tuning-step -1kHz --port COM7", "--tuning-step is not negative");
    row("follow host --min 2 --max 1 --port COM7", "--min is above --max");
}

void TestCtlUse::wrongUseIsToldBeforeAPortIsOpened()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    const CtlBench bench;
    const Outcome outcome = CtlBench::run(arguments.toUtf8().constData());
    QCOMPARE(outcome.code, 2);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(outcome.err.startsWith(QStringLiteral("keldo-x-ctl: ") + message),
             qPrintable(outcome.err));
    QVERIFY(bench.commands().isEmpty());
}

void TestCtlUse::negativeValuesAreNoOptions()
{
    const CtlBench bench;
    CTL_COMPARE(CtlBench::onUnit("set limiting -1"), 0, "limiting -1\n");
    QCOMPARE(bench.unit->inputLimitingMode(), 2);
}

void TestCtlUse::everyOptionOfTheHelpIsTaken()
{
    const QStringList options = optionsOf(help());
    QVERIFY(options.size() >= 13);
    for (const QString &option : options) {
        const Outcome outcome =
            CtlBench::run({QStringLiteral("nothing"), QStringLiteral("--%1=1").arg(option)});
        QVERIFY2(!outcome.err.contains(QStringLiteral("Unknown option")), qPrintable(outcome.err));
    }
}

void TestCtlUse::everyNameOfTheHelpIsKnown()
{
    const CtlBench bench;
    const QStringList names = namesOf(help());
    QVERIFY2(names.size() >= 20, qPrintable(names.join(QLatin1Char(' '))));
    for (const QString &name : names)
        QVERIFY2(
            CtlBench::run({QStringLiteral("get"), name, QStringLiteral("--port=COM99")}).code == 3,
            qPrintable(name));
    // And nothing that a unit has is missing from the help; offsets are for older units.
    const QStringList lines = CtlBench::onUnit("get").lines();
    QVERIFY(lines.size() >= 20);
    for (const QString &line : lines)
        QVERIFY2(names.contains(line.section(QLatin1Char(' '), 0, 0)), qPrintable(line));
}

void TestCtlUse::manPageAndCompletionNameWhatTheHelpNames()
{
    const QString text = help();
    const QString manual = file("packaging/man/keldo-x-ctl.1").remove(QLatin1Char('\\'));
    const QString completion = file("packaging/completions/keldo-x-ctl");
    QStringList wanted = namesOf(text);
    for (const QString &option : optionsOf(text))
        wanted.append(QStringLiteral("--") + option);
    for (const char *command :
         {"ports", "search", "get", "set", "watch", "raw", "preset", "follow"})
        wanted.append(QString::fromLatin1(command));
    for (const QString &word : std::as_const(wanted)) {
        const QRegularExpression whole(QStringLiteral("(?<![a-z-])%1(?![a-z-])").arg(word));
        QVERIFY2(text.contains(whole), qPrintable(word));
        QVERIFY2(manual.contains(whole), qPrintable(word));
        QVERIFY2(completion.contains(whole), qPrintable(word));
    }
}

KELDOX_TEST(TestCtlUse)
#include "TestCtlUse.moc"
