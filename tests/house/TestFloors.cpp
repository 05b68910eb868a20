// The house is a tower of two wings: a file includes only files of its own folder or of those below
// it, no chain of includes or of folders comes back to where it began, and the unit's wing knows no
// windows.
#include "support/TestMain.h"

#include "Includes.h"
#include "SourceTree.h"

#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

class TestFloors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyFileStandsInAKnownFolder();
    void theRuleSeesAnIncludeOfAHigherFloor();
    void theRuleSeesAWindowInTheUnitsWing();
    void theUnitsWingKnowsNoWindows();
    void foldersFormNoCircle();
    void theRuleSeesACycle();
    void noFileIncludesWhatStandsAboveIt();
    void includesFormNoCycle();
    void everyIncludeIsOfAFileThatIsThere();
    void theProgramAndTheSimulatorShareNoCode();

private:
    using Includes = QHash<QString, QStringList>; // file to what it includes, below src/

    static QString folderOf(const QString &file);
    static const QMap<QString, QStringList> &below();
    static bool isOfUnitWing(const QString &file);
    static Includes betweenFolders(const Includes &includes);
    static QStringList forwardDeclarations(const QString &source);
    static QStringList violations(const Includes &includes);
    static QStringList cycleIn(const Includes &includes);

    Includes all;
    QSet<QString> classesAbove; // defined in the operator's wing
    const QSet<QString> windowsOfQt{QStringLiteral("QWidget"), QStringLiteral("QMainWindow"),
                                    QStringLiteral("QDialog"), QStringLiteral("QComboBox")};
};

// An include is written from src/ or beside the file itself.
static QString resolved(const QString &file, const QString &name)
{
    const QString beside = QFileInfo(file).path() + QLatin1Char('/') + name;
    if (sourceTree().exists(QStringLiteral("src/") + beside))
        return QDir::cleanPath(beside);
    return QDir::cleanPath(name);
}

// "ui/main" for ui/main/ProgramIcon.h; empty for main.cpp and what stands beside it.
QString TestFloors::folderOf(const QString &file)
{
    const auto end = file.lastIndexOf(QLatin1Char('/'));
    return end < 0 ? QString() : file.left(end);
}

// The folders that may be included from each one, beside itself.
const QMap<QString, QStringList> &TestFloors::below()
{
    static const QStringList unitWing{QStringLiteral("platform"), QStringLiteral("core"),
                                      QStringLiteral("port"), QStringLiteral("device"),
                                      QStringLiteral("discovery")};
    static const QMap<QString, QStringList> folders = [] {
        QMap<QString, QStringList> all;
        for (qsizetype i = 0; i < unitWing.size(); ++i)
            all[unitWing.at(i)] = unitWing.mid(0, i);
        all[QStringLiteral("widgets")] = unitWing.mid(0, 2);
        const QStringList underApp = unitWing + QStringList{QStringLiteral("widgets")};
        all[QStringLiteral("app")] = underApp;
        const QStringList underWindows = underApp + QStringList{QStringLiteral("app")};
        QStringList windows;
        for (const char *window : {"connect", "monitor", "dialogs", "channels"}) {
            windows.append(QStringLiteral("ui/") + QLatin1String(window));
            all[windows.last()] = underWindows;
        }
        all[QStringLiteral("ui/main")] =
            underWindows + QStringList{QStringLiteral("ui/connect"), QStringLiteral("ui/dialogs")};
        windows.append(QStringLiteral("ui/main"));
        all[QString()] = underWindows + windows;
        return all;
    }();
    return folders;
}

bool TestFloors::isOfUnitWing(const QString &file)
{
    return !folderOf(file).isEmpty() && !below().value(QStringLiteral("ui/main")).isEmpty() &&
           (folderOf(file) == QLatin1String("discovery") ||
            below().value(QStringLiteral("discovery")).contains(folderOf(file)));
}

QStringList TestFloors::violations(const Includes &includes)
{
    QStringList found;
    for (auto file = includes.cbegin(); file != includes.cend(); ++file) {
        const QString folder = folderOf(file.key());
        for (const QString &name : file.value())
            if (folderOf(name) != folder && !below().value(folder).contains(folderOf(name)))
                found.append(file.key() + QStringLiteral(" includes ") + name);
    }
    found.sort();
    return found;
}

// The same arrows between folders instead of files.
TestFloors::Includes TestFloors::betweenFolders(const Includes &includes)
{
    Includes arrows;
    for (auto file = includes.cbegin(); file != includes.cend(); ++file)
        for (const QString &name : file.value())
            if (folderOf(name) != folderOf(file.key()))
                arrows[folderOf(file.key())].append(folderOf(name));
    return arrows;
}

// Classes that the source only declares: "class frmMain_KeldoX2;".
QStringList TestFloors::forwardDeclarations(const QString &source)
{
    static const QRegularExpression line(QStringLiteral(R"(^\s*(?:class|struct)\s+(\w+)\s*;)"),
                                         QRegularExpression::MultilineOption);
    QStringList names;
    for (auto match = line.globalMatch(source); match.hasNext();)
        names.append(match.next().captured(1));
    return names;
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
    static const QRegularExpression definition(
        QStringLiteral(R"(^\s*(?:class|struct)\s+(\w+)[^;]*$)"),
        QRegularExpression::MultilineOption);
    for (auto file = all.cbegin(); file != all.cend(); ++file)
        if (!isOfUnitWing(file.key()) && file.key().endsWith(QLatin1String(".h")))
            for (auto match =
                     definition.globalMatch(contentsOf(QStringLiteral("src/") + file.key()));
                 match.hasNext();)
                classesAbove.insert(match.next().captured(1));
    QVERIFY(classesAbove.contains(QStringLiteral("MainWindowView")));
}

void TestFloors::everyFileStandsInAKnownFolder()
{
    for (auto known = all.cbegin(); known != all.cend(); ++known)
        QVERIFY2(below().contains(folderOf(known.key())), qPrintable(known.key()));
    QVERIFY(isOfUnitWing(QStringLiteral("platform/CommControl.h")));
    QVERIFY(isOfUnitWing(QStringLiteral("discovery/clsSeeker.h")));
    QVERIFY(!isOfUnitWing(QStringLiteral("widgets/UpDown.h")));
    QVERIFY(!isOfUnitWing(QStringLiteral("main.cpp")));
}

void TestFloors::theRuleSeesAnIncludeOfAHigherFloor()
{
    const auto isSeen = [](const char *file, const char *included) {
        return !violations({{QString::fromLatin1(file), {QString::fromLatin1(included)}}})
                    .isEmpty();
    };
    QVERIFY(isSeen("core/a.cpp", "port/clsCommPort.h"));
    QVERIFY(!isSeen("device/a.cpp", "port/clsCommPort.h"));
    QVERIFY(isSeen("discovery/a.cpp", "app/AppState.h"));
    QVERIFY(isSeen("core/a.cpp", "widgets/MessageBox.h"));
    QVERIFY(isSeen("widgets/a.cpp", "app/AppState.h"));
    QVERIFY(isSeen("app/a.cpp", "ui/main/frmMain_KeldoX2.h"));
    QVERIFY(isSeen("ui/channels/a.cpp", "ui/main/frmMain_KeldoX2.h"));
    QVERIFY(!isSeen("ui/main/a.cpp", "ui/dialogs/frmAbout.h"));
    QVERIFY(!isSeen("main.cpp", "ui/main/frmMain_KeldoX2.h"));
    QCOMPARE(
        quotedIncludes(QStringLiteral("#include <a>\n  # include \"b.h\"\n// #include \"c.h\"\n")),
        QStringList{QStringLiteral("b.h")});
}

void TestFloors::theRuleSeesAWindowInTheUnitsWing()
{
    QCOMPARE(windowHeaders(QStringLiteral("#include <QObject>\n#include <QWidget>\n"
                                          "#include <QtGui/QColor>\n#include <QSerialPort>\n"
                                          "#include <vector>\n")),
             (QStringList{QStringLiteral("QWidget"), QStringLiteral("QColor")}));
    QCOMPARE(forwardDeclarations(QStringLiteral("class A;\nclass B\n{\n};\n  struct C;\n")),
             (QStringList{QStringLiteral("A"), QStringLiteral("C")}));
}

void TestFloors::theUnitsWingKnowsNoWindows()
{
    QStringList found;
    for (auto file = all.cbegin(); file != all.cend(); ++file) {
        if (!isOfUnitWing(file.key()))
            continue;
        const QString source = contentsOf(QStringLiteral("src/") + file.key());
        for (const QString &header : windowHeaders(source))
            found.append(file.key() + QStringLiteral(" includes ") + header);
        // A name is enough to know somebody by. What tests answer with is named in one place.
        if (file.key() == QLatin1String("platform/TestHooks.h"))
            continue;
        for (const QString &name : forwardDeclarations(source))
            if (classesAbove.contains(name) || windowsOfQt.contains(name))
                found.append(file.key() + QStringLiteral(" declares ") + name);
        if (source.contains(QRegularExpression(QStringLiteral(R"(\bapp\(\))"))))
            found.append(file.key() + QStringLiteral(" asks the application's state"));
    }
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("\n"))));
}

void TestFloors::foldersFormNoCircle()
{
    const QStringList cycle = cycleIn(betweenFolders(all));
    QVERIFY2(cycle.isEmpty(), qPrintable(cycle.join(QStringLiteral(" -> "))));
    // Two files of two folders, each of which knows one of the other.
    QVERIFY(!cycleIn(betweenFolders({{QStringLiteral("core/a.h"), {QStringLiteral("port/b.h")}},
                                     {QStringLiteral("port/c.h"), {QStringLiteral("core/d.h")}}}))
                 .isEmpty());
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
    static const QRegularExpression program(QStringLiteral(
        R"(^(\.\./)*(src/|platform/|core/|port/|device/|discovery/|widgets/|app/|ui/))"));
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
