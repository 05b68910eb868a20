// Runs every registered test class against a fresh user's folders, so that no test sees or
// changes the presets, ports and settings of the person who runs it.
#include "support/TestMain.h"

#include <QApplication>
#include <QTemporaryDir>

static QList<TestFactory> &factories()
{
    static QList<TestFactory> all;
    return all;
}

bool registerTest(TestFactory factory)
{
    factories().append(std::move(factory));
    return true;
}

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A crash is to end the run at once, not to wait for a debugger.
    qputenv("QTEST_DISABLE_STACK_DUMP", "1");
    QLocale::setDefault(QLocale::c());
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("KELDO-X Control Program"));
    QApplication::setQuitOnLastWindowClosed(false);

    // "-class Name" runs one class alone; everything else goes to Qt Test.
    QStringList arguments = QApplication::arguments();
    QString only;
    if (const auto at = arguments.indexOf(QStringLiteral("-class"));
        at > 0 && at + 1 < arguments.size()) {
        only = arguments.at(at + 1);
        arguments.remove(at, 2);
    }

    // "-first-failure" ends after the first class that fails.
    const bool endsEarly = arguments.removeAll(QStringLiteral("-first-failure")) > 0;

    int failures = 0;
    int classes = 0;
    for (const TestFactory &make : std::as_const(factories())) {
        const std::unique_ptr<QObject> test = make();
        if (!only.isEmpty() && only != QLatin1String(test->metaObject()->className()))
            continue;
        ++classes;
        failures += QTest::qExec(test.get(), arguments);
        if (endsEarly && failures > 0)
            break;
    }
    return classes == 0 ? 1 : qMin(failures, 125);
}
