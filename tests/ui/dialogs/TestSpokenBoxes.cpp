// What screen readers hear of entry and message boxes, and how the keyboard answers them.
#include "support/Fixture.h"
#include "support/Hand.h"
#include "support/Heard.h"
#include "support/TestMain.h"

#include "platform/TestHooks.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui/dialogs/frmPasswordBox.h"

class TestSpokenBoxes : public QObject
{
    Q_OBJECT

private slots:
    void anInputBoxIsHeard();
    void aPasswordBoxIsHeardWithoutItsPassword();
    void aMessageBoxIsHeard();
    void aMessageBoxIsAnsweredByItsMnemonics_data();
    void aMessageBoxIsAnsweredByItsMnemonics();
};

static QLineEdit *entryOf(QWidget *dialog)
{
    return dialog->findChild<QLineEdit *>(QStringLiteral("Text1"));
}

void TestSpokenBoxes::anInputBoxIsHeard()
{
    const Fixture fixture;
    frmInputBox box;
    box.setText(QStringLiteral("Polling interval in ms"));
    box.setDefaultValue(QStringLiteral("500"));
    const Hand hand([](QWidget *dialog) {
        QCOMPARE(unheard(*dialog), QStringList());
        QCOMPARE(heardName(dialog), dialog->windowTitle());
        QCOMPARE(heardName(entryOf(dialog)), QStringLiteral("Polling interval in ms"));
        QCOMPARE(heard(entryOf(dialog))->text(QAccessible::Value), QStringLiteral("500"));
        QTRY_VERIFY(entryOf(dialog)->hasFocus());
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    box.showModal();
    QVERIFY(hand.acted);
    QCOMPARE(box.answerStatus(), std::int16_t{frmInputBox::Entered});
}

void TestSpokenBoxes::aPasswordBoxIsHeardWithoutItsPassword()
{
    const Fixture fixture;
    frmPasswordBox box;
    box.setHidePasswordChars(true);
    const Hand hand([](QWidget *dialog) {
        QTest::keyClicks(entryOf(dialog), QStringLiteral("secret"));
        QCOMPARE(heardName(entryOf(dialog)), QStringLiteral("Password"));
        QVERIFY(heard(entryOf(dialog))->state().passwordEdit);
        QVERIFY(!heard(entryOf(dialog))->text(QAccessible::Value).contains(QLatin1Char('s')));
        for (const char *name : {"OKButton", "CancelButton", "Label1"})
            QCOMPARE(faultOf(*dialog->findChild<QWidget *>(QString::fromLatin1(name))), QString());
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    box.showModal();
    QVERIFY(hand.acted);
    QCOMPARE(box.result(), QStringLiteral("secret"));
}

void TestSpokenBoxes::aMessageBoxIsHeard()
{
    const Fixture fixture;
    TestHooks::answerBoxes({}); // the real box
    QStringList told;
    const Hand hand([&](QWidget *dialog) {
        QCOMPARE(heard(dialog)->role(), QAccessible::AlertMessage);
        QCOMPARE(heardName(dialog), QStringLiteral("KELDO-X Control Program"));
        for (QLabel *label : dialog->findChildren<QLabel *>())
            if (label->isVisible() && !label->text().isEmpty())
                told.append(heardName(label));
        for (QPushButton *button : dialog->findChildren<QPushButton *>())
            QCOMPARE(faultOf(*button), QString());
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    MessageBox::show({QStringLiteral("No unit & none found."), MessageBox::Exclamation,
                      QStringLiteral("KELDO-X Control Program"), QStringLiteral("COM4: in use.")});
    QVERIFY(hand.acted);
    QCOMPARE(told, QStringList(
                       {QStringLiteral("No unit & none found."), QStringLiteral("COM4: in use.")}));
}

void TestSpokenBoxes::aMessageBoxIsAnsweredByItsMnemonics_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<MessageBox::Answer>("answer");
    QTest::newRow("yes") << Qt::Key_Y << MessageBox::Answer::Yes;
    QTest::newRow("no") << Qt::Key_N << MessageBox::Answer::No;
    QTest::newRow("cancel") << Qt::Key_Escape << MessageBox::Answer::Cancel;
}

void TestSpokenBoxes::aMessageBoxIsAnsweredByItsMnemonics()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const MessageBox::Answer, answer);
    const Fixture fixture;
    TestHooks::answerBoxes({});
    const Hand hand([&](QWidget *dialog) {
        QVERIFY(QTest::qWaitForWindowActive(dialog)); // else it hears no mnemonic
        QTest::keyClick(dialog, key, key == Qt::Key_Escape ? Qt::NoModifier : Qt::AltModifier);
    });
    QCOMPARE(MessageBox::show(QStringLiteral("There is no password. Do you want to set one?"),
                              MessageBox::YesNoCancel | MessageBox::Question),
             answer);
}

KELDOX_TEST(TestSpokenBoxes)
#include "TestSpokenBoxes.moc"
