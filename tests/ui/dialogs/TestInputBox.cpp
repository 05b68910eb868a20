// The input box by itself: every kind of answer, every way to close it.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "ui/dialogs/frmInputBox.h"

#include <QtWidgets>

class TestInputBox : public QObject
{
    Q_OBJECT

private slots:
    void loadingShowsItsTexts();
    void textIsThePromptAndNotTheEntry();
    void aNumberIsConverted_data();
    void aNumberIsConverted();
    void aNumberThatIsNoneGivesTheDefault_data();
    void aNumberThatIsNoneGivesTheDefault();
    void theDefaultIsKeptThoughTheEntryWasEdited();
    void textIsKeptAsTyped();
    void anyOtherKindIsANumberIfTheTextIsOne_data();
    void anyOtherKindIsANumberIfTheTextIsOne();
    void anAddressIsKeptAsTyped();
    void aWrongAddressIsRefusedAndTheBoxStays();
    void cancelIsOneAndKeepsNothing_data();
    void cancelIsOneAndKeepsNothing();
    void closingByTheFrameIsNoAnswer();
    void enterIsOK();
    void charactersCanBeHiddenBehindStars();
    void theEntryTakesTheWidthThatIsGiven();
    void theTestButtonDoesNothing();
    void theBoxIsModalAndTheEntryHasTheFocus();
};

static QLineEdit *entry(QWidget &dialog)
{
    return dialog.findChild<QLineEdit *>(QStringLiteral("Text1"));
}

static QPushButton *button(QWidget &dialog, const char *name)
{
    return dialog.findChild<QPushButton *>(QString::fromLatin1(name));
}

template <class Action> static void answer(frmInputBox &box, Action action)
{
    QTimer::singleShot(20, &box, [action] {
        QWidget *dialog = QApplication::activeModalWidget();
        QVERIFY(dialog);
        action(*dialog);
    });
    box.showModal();
    QVERIFY(!QApplication::activeModalWidget());
}

static void typeAndAccept(frmInputBox &box, const QString &text)
{
    answer(box, [text](QWidget &dialog) {
        QTest::keyClick(entry(dialog), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(entry(dialog), Qt::Key_Delete);
        QTest::keyClicks(entry(dialog), text);
        QTest::mouseClick(button(dialog, "OKButton"), Qt::LeftButton);
    });
}

void TestInputBox::loadingShowsItsTexts()
{
    const Fixture fixture;
    frmInputBox box;
    QCOMPARE(box.answerStatus(), std::int16_t{2});
    answer(box, [](QWidget &dialog) {
        QCOMPARE(dialog.objectName(), QStringLiteral("frmInputBox"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("  KELDO-X Control Program"));
        QCOMPARE(entry(dialog)->text(), QString());
        QCOMPARE(entry(dialog)->echoMode(), QLineEdit::Normal);
        QCOMPARE(button(dialog, "OKButton")->text(), QStringLiteral("OK"));
        QCOMPARE(button(dialog, "CancelButton")->text(), QStringLiteral("Cancel"));
        QCOMPARE(button(dialog, "cmdUnittest")->text(), QStringLiteral("test"));
        QCOMPARE(dialog.font().family(), QStringLiteral("Arial"));
        dialog.close();
    });
}

void TestInputBox::textIsThePromptAndNotTheEntry()
{
    const Fixture fixture;
    frmInputBox box;
    box.setDefaultValue(QStringLiteral("1000"));
    box.setText(QStringLiteral("Enter <b>milliseconds</b>"));
    answer(box, [](QWidget &dialog) {
        const auto *prompt = dialog.findChild<QLabel *>(QStringLiteral("Label1"));
        QCOMPARE(prompt->text(), QStringLiteral("Enter <b>milliseconds</b>"));
        QCOMPARE(prompt->textFormat(), Qt::PlainText);
        QCOMPARE(entry(dialog)->text(), QStringLiteral("1000"));
        dialog.close();
    });
}

void TestInputBox::aNumberIsConverted_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("1e2") << 100.0;
    QTest::newRow("-2.5") << -2.5;
    QTest::newRow(" 7 ") << 7.0;
    QTest::newRow("&H10") << 16.0;
}

void TestInputBox::aNumberIsConverted()
{
    QFETCH(const double, value);
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(1);
    box.setDefaultValue(QStringLiteral("5"));
    typeAndAccept(box, QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.result(), frmInputBox::Result(value));
}

void TestInputBox::aNumberThatIsNoneGivesTheDefault_data()
{
    QTest::addColumn<QString>("defaultValue");
    QTest::addColumn<double>("value");
    QTest::newRow("5") << "5" << 5.0;
    QTest::newRow("none given") << QString() << 0.0;
    QTest::newRow("empty") << "" << 0.0;
}

void TestInputBox::aNumberThatIsNoneGivesTheDefault()
{
    QFETCH(const QString, defaultValue);
    QFETCH(const double, value);
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(1);
    if (!defaultValue.isNull())
        box.setDefaultValue(defaultValue);
    typeAndAccept(box, QStringLiteral("abc"));
    QCOMPARE(box.answerStatus(), std::int16_t{0}); // never refused
    QCOMPARE(box.result(), frmInputBox::Result(value));
}

void TestInputBox::theDefaultIsKeptThoughTheEntryWasEdited()
{
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(1);
    box.setDefaultValue(QStringLiteral("5"));
    typeAndAccept(box, QStringLiteral("8"));
    QCOMPARE(box.result(), frmInputBox::Result(8.0));
    typeAndAccept(box, QString());
    QCOMPARE(box.result(), frmInputBox::Result(5.0));
}

void TestInputBox::textIsKeptAsTyped()
{
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(2);
    for (const auto &text : {QStringLiteral(" Two words "), QStringLiteral("007"), QString()}) {
        typeAndAccept(box, text);
        QCOMPARE(box.answerStatus(), std::int16_t{0});
        QCOMPARE(std::get<QString>(box.result()), text);
        QCOMPARE(box.resultText(), text);
    }
}

void TestInputBox::anyOtherKindIsANumberIfTheTextIsOne_data()
{
    QTest::addColumn<int>("kind");
    for (const int kind : {0, 4, -1})
        QTest::addRow("%d", kind) << kind;
}

void TestInputBox::anyOtherKindIsANumberIfTheTextIsOne()
{
    QFETCH(const int, kind);
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(static_cast<std::int16_t>(kind));
    box.setDefaultValue(QStringLiteral("5"));
    typeAndAccept(box, QStringLiteral("1e2"));
    QCOMPARE(box.result(), frmInputBox::Result(100.0));
    QCOMPARE(box.resultText(), QStringLiteral("100"));
    typeAndAccept(box, QStringLiteral("1e2x"));
    QCOMPARE(box.result(), frmInputBox::Result(QStringLiteral("1e2x")));
}

void TestInputBox::anAddressIsKeptAsTyped()
{
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(3);
    typeAndAccept(box, QStringLiteral("10.0.0.1"));
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.result(), frmInputBox::Result(QStringLiteral("10.0.0.1")));
}

void TestInputBox::aWrongAddressIsRefusedAndTheBoxStays()
{
    Fixture fixture;
    fixture.boxes.expect(QStringLiteral("IP addresses must be in the form  x.x.x.x  where x is an "
                                        "integer from 0 to 255"),
                         MessageBox::Exclamation);
    frmInputBox box;
    box.setResultType(3);
    answer(box, [&](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("10.0.0"));
        button(dialog, "OKButton")->click();
        QVERIFY(dialog.isVisible());
        QCOMPARE(box.answerStatus(), std::int16_t{2});
        QTest::keyClicks(entry(dialog), QStringLiteral(".9"));
        button(dialog, "OKButton")->click();
    });
    QCOMPARE(fixture.boxes.shown().value(0).title, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.resultText(), QStringLiteral("10.0.0.9"));
}

void TestInputBox::cancelIsOneAndKeepsNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("mouse") << false;
    QTest::newRow("Escape") << true;
}

void TestInputBox::cancelIsOneAndKeepsNothing()
{
    QFETCH(const bool, byKey);
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(2);
    typeAndAccept(box, QStringLiteral("before"));
    answer(box, [byKey](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("new"));
        if (byKey)
            QTest::keyClick(entry(dialog), Qt::Key_Escape);
        else
            QTest::mouseClick(button(dialog, "CancelButton"), Qt::LeftButton);
    });
    QCOMPARE(box.answerStatus(), std::int16_t{1});
    QCOMPARE(box.resultText(), QStringLiteral("before"));
}

void TestInputBox::closingByTheFrameIsNoAnswer()
{
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(2);
    typeAndAccept(box, QStringLiteral("before"));
    answer(box, [](QWidget &dialog) { dialog.close(); });
    QCOMPARE(box.answerStatus(), std::int16_t{2});
}

void TestInputBox::enterIsOK()
{
    const Fixture fixture;
    frmInputBox box;
    answer(box, [](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("12"));
        QTest::keyClick(entry(dialog), Qt::Key_Return);
    });
    QCOMPARE(box.answerStatus(), std::int16_t{0});
    QCOMPARE(box.result(), frmInputBox::Result(12.0));
}

void TestInputBox::charactersCanBeHiddenBehindStars()
{
    const Fixture fixture;
    frmInputBox box;
    box.setResultType(2);
    box.setHidePasswordChars(true);
    answer(box, [](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("abc"));
        QCOMPARE(entry(dialog)->displayText(), QStringLiteral("***"));
        button(dialog, "OKButton")->click();
    });
    QCOMPARE(box.resultText(), QStringLiteral("abc"));
    box.setHidePasswordChars(false);
    answer(box, [](QWidget &dialog) {
        QCOMPARE(entry(dialog)->displayText(), QStringLiteral("abc"));
        dialog.close();
    });
}

void TestInputBox::theEntryTakesTheWidthThatIsGiven()
{
    const Fixture fixture;
    frmInputBox box;
    box.setInputBoxWidth(417);
    answer(box, [](QWidget &dialog) {
        QCOMPARE(entry(dialog)->width(), 417);
        dialog.close();
    });
}

void TestInputBox::theTestButtonDoesNothing()
{
    const Fixture fixture;
    frmInputBox box;
    answer(box, [&](QWidget &dialog) {
        QTest::keyClicks(entry(dialog), QStringLiteral("abc"));
        button(dialog, "cmdUnittest")->click();
        QVERIFY(dialog.isVisible());
        QCOMPARE(entry(dialog)->text(), QStringLiteral("abc"));
        QCOMPARE(box.answerStatus(), std::int16_t{2});
        dialog.close();
    });
}

void TestInputBox::theBoxIsModalAndTheEntryHasTheFocus()
{
    const Fixture fixture;
    frmInputBox box;
    answer(box, [](QWidget &dialog) {
        QVERIFY(dialog.isModal());
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(entry(dialog)->hasFocus());
        dialog.close();
    });
}

KELDOX_TEST(TestInputBox)
#include "TestInputBox.moc"
