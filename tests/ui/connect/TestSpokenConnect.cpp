// What screen readers hear in the connect-to-port dialog, and how the keyboard reaches its
// controls.
#include "ConnectDialogBench.h"
#include "support/DeniedLine.h"
#include "support/Heard.h"
#include "support/TestMain.h"

class TestSpokenConnect : public QObject
{
    Q_OBJECT

private slots:
    void everyControlAndLineIsHeard();
    void mnemonicsReachTheControls();
    void theTabOrderFollowsTheEye();
};

void TestSpokenConnect::everyControlAndLineIsHeard()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    const QString device = QString::fromStdString(bench.line(4).device());
    DeniedLine::install(device);
    app().foundUnits = 1;
    frmConnectToComport dialog;
    open(dialog, [&] {
        QCOMPARE(unheard(dialog), QStringList());
        QCOMPARE(heardName(&dialog), QStringLiteral("KELDO-X Control Program"));
        QCOMPARE(heardName(&tovinR(dialog)), QStringLiteral("Unit is an addressable Tovin-R"));
        for (const char *line : {"lblDevice", "lblRefused", "lblLetGo"}) {
            auto *label = dialog.findChild<QLabel *>(QString::fromLatin1(line));
            QVERIFY2(label->isVisible(), line);
            QCOMPARE(heardName(label), label->text());
        }
        dialog.reject();
    });
}

void TestSpokenConnect::mnemonicsReachTheControls()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] {
        const QStringList keys = mnemonicsIn(dialog);
        QVERIFY(keys.contains(QStringLiteral("Alt+P")) && keys.contains(QStringLiteral("Alt+T")));
        QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
        QTest::keyClick(&dialog, Qt::Key_T, Qt::AltModifier);
        QTRY_VERIFY(tovinR(dialog).isChecked());
        tovinR(dialog).setFocus();
        QTest::keyClick(&dialog, Qt::Key_P, Qt::AltModifier);
        QVERIFY(dialog.comboComPort().hasFocus());
        dialog.reject();
    });
}

void TestSpokenConnect::theTabOrderFollowsTheEye()
{
    SearchBench bench;
    bench.line(1);
    bench.line(2);
    frmConnectToComport dialog;
    open(dialog, [&] {
        QStringList order{dialog.focusWidget()->objectName()};
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            order.append(dialog.focusWidget()->objectName());
        }
        QCOMPARE(order, QStringList({QStringLiteral("comboComPort"), QStringLiteral("chkTovinR"),
                                     QStringLiteral("OKButton"), QStringLiteral("CancelButton")}));
        dialog.reject();
    });
}

KELDOX_TEST(TestSpokenConnect)
#include "TestSpokenConnect.moc"
