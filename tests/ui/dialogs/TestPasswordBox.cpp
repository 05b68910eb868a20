// The password box by itself, answered in every way there is.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "ui/dialogs/frmPasswordBox.h"

#include <QtWidgets>

class TestPasswordBox : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void loadingEmptiesAndShowsItsTexts();
    void okKeepsTheText_data();
    void okKeepsTheText();
    void anEmptyPasswordIsAnAnswer();
    void cancelIsOneAndKeepsNothing_data();
    void cancelIsOneAndKeepsNothing();
    void closingByTheFrameIsNoAnswer();
    void charactersCanBeHiddenBehindStars();
    void theBoxIsModalAndTheEntryHasTheFocus();
    void theEndOfTheProgramClosesTheBox();
    void whileTheProgramEndsTheBoxDoesNotOpen();

private:
    template <class Action> static void answer(frmPasswordBox &box, Action action)
    {
        QTimer::singleShot(50, &box, [action] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog);
            action(*dialog);
        });
        box.showModal();
        QVERIFY(!QApplication::activeModalWidget());
    }
    static QLineEdit *entry(QWidget &dialog)
    {
        return dialog.findChild<QLineEdit *>(QStringLiteral("Text1"));
    }
    static QPushButton *button(QWidget &dialog, const char *name)
    {
        return dialog.findChild<QPushButton *>(QString::fromLatin1(name));
    }
};

// Qt's own loops start again only when the application runs once more.
void TestPasswordBox::init()
{
    TestHooks::takeBackEnding();
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    QApplication::exec();
}

void TestPasswordBox::loadingEmptiesAndShowsItsTexts()
{
    const Fixture fixture;
    frmPasswordBox box;
    QCOMPARE(box.answerStatus(), std::int16_t{2});
    QCOMPARE(box.result(), QString());
    answer(box, [](QWidget &dialog) {
        QCOMPARE(dialog.objectName(), QStringLiteral("frmPasswordBox"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("  KELDO-X Control Program"));
        QCOMPARE(dialog.findChild<QLabel *>(QStringLiteral("Label1"))->text(),
                 QStringLiteral("Password"));
        QCOMPARE(entry(dialog)->text(), QString());
        QCOMPARE(entry(dialog)->echoMode(), QLineEdit::Normal);
        QCOMPARE(button(dialog, "OKButton")->text(), QStringLiteral("OK"));
        QCOMPARE(button(dialog, "CancelButton")->text(), QStringLiteral("Cancel"));
        QCOMPARE(dialog.font().family(), QStringLiteral("Arial"));
        dialog.close();
    });
}

void TestPasswordBox::okKeepsTheText_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::addRow("mouse") << false;
    QTest::addRow("enter") << true;
}

void TestPasswordBox::okKeepsTheText()
{
    QFETCH(const bool, byKey);
    const Fixture fixture;
    frmPasswordBox box;
    answer(box, [byKey](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral(" Open Sesame "));
        if (byKey)
            QTest::keyClick(entry(dialog), Qt::Key_Return);
        else
            QTest::mouseClick(button(dialog, "OKButton"), Qt::LeftButton);
    });
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.result(), QStringLiteral(" Open Sesame "));
}

void TestPasswordBox::anEmptyPasswordIsAnAnswer()
{
    const Fixture fixture;
    frmPasswordBox box;
    answer(box, [](QWidget &dialog) { button(dialog, "OKButton")->click(); });
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.result(), QString());
}

void TestPasswordBox::cancelIsOneAndKeepsNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::addRow("mouse") << false;
    QTest::addRow("escape") << true;
}

void TestPasswordBox::cancelIsOneAndKeepsNothing()
{
    QFETCH(const bool, byKey);
    const Fixture fixture;
    frmPasswordBox box;
    answer(box, [byKey](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("secret"));
        if (byKey)
            QTest::keyClick(entry(dialog), Qt::Key_Escape);
        else
            QTest::mouseClick(button(dialog, "CancelButton"), Qt::LeftButton);
    });
    QCOMPARE(box.answerStatus(), std::int16_t{1});
    QCOMPARE(box.result(), QString());
}

void TestPasswordBox::closingByTheFrameIsNoAnswer()
{
    const Fixture fixture;
    frmPasswordBox box;
    answer(box, [](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("secret"));
        dialog.close();
    });
    QCOMPARE(box.answerStatus(), std::int16_t{2});
    QCOMPARE(box.result(), QString());
}

void TestPasswordBox::charactersCanBeHiddenBehindStars()
{
    const Fixture fixture;
    frmPasswordBox box;
    box.setHidePasswordChars(true);
    answer(box, [](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("abc"));
        QCOMPARE(entry(dialog)->displayText(), QStringLiteral("***"));
        button(dialog, "OKButton")->click();
    });
    QCOMPARE(box.result(), QStringLiteral("abc"));
    box.setHidePasswordChars(false);
    answer(box, [](QWidget &dialog) {
        QCOMPARE(entry(dialog)->displayText(), QStringLiteral("abc"));
        dialog.close();
    });
}

void TestPasswordBox::theBoxIsModalAndTheEntryHasTheFocus()
{
    const Fixture fixture;
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    frmPasswordBox box;
    answer(box, [&](QWidget &dialog) {
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.parentWidget(), &window);
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(entry(dialog)->hasFocus());
        button(dialog, "CancelButton")->setFocus();
        dialog.close();
    });
    // Shown once more, the entry has the focus again.
    answer(box, [](QWidget &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(entry(dialog)->hasFocus());
        dialog.close();
    });
}

void TestPasswordBox::theEndOfTheProgramClosesTheBox()
{
    const Fixture fixture;
    frmPasswordBox box;
    QElapsedTimer time;
    answer(box, [&](QWidget &) {
        time.start();
        EventQueue::endProgram();
    });
    QVERIFY(time.elapsed() < 200);
    QCOMPARE(box.answerStatus(), std::int16_t{2});
}

void TestPasswordBox::whileTheProgramEndsTheBoxDoesNotOpen()
{
    const Fixture fixture;
    EventQueue::endProgram();
    frmPasswordBox box;
    box.showModal();
    QCOMPARE(box.answerStatus(), std::int16_t{2});
}

KELDOX_TEST(TestPasswordBox)
#include "TestPasswordBox.moc"
