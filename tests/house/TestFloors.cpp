// The house is a tower: a file includes only files of its own floor or below, and no chain of
// includes comes back to where it began.
#include "support/TestMain.h"

#include "SourceTree.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

class TestFloors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyFileHasItsFloor_data();
    void everyFileHasItsFloor();
    void theRuleSeesAnIncludeOfAHigherFloor();
    void theRuleSeesACycle();
    void noFileIncludesWhatStandsAboveIt();
    void includesFormNoCycle();
    void everyIncludeIsOfAFileThatIsThere();
    void theProgramAndTheSimulatorShareNoCode();

private:
    using Includes = QHash<QString, QStringList>; // file to what it includes, below src/

    static int floorOf(const QString &file);
    static QStringList violations(const Includes &includes);
    static QStringList cycleIn(const Includes &includes);

    Includes all;
};

static QStringList quotedIncludes(const QString &source)
{
    static const QRegularExpression line(QStringLiteral(R"re(^\s*#\s*include\s*"([^"]+)")re"),
                                         QRegularExpression::MultilineOption);
    QStringList names;
    for (auto match = line.globalMatch(source); match.hasNext();)
        names.append(match.next().captured(1));
    return names;
}

// What the build makes of a window's design or a class's signals is no file of the tree.
static bool isGenerated(const QString &name)
{
    return name.startsWith(QLatin1String("ui_")) || name.contains(QLatin1String("/ui_")) ||
           name.endsWith(QLatin1String(".moc")) ||
           QFileInfo(name).fileName().startsWith(QLatin1String("moc_"));
}

// An include is written from src/ or beside the file itself.
static QString resolved(const QString &file, const QString &name)
{
    const QString beside = QFileInfo(file).path() + QLatin1Char('/') + name;
    if (sourceTree().exists(QStringLiteral("src/") + beside))
        return QDir::cleanPath(beside);
    return QDir::cleanPath(name);
}

// From the ground: platform 0, core 1, the port 2, device 3, discovery 4, the rest of link 5,
// ui 6, main.cpp 7; -1 for a file that stands on no floor.
int TestFloors::floorOf(const QString &file)
{
    static const QList<QPair<QString, int>> floors = {{QStringLiteral("platform/"), 0},
                                                      {QStringLiteral("core/"), 1},
                                                      {QStringLiteral("link/clsCommPort"), 2},
                                                      {QStringLiteral("link/frmMScomm"), 2},
                                                      {QStringLiteral("device/"), 3},
                                                      {QStringLiteral("discovery/"), 4},
                                                      {QStringLiteral("link/"), 5},
                                                      {QStringLiteral("ui/"), 6},
                                                      {QStringLiteral("main.cpp"), 7}};
    for (const auto &[start, floor] : floors)
        if (file.startsWith(start))
            return floor;
    return -1;
}

QStringList TestFloors::violations(const Includes &includes)
{
    QStringList found;
    for (auto file = includes.cbegin(); file != includes.cend(); ++file)
        for (const QString &name : file.value())
            if (floorOf(name) > floorOf(file.key()))
                found.append(file.key() + QStringLiteral(" includes ") + name);
    found.sort();
    return found;
}

// The files of one cycle in order; empty when there is none.
QStringList TestFloors::cycleIn(const Includes &includes)
{
    QSet<QString> done;
    QStringList path;
    const std::function<bool(const QString &)> closesCycle = [&](const QString &file) {
        if (const auto at = path.indexOf(file); at >= 0) {
            path = path.mid(at);
            return true;
        }
        if (done.contains(file))
            return false;
        path.append(file);
        for (const QString &name : includes.value(file))
            if (closesCycle(name))
                return true;
        path.removeLast();
        done.insert(file);
        return false;
    };
    for (auto file = includes.cbegin(); file != includes.cend(); ++file)
        if (closesCycle(file.key()))
            return path;
    return {};
}

void TestFloors::initTestCase()
{
    QVERIFY2(sourceTree().exists(QStringLiteral("src/main.cpp")),
             "KELDOX_SOURCE_DIR names the source tree");
    for (const QString &path : sourceFiles(QStringLiteral("src"))) {
        const QString file = path.mid(4);
        QStringList &includes = all[file];
        for (const QString &name : quotedIncludes(contentsOf(path)))
            if (!isGenerated(name))
                includes.append(resolved(file, name));
    }
    QVERIFY(all.size() > 20);
}

void TestFloors::everyFileHasItsFloor_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("floor");
    const auto row = [](const char *file, int floor) {
        QTest::addRow("%s", file) << QString::fromLatin1(file) << floor;
    };
    row("platform/CommControl.h", 0);
    row("core/Views.h", 1);
    row("link/clsCommPort_wait.cpp", 2);
    row("link/frmMScomm.h", 2);
    row("device/clsKeldoX.h", 3);
    row("discovery/clsSeeker.cpp", 4);
    row("link/ConnectToDevice.h", 5);
    row("link/frmIODaemon.cpp", 5);
    row("ui/main/frmMain_KeldoX2.h", 6);
    row("main.cpp", 7);
}

void TestFloors::everyFileHasItsFloor()
{
    QFETCH(const QString, file);
    QFETCH(const int, floor);
    QCOMPARE(floorOf(file), floor);
    for (auto known = all.cbegin(); known != all.cend(); ++known)
        QVERIFY2(floorOf(known.key()) >= 0, qPrintable(known.key()));
}

void TestFloors::theRuleSeesAnIncludeOfAHigherFloor()
{
    QCOMPARE(violations({{QStringLiteral("core/a.cpp"),
                          {QStringLiteral("platform/b.h"), QStringLiteral("link/clsCommPort.h")}}}),
             QStringList{QStringLiteral("core/a.cpp includes link/clsCommPort.h")});
    QCOMPARE(violations({{QStringLiteral("device/a.cpp"), {QStringLiteral("link/clsCommPort.h")}}}),
             QStringList());
    QCOMPARE(
        violations({{QStringLiteral("device/a.cpp"), {QStringLiteral("link/ConnectToDevice.h")}}})
            .size(),
        1);
    QCOMPARE(
        quotedIncludes(QStringLiteral("#include <a>\n  # include \"b.h\"\n// #include \"c.h\"\n")),
        QStringList{QStringLiteral("b.h")});
}

void TestFloors::theRuleSeesACycle()
{
    const QString a = QStringLiteral("core/a.h");
    const QString b = QStringLiteral("core/b.h");
    const QString c = QStringLiteral("core/c.h");
    QCOMPARE(cycleIn({{a, {b, c}}, {b, {c}}, {c, {}}}), QStringList());
    QCOMPARE(cycleIn({{a, {b}}, {b, {c}}, {c, {b}}}).size(), 2);
    QCOMPARE(cycleIn({{a, {a}}}), QStringList{a});
}

void TestFloors::noFileIncludesWhatStandsAboveIt()
{
    const QStringList found = violations(all);
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("\n"))));
}

void TestFloors::includesFormNoCycle()
{
    const QStringList cycle = cycleIn(all);
    QVERIFY2(cycle.isEmpty(), qPrintable(cycle.join(QStringLiteral(" -> "))));
}

void TestFloors::everyIncludeIsOfAFileThatIsThere()
{
    QStringList missing;
    for (auto file = all.cbegin(); file != all.cend(); ++file)
        for (const QString &name : file.value())
            if (!all.contains(name))
                missing.append(file.key() + QStringLiteral(" includes ") + name);
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QStringLiteral("\n"))));
}

void TestFloors::theProgramAndTheSimulatorShareNoCode()
{
    static const QRegularExpression simulator(QStringLiteral(R"(^(\.\./)*sim/)"));
    static const QRegularExpression program(
        QStringLiteral(R"(^(\.\./)*(src/|platform/|core/|link/|device/|discovery/|ui/))"));
    QStringList found;
    const auto look = [&](const char *folder, const QRegularExpression &forbidden) {
        for (const QString &file : sourceFiles(QString::fromLatin1(folder)))
            for (const QString &name : quotedIncludes(contentsOf(file)))
                if (forbidden.match(name).hasMatch())
                    found.append(file + QStringLiteral(" includes ") + name);
    };
    QVERIFY(!sourceFiles(QStringLiteral("sim")).isEmpty());
    look("src", simulator);
    look("sim", program);
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("\n"))));
}

KELDOX_TEST(TestFloors)
#include "TestFloors.moc"
