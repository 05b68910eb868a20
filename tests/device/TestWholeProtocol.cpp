// Two readings of the protocol over its whole command set: each command of docs/protocol.md is sent
// by the program's own code and answered by the simulated unit, good, refused and out of range. A
// command that the page or one of the two sides does not know fails.
#include "ProtocolEntries.h"

#include "sim/SimulatedUnit.h"
#include "sim/UnitCommands.h"
#include "support/Fixture.h"
#include "support/MemoryLine.h"
#include "support/TestMain.h"

#include <QDirIterator>
#include <QRegularExpression>

namespace {

// The page: each command with what it says of the reply.
QMap<QString, QString> documented()
{
    QFile page(qEnvironmentVariable("KELDOX_SOURCE_DIR") + QStringLiteral("/docs/protocol.md"));
    if (!page.open(QIODevice::ReadOnly))
        return {};
    QMap<QString, QString> commands;
    static const QRegularExpression quoted(QStringLiteral("`([^`]+)`"));
    for (const QString &row : QString::fromUtf8(page.readAll()).split(QLatin1Char('\n'))) {
        if (!row.startsWith(QLatin1String("| `")))
            continue;
        const QStringList cells = row.split(QLatin1Char('|'));
        auto found = quoted.globalMatch(cells.value(1));
        while (found.hasNext())
            commands.insert(found.next().captured(1), cells.value(2).trimmed());
    }
    return commands;
}

QList<const sim::CommandTable *> tables()
{
    return {&sim::frequencyCommands(), &sim::levelCommands(), &sim::optionCommands(),
            &sim::fineTuningCommands(), &sim::detectorCommands()};
}

// Everything that the unit holds.
QStringList stateOf(const sim::UnitSettings &unit)
{
    QStringList all;
    for (const sim::CommandTable *table : tables())
        for (const sim::QueryCommand &query : table->queries)
            all.append(QString::fromStdString(query.reply(unit)));
    return all;
}

// A unit's object on a port in memory that is open, and has asked nothing yet.
struct Bench
{
    explicit Bench(const Entry &entry, const char *password = "") : unit(settings(entry, password))
    {
        line->answer = [this](const QByteArray &command) {
            commands.append(QString::fromLatin1(command));
            auto said = unit.answer(command.toStdString());
            if (!said)
                said = sim::SimulatedUnit::answerForTheLine(command.toStdString());
            reply = said ? QString::fromStdString(*said) : QString();
            replies[QString::fromLatin1(command)] = reply;
            return said ? QList<QByteArray>{QByteArray::fromStdString(*said) + '\r'}
                        : QList<QByteArray>();
        };
        MemoryLine::install(line);
        fixture.boxes.acceptAll();
        object->setConnection(Unit::SerialPort);
        object->commPort()->setPortNumber(1);
        object->InitThePort();
        object->setDeviceFound(true);
        object->MaxStep();
        object->HasPelltrim();
        QObject::connect(object.get(), &Unit::GetPassword, object.get(), [this] { ++asked; });
    }
    static sim::UnitSettings settings(const Entry &entry, const char *password)
    {
        sim::UnitSettings made;
        made.firmware = std::string("KELDO-X REV ") + entry.firmware;
        made.address = 0;
        made.password = password;
        return made;
    }

    sim::SimulatedUnit unit;
    std::shared_ptr<MemoryUnit> line = std::make_shared<MemoryUnit>();
    QStringList commands;
    QMap<QString, QString> replies;
    QString reply; // the last one
    int asked = 0; // for the password
    Fixture fixture;
    std::shared_ptr<Unit> object = std::make_shared<Unit>();
};

bool isSetting(const Entry &entry)
{
    return entry.tooFar != nullptr;
}

bool isJudged(const Entry &entry)
{
    return !documented()
                .value(QString::fromLatin1(entry.command))
                .startsWith(QLatin1String("not judged"));
}

} // namespace

class TestWholeProtocol : public QObject
{
    Q_OBJECT

private slots:
    void noCommandIsMissingOnEitherSide();
    void theSourcesSendNothingElse();
    void good_data() { rows(false); }
    void good();
    void refused_data() { rows(true); }
    void refused();
    void outOfRange_data() { rows(true); }
    void outOfRange();

private:
    static void rows(bool settingsOnly)
    {
        QTest::addColumn<int>("entry");
        for (int i = 0; i < entries().size(); ++i)
            if (!settingsOnly || isSetting(entries().at(i)))
                QTest::addRow("%s", entries().at(i).command) << i;
    }
};

void TestWholeProtocol::noCommandIsMissingOnEitherSide()
{
    const QMap<QString, QString> page = documented();
    QVERIFY(page.size() > 50);
    QSet<QString> sentHere;
    for (const Entry &entry : entries())
        sentHere.insert(QString::fromLatin1(entry.command));
    const QSet<QString> onPage(page.keyBegin(), page.keyEnd());
    const auto listed = [](const QSet<QString> &set) {
        return QStringList(set.values()).join(QStringLiteral(", "));
    };
    QVERIFY2((onPage - sentHere).isEmpty(), qPrintable(listed(onPage - sentHere)));
    QVERIFY2((sentHere - onPage).isEmpty(), qPrintable(listed(sentHere - onPage)));
    // What the simulated unit knows beyond the page.
    for (const sim::CommandTable *table : tables()) {
        for (const sim::QueryCommand &query : table->queries) {
            const QString line = QString::fromStdString(std::string(query.line));
            QVERIFY2(page.contains(line) || page.contains(line + QLatin1Char(' ')),
                     qPrintable(line));
        }
        for (const sim::SettingCommand &setting : table->settings) {
            const QString name = QString::fromStdString(std::string(setting.name));
            const bool known = std::any_of(page.keyBegin(), page.keyEnd(), [&](const QString &c) {
                return c.startsWith(name + QLatin1Char(' '));
            });
            QVERIFY2(known, qPrintable(name));
        }
    }
}

// The literals of the unit's wing that look like commands.
void TestWholeProtocol::theSourcesSendNothingElse()
{
    const QStringList page = documented().keys();
    static const QRegularExpression literal(QStringLiteral(
        "\"([*!>][A-Z_ ]{3,}\\??|(?:OPTC|DET[AB]|INPUT ATTN|InputLimitMode)[?]?) ?\""));
    int seen = 0;
    for (const char *folder : {"device", "discovery"}) {
        QDirIterator files(qEnvironmentVariable("KELDOX_SOURCE_DIR") + QStringLiteral("/src/") +
                               QLatin1String(folder),
                           {QStringLiteral("*.cpp")});
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto found = literal.globalMatch(QString::fromUtf8(file.readAll()));
            while (found.hasNext()) {
                const QString command = found.next().captured(1).trimmed();
                ++seen;
                QVERIFY2(
                    std::any_of(page.begin(), page.end(),
                                [&](const QString &known) { return known.startsWith(command); }),
                    qPrintable(command));
            }
        }
    }
    QVERIFY2(seen > 45, qPrintable(QString::number(seen)));
}

void TestWholeProtocol::good()
{
    QFETCH(const int, entry);
    const Entry &made = entries().at(entry);
    const QString command = QString::fromLatin1(made.command);
    Bench bench(made);
    if (made.address > 0)
        bench.unit.change([&](sim::UnitSettings &unit) { unit.address = made.address; });
    const auto boxes = bench.fixture.boxes.shown().size();
    if (made.command == QByteArray("ID"))
        bench.object->commPort()->ClosePort(); // the search has a port object of its own
    made.send(*bench.object);
    QVERIFY2(bench.commands.contains(command),
             qPrintable(bench.commands.join(QStringLiteral(", "))));
    const QString reply = bench.replies.value(command);
    if (documented().value(command) == QLatin1String("never matched")) {
        QCOMPARE(reply, QString::fromLatin1(sim::unrecognized));
        return;
    }
    QVERIFY(!reply.isEmpty());
    for (const char *refusal : {sim::unrecognized, sim::outOfRange, sim::denied})
        QVERIFY2(reply != QLatin1String(refusal), qPrintable(reply));
    QVERIFY2(bench.object->lastStatus() == Unit::Good ||
                 bench.object->lastStatus() == Unit::LockedAfterStep,
             qPrintable(QString::number(bench.object->lastStatus())));
    QCOMPARE(bench.fixture.boxes.shown().size(), boxes);
}

// The unit wants its password: the setting changes nothing, and one that is judged asks for it.
void TestWholeProtocol::refused()
{
    QFETCH(const int, entry);
    const Entry &made = entries().at(entry);
    const QString command = QString::fromLatin1(made.command);
    Bench bench(made, "secret");
    const QStringList before = stateOf(bench.unit.state());
    made.send(*bench.object);
    QCOMPARE(bench.replies.value(command), QString::fromLatin1(sim::denied));
    QCOMPARE(stateOf(bench.unit.state()), before);
    // Two settings have no password path: their refusal is a bad reply like any other.
    const bool asks = isJudged(made) && command != QLatin1String("!ADDR 5") &&
                      command != QLatin1String("INPUT ATTN 3");
    QCOMPARE(bench.asked, asks ? 1 : 0);
    QVERIFY((bench.object->lastStatus() == Unit::Refused) == asks);
    // With it the same setting is taken.
    bench.object->deviceWrite(QStringLiteral("PASSWORD secret"));
    made.send(*bench.object);
    QVERIFY(bench.replies.value(command) != QLatin1String(sim::denied));
}

void TestWholeProtocol::outOfRange()
{
    QFETCH(const int, entry);
    const Entry &made = entries().at(entry);
    const QString command = QString::fromLatin1(made.tooFar);
    Bench bench(made);
    const QStringList before = stateOf(bench.unit.state());
    if (made.sendTooFar)
        made.sendTooFar(*bench.object);
    else // no property lets such a number out
        bench.object->deviceWrite(command);
    QVERIFY2(bench.replies.contains(command),
             qPrintable(bench.commands.join(QStringLiteral(", "))));
    QCOMPARE(bench.replies.value(command), QString::fromLatin1(sim::outOfRange));
    QCOMPARE(stateOf(bench.unit.state()), before);
    if (made.sendTooFar && isJudged(made))
        QCOMPARE(bench.object->lastStatus(), int(Unit::BadReply));
}

KELDOX_TEST(TestWholeProtocol)
#include "TestWholeProtocol.moc"
