// The console tool stands on the unit's wing: it knows no window and no simulator, connects to a
// receiver in one place, and listens nowhere.
#include "support/TestMain.h"

#include "Includes.h"
#include "SourceTree.h"

class TestCtlFloors : public QObject
{
    Q_OBJECT

private slots:
    void theConsoleToolStandsOnTheUnitsWing();
    void theRuleSeesAWindowInTheConsoleTool();
    void theConsoleToolIsLinkedToTheUnitsWing();
    void theProgramConnectsToNoNetwork();

private:
    static QStringList breachesOfTool(const QString &file, const QString &source);
};

// The tool's own files and the unit's wing; of Qt no windows, and the network for following alone.
QStringList TestCtlFloors::breachesOfTool(const QString &file, const QString &source)
{
    static const QStringList allowed{QStringLiteral("ctl"),    QStringLiteral("platform"),
                                     QStringLiteral("core"),   QStringLiteral("port"),
                                     QStringLiteral("device"), QStringLiteral("discovery")};
    QStringList found;
    for (const QString &name : quotedIncludes(source))
        if (!isGenerated(name) && !allowed.contains(name.section(QLatin1Char('/'), 0, -2)))
            found.append(file + QStringLiteral(" includes ") + name);
    static const QRegularExpression network(
        QStringLiteral(R"(<(?:QtNetwork/)?Q(Tcp|Abstract)Socket>)"));
    const bool mayConnect = file.startsWith(QLatin1String("ctl/Receiver."));
    QString others = source;
    if (mayConnect)
        others.remove(network);
    for (const QString &header : windowHeaders(others))
        found.append(file + QStringLiteral(" includes ") + header);
    if (source.contains(QLatin1String("QTcpServer")) || source.contains(QLatin1String("listen(")))
        found.append(file + QStringLiteral(" listens"));
    return found;
}

void TestCtlFloors::theConsoleToolStandsOnTheUnitsWing()
{
    const QStringList files = sourceFiles(QStringLiteral("ctl"));
    QVERIFY(files.size() > 10);
    QStringList found;
    for (const QString &file : files)
        found.append(breachesOfTool(file, contentsOf(file)));
    QVERIFY2(found.isEmpty(), qPrintable(found.join(QStringLiteral("\n"))));
    // And nobody knows the tool.
    for (const char *folder : {"src", "sim"})
        for (const QString &file : sourceFiles(QString::fromLatin1(folder)))
            for (const QString &name : quotedIncludes(contentsOf(file)))
                QVERIFY2(!name.contains(QLatin1String("ctl/")), qPrintable(file));
}

void TestCtlFloors::theRuleSeesAWindowInTheConsoleTool()
{
    const auto isSeen = [](const char *file, const char *line) {
        return !breachesOfTool(QString::fromLatin1(file), QString::fromLatin1(line)).isEmpty();
    };
    QVERIFY(!isSeen("ctl/a.cpp", "#include \"ctl/b.h\"\n#include \"device/clsKeldoX.h\"\n"));
    QVERIFY(!isSeen("ctl/a.cpp", "#include \"platform/EndRequests.h\"\n#include \"a.moc\"\n"));
    for (const char *window : {"widgets/MessageBox.h", "app/AppState.h", "ui/main/Presets.h",
                               "sim/SimulatedLine.h", "windowMakers.h"})
        QVERIFY2(isSeen("ctl/a.cpp",
                        qPrintable(QStringLiteral("#include \"%1\"").arg(QLatin1String(window)))),
                 window);
    QVERIFY(isSeen("ctl/a.cpp", "#include <QApplication>"));
    QVERIFY(isSeen("ctl/a.cpp", "#include <QTcpSocket>"));
    QVERIFY(!isSeen("ctl/Receiver.h", "#include <QTcpSocket>"));
    QVERIFY(isSeen("ctl/Receiver.cpp", "#include <QTcpServer>"));
}

void TestCtlFloors::theConsoleToolIsLinkedToTheUnitsWing()
{
    static const QRegularExpression link(
        QStringLiteral(R"(target_link_libraries\(keldo-x-ctl PRIVATE ([^)]*)\))"));
    const QString build = contentsOf(QStringLiteral("ctl/CMakeLists.txt"));
    QStringList libraries;
    for (auto match = link.globalMatch(build); match.hasNext();)
        libraries.append(match.next().captured(1).split(QLatin1Char(' ')));
    QCOMPARE(libraries,
             (QStringList{QStringLiteral("keldox_discovery"), QStringLiteral("Qt6::Network")}));
    QVERIFY(!contentsOf(QStringLiteral("src/CMakeLists.txt")).contains(QLatin1String("Network")));
}

// Neither does it listen: what it opens are serial ports and files.
void TestCtlFloors::theProgramConnectsToNoNetwork()
{
    static const QRegularExpression network(QStringLiteral(
        R"(Q(Tcp|Udp|Abstract|Local|Ssl)(Socket|Server)|QNetwork\w+|QHostAddress|<sys/socket\.h>)"));
    QVERIFY(network.match(QStringLiteral("#include <QTcpSocket>")).hasMatch());
    QVERIFY(network.match(QStringLiteral("QNetworkAccessManager web;")).hasMatch());
    for (const QString &file : sourceFiles(QStringLiteral("src")))
        QVERIFY2(!network.match(contentsOf(file)).hasMatch(), qPrintable(file));
}

KELDOX_TEST(TestCtlFloors)
#include "TestCtlFloors.moc"
