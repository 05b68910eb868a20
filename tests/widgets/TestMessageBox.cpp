// The one door of all message boxes: the real box, the test's answers, and the end of the program.
#include "support/TestMain.h"

#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "widgets/MessageBox.h"

#include <QApplication>
#include <QMessageBox>

class TestMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void theBoxShowsItsTextPlainUnderTheApplicationsTitle();
    void theIconFollowsTheStyle_data();
    void theIconFollowsTheStyle();
    void eachButtonIsItsAnswer_data();
    void eachButtonIsItsAnswer();
    void escapeCancelsAQuestionAndAcceptsANotice();
    void eventsAreHandledWhileTheBoxIsOpen();
    void theEndOfTheProgramTakesTheBoxAway_data();
    void theEndOfTheProgramTakesTheBoxAway();
    void afterTheEndNoBoxOpens();
    void anAnswererTakesTheBoxsPlace();

private:
    // Does something with the next box as soon as it is open.
    void whenOpen(const std::function<void(QMessageBox &)> &action);
    static void closeAtOnce(QMessageBox &box) { box.done(QMessageBox::Ok); }
};

void TestMessageBox::cleanup()
{
    TestHooks::answerBoxes({});
    TestHooks::takeBackEnding();
}

void TestMessageBox::whenOpen(const std::function<void(QMessageBox &)> &action)
{
    auto *look = new QTimer(this);
    connect(look, &QTimer::timeout, this, [look, action] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            look->deleteLater();
            look->stop();
            action(*box);
        }
    });
    look->start(1);
}

void TestMessageBox::theBoxShowsItsTextPlainUnderTheApplicationsTitle()
{
    QString shown;
    QString caption;
    Qt::TextFormat format = Qt::RichText;
    QString name;
    whenOpen([&](QMessageBox &box) {
        shown = box.text();
        caption = box.windowTitle();
        format = box.textFormat();
        name = box.objectName();
        closeAtOnce(box);
    });
    MessageBox::show(QStringLiteral("<b>not bold</b>"), MessageBox::Exclamation);
    QCOMPARE(shown, QStringLiteral("<b>not bold</b>"));
    QCOMPARE(caption, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(format, Qt::PlainText);
    QCOMPARE(name, QStringLiteral("MessageBox"));

    whenOpen([&](QMessageBox &box) {
        caption = box.windowTitle();
        closeAtOnce(box);
    });
    MessageBox::show(QStringLiteral("x"), MessageBox::Exclamation, QStringLiteral("own title"));
    QCOMPARE(caption, QStringLiteral("own title"));
}

void TestMessageBox::theIconFollowsTheStyle_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<QMessageBox::Icon>("icon");
    QTest::addRow("none") << 0 << QMessageBox::NoIcon;
    QTest::addRow("critical") << 16 << QMessageBox::Critical;
    QTest::addRow("question") << 32 << QMessageBox::Question;
    QTest::addRow("exclamation") << 48 << QMessageBox::Warning;
    QTest::addRow("information") << 64 << QMessageBox::Information;
}

void TestMessageBox::theIconFollowsTheStyle()
{
    QFETCH(const int, style);
    QFETCH(const QMessageBox::Icon, icon);
    QMessageBox::Icon shown = QMessageBox::NoIcon;
    whenOpen([&](QMessageBox &box) {
        shown = box.icon();
        closeAtOnce(box);
    });
    MessageBox::show(QStringLiteral("x"), style);
    QCOMPARE(shown, icon);
}

void TestMessageBox::eachButtonIsItsAnswer_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<int>("answer");
    QTest::addRow("ok") << 48 << QMessageBox::Ok << 1;
    QTest::addRow("yes") << 3 + 32 << QMessageBox::Yes << 6;
    QTest::addRow("no") << 3 + 32 << QMessageBox::No << 7;
    QTest::addRow("cancel") << 3 + 32 << QMessageBox::Cancel << 2;
}

void TestMessageBox::eachButtonIsItsAnswer()
{
    QFETCH(const int, style);
    QFETCH(const QMessageBox::StandardButton, button);
    QFETCH(const int, answer);
    qsizetype buttons = 0;
    whenOpen([&](QMessageBox &box) {
        buttons = box.buttons().size();
        QTest::mouseClick(box.button(button), Qt::LeftButton);
    });
    QCOMPARE(static_cast<int>(MessageBox::show(QStringLiteral("x"), style)), answer);
    QCOMPARE(buttons, style == 48 ? 1 : 3);
}

void TestMessageBox::escapeCancelsAQuestionAndAcceptsANotice()
{
    const auto pressEscape = [](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); };
    whenOpen(pressEscape);
    QCOMPARE(MessageBox::show(QStringLiteral("x"), MessageBox::YesNoCancel),
             MessageBox::Answer::Cancel);
    whenOpen(pressEscape);
    QCOMPARE(MessageBox::show(QStringLiteral("x"), MessageBox::Information),
             MessageBox::Answer::Ok);
}

void TestMessageBox::eventsAreHandledWhileTheBoxIsOpen()
{
    int beats = 0;
    QTimer heart;
    connect(&heart, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && ++beats == 5)
            closeAtOnce(*box);
    });
    heart.start(10);
    MessageBox::show(QStringLiteral("x"), MessageBox::Exclamation);
    QCOMPARE(beats, 5);
}

void TestMessageBox::theEndOfTheProgramTakesTheBoxAway_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("answer");
    QTest::addRow("notice") << 48 << 1;
    QTest::addRow("question") << 3 + 32 << 2;
}

void TestMessageBox::theEndOfTheProgramTakesTheBoxAway()
{
    QFETCH(const int, style);
    QFETCH(const int, answer);
    whenOpen([](QMessageBox &) { EventQueue::endProgram(); });
    QCOMPARE(static_cast<int>(MessageBox::show(QStringLiteral("x"), style)), answer);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestMessageBox::afterTheEndNoBoxOpens()
{
    EventQueue::endProgram();
    bool asked = false;
    TestHooks::answerBoxes([&](const MessageBox::Request &) {
        asked = true;
        return MessageBox::Answer::Yes;
    });
    QCOMPARE(MessageBox::show(QStringLiteral("x"), 48), MessageBox::Answer::Ok);
    QCOMPARE(MessageBox::show(QStringLiteral("x"), 3), MessageBox::Answer::Cancel);
    QVERIFY(!asked);
}

void TestMessageBox::anAnswererTakesTheBoxsPlace()
{
    QList<MessageBox::Request> requests;
    TestHooks::answerBoxes([&](const MessageBox::Request &request) {
        requests.append(request);
        return MessageBox::Answer::No;
    });
    QCOMPARE(MessageBox::show(QStringLiteral("x"), 48 + 0x1000), MessageBox::Answer::No);
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests.at(0).text, QStringLiteral("x"));
    QCOMPARE(requests.at(0).style, 48 + 0x1000);
    QCOMPARE(requests.at(0).title, QStringLiteral("KELDO-X Control Program"));
}

KELDOX_TEST(TestMessageBox)
#include "TestMessageBox.moc"
