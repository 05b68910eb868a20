// Boxes over the real main window that goes while they are open, and boxes over boxes.
#include "MainBench.h"

#include "platform/TestHooks.h"
#include "support/Hand.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui/dialogs/frmPasswordBox.h"

class TestBoxesOverMain : public QObject
{
    Q_OBJECT

private slots:
    void theMainWindowGoesFirst_data();
    void theMainWindowGoesFirst();
    void aRefusalsPasswordBoxEndsWithTheProgram();
    void theLowerBoxGoesFirst_data();
    void theLowerBoxGoesFirst();
    void aRefusedAddressIsToldOverItsBox();
};

namespace {

enum class Shown { Message, Question, Input, Password };

// Shows it and tells what it answered: OK, or not.
bool answersOk(Shown box)
{
    frmInputBox input;
    frmPasswordBox password;
    switch (box) {
    case Shown::Message:
        return MessageBox::show(QStringLiteral("text"), MessageBox::Exclamation) ==
               MessageBox::Answer::Ok;
    case Shown::Question:
        return MessageBox::show(QStringLiteral("text"), MessageBox::YesNoCancel) ==
               MessageBox::Answer::Yes;
    case Shown::Input:
        input.showModal();
        return input.answerStatus() == frmInputBox::Entered;
    default:
        password.showModal();
        return password.answerStatus() == frmPasswordBox::Entered;
    }
}

} // namespace

void TestBoxesOverMain::theMainWindowGoesFirst_data()
{
    QTest::addColumn<int>("box");
    QTest::addColumn<bool>("destroyed");
    const QList<QPair<const char *, Shown>> boxes{{"message", Shown::Message},
                                                  {"question", Shown::Question},
                                                  {"input", Shown::Input},
                                                  {"password", Shown::Password}};
    for (const auto &box : boxes)
        for (const bool destroyed : {false, true})
            QTest::addRow("%s, %s", box.first, destroyed ? "destroyed" : "closed")
                << static_cast<int>(box.second) << destroyed;
}

// Its end is the end of the program, which leaves no box open.
void TestBoxesOverMain::theMainWindowGoesFirst()
{
    QFETCH(const int, box);
    QFETCH(const bool, destroyed);
    ConnectedBench bench;
    TestHooks::answerBoxes({}); // from here on the real boxes
    QPointer<QWidget> shown;
    const Hand hand([&](QWidget *dialog) {
        shown = dialog;
        QCOMPARE(dialog->parentWidget(), bench.window.get());
        if (!destroyed) {
            bench.window->close();
            return;
        }
        app().mainWindow.reset();
        bench.window.reset();
    });
    const bool ok = answersOk(static_cast<Shown>(box));
    QVERIFY(hand.acted);
    QVERIFY(!shown || !shown->isVisible());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(EventQueue::ending(), !destroyed);
    // A notice has no other answer; everything else was not answered.
    QCOMPARE(ok, static_cast<Shown>(box) == Shown::Message);
}

// In the middle of an exchange: the unit refuses, and the box waits for the password.
void TestBoxesOverMain::aRefusalsPasswordBoxEndsWithTheProgram()
{
    ConnectedBench bench;
    TestHooks::answerBoxes({});
    bench.reply("*STEP 260", "PERMISSION DENIED");
    const Hand hand([&](QWidget *) { bench.window->close(); });
    bench.enter(QStringLiteral("106.5"));
    QVERIFY(hand.acted);
    QVERIFY(EventQueue::ending());
    QVERIFY(!QApplication::activeModalWidget());
}

void TestBoxesOverMain::theLowerBoxGoesFirst_data()
{
    QTest::addColumn<bool>("destroyed");
    QTest::newRow("closed") << false;
    QTest::newRow("destroyed") << true;
}

void TestBoxesOverMain::theLowerBoxGoesFirst()
{
    QFETCH(const bool, destroyed);
    const ConnectedBench bench;
    TestHooks::answerBoxes({});
    auto lower = std::make_unique<frmInputBox>();
    QPointer<QWidget> below;
    QPointer<QWidget> above;
    std::optional<MessageBox::Answer> answer;
    bool outlived = false;
    const Hand upperHand(
        [&](QWidget *dialog) {
            above = dialog;
            QCOMPARE(dialog->parentWidget(), below.data());
            if (destroyed)
                delete below; // as the end of its owner would
            else
                static_cast<QDialog *>(below.data())->reject();
            outlived = above && above->isVisible();
            if (above)
                QTest::keyClick(above, Qt::Key_Return);
        },
        [&](QWidget *dialog) { return below && dialog != below; });
    const Hand lowerHand([&](QWidget *dialog) {
        below = dialog;
        answer = MessageBox::show(QStringLiteral("above"), MessageBox::Exclamation);
    });
    lower->showModal();
    QVERIFY(upperHand.acted);
    QCOMPARE(outlived, !destroyed);
    QCOMPARE(answer, std::optional(MessageBox::Answer::Ok));
    QVERIFY(!above);
    QVERIFY(lower->answerStatus() != frmInputBox::Entered);
    QVERIFY(!QApplication::activeModalWidget());
    lower.reset();
    QVERIFY(bench.window->isVisible());
}

void TestBoxesOverMain::aRefusedAddressIsToldOverItsBox()
{
    const ConnectedBench bench;
    TestHooks::answerBoxes({});
    frmInputBox box;
    box.setResultType(frmInputBox::IPAddress);
    box.setDefaultValue(QStringLiteral("10.0.0"));
    QPointer<QWidget> below;
    bool wasToldAbove = false;
    const Hand upperHand(
        [&](QWidget *dialog) {
            wasToldAbove = dialog->parentWidget() == below;
            QTest::keyClick(dialog, Qt::Key_Return);
            QTimer::singleShot(0, below, [&] {
                QVERIFY(below->isVisible()); // to be mended
                QTest::keyClick(below, Qt::Key_Escape);
            });
        },
        [&](QWidget *dialog) { return below && dialog != below; });
    const Hand lowerHand([&](QWidget *dialog) {
        below = dialog;
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    box.showModal();
    QVERIFY(wasToldAbove);
    QCOMPARE(box.answerStatus(), std::int16_t{frmInputBox::Cancelled});
}

KELDOX_TEST(TestBoxesOverMain)
#include "TestBoxesOverMain.moc"
