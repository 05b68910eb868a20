// What the page on trust says of tests is so: each one that it names exists, and each step of
// tools/trust has its row.
#include "support/TestMain.h"

#include "SourceTree.h"

#include <QRegularExpression>

class TestTrustPage : public QObject
{
    Q_OBJECT

private slots:
    void everyTestThatIsNamedExists();
    void everyStepHasItsRow();
};

static QStringList all(const QString &text, const char *pattern)
{
    const QRegularExpression wanted(QString::fromLatin1(pattern),
                                    QRegularExpression::MultilineOption);
    QStringList found;
    for (auto match = wanted.globalMatch(text); match.hasNext();)
        found.append(match.next().captured(1));
    return found;
}

void TestTrustPage::everyTestThatIsNamedExists()
{
    const QString page = contentsOf(QStringLiteral("docs/trust.md"));
    const QStringList tests = all(page, "`([a-z/]+/Test[A-Za-z]+)`");
    const QStringList fuzzers = all(page, "`(fuzz/[A-Z][A-Za-z]+)`");
    QVERIFY(tests.size() > 10 && fuzzers.size() > 2);
    for (const QString &test : tests)
        QVERIFY2(contentsOf(QStringLiteral("tests/%1.cpp").arg(test))
                     .contains(
                         QStringLiteral("KELDOX_TEST(%1)").arg(test.section(QLatin1Char('/'), -1))),
                 qPrintable(test));
    for (const QString &fuzzer : fuzzers)
        QVERIFY2(!contentsOf(fuzzer + QStringLiteral(".cpp")).isEmpty(), qPrintable(fuzzer));
}

void TestTrustPage::everyStepHasItsRow()
{
    const QString page = contentsOf(QStringLiteral("docs/trust.md"));
    const QStringList rows =
        all(contentsOf(QStringLiteral("tools/trust")), R"re(\b(?:row|soak) "([A-Z][^"]+)")re");
    QVERIFY(rows.size() >= 13);
    for (const QString &row : rows)
        QVERIFY2(page.contains(QStringLiteral("\n| %1 | ").arg(row)), qPrintable(row));
}

KELDOX_TEST(TestTrustPage)
#include "TestTrustPage.moc"
