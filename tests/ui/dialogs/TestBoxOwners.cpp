// Boxes over every window that may go before they are answered: by closing, or by being destroyed.
#include "support/Fixture.h"
#include "support/Hand.h"
#include "support/TestMain.h"

#include "platform/TestHooks.h"
#include "ui/channels/frmChannels.h"
#include "ui/connect/frmConnectToComport.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui/dialogs/frmOperation.h"
#include "ui/dialogs/frmPasswordBox.h"
#include "ui/monitor/frmIODaemon.h"
#include "widgets/FileChooser.h"

#include <QtWidgets>

class TestBoxOwners : public QObject
{
    Q_OBJECT

private slots:
    void theWindowGoesFirst_data();
    void theWindowGoesFirst();
    void aBoxThatIsGoneTakesNothingMore();
};

// A window that is open: closing may dispose of it, destroying does.
struct Open
{
    QPointer<QWidget> window;
    std::shared_ptr<QWidget> shared;

    void destroy()
    {
        if (shared)
            shared.reset();
        else
            delete window;
    }
};

static Open open(const QString &name, QWidget *owner)
{
    if (name == QStringLiteral("operation"))
        return {new frmOperation(owner), {}};
    if (name == QStringLiteral("contact"))
        return {new frmContact(owner), {}};
    if (name == QStringLiteral("about"))
        return {new frmAbout(owner), {}};
    if (name == QStringLiteral("connect"))
        return {new frmConnectToComport(owner), {}};
    std::shared_ptr<QWidget> shared;
    if (name == QStringLiteral("channels"))
        shared = std::make_shared<frmChannels>();
    else
        shared = std::make_shared<frmIODaemon>();
    return {shared.get(), shared};
}

void TestBoxOwners::theWindowGoesFirst_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("destroyed");
    for (const char *window : {"operation", "contact", "about", "connect", "channels", "monitor"})
        for (const char *box : {"message", "input", "password", "file"})
            for (const bool destroyed : {false, true})
                QTest::addRow("%s, %s box, %s", window, box, destroyed ? "destroyed" : "closed")
                    << QString::fromLatin1(window) << QString::fromLatin1(box) << destroyed;
}

// Shows the box and tells whether OK was what it answered.
static bool answersOk(const QString &box)
{
    if (box == QStringLiteral("message"))
        return MessageBox::show(QStringLiteral("text"), MessageBox::Exclamation) ==
               MessageBox::Answer::Ok;
    if (box == QStringLiteral("input")) {
        frmInputBox input;
        input.setText(QStringLiteral("prompt"));
        input.setDefaultValue(QStringLiteral("7"));
        input.showModal();
        input.clearEntry();
        input.setHidePasswordChars(true);
        return input.answerStatus() == frmInputBox::Entered &&
               input.resultText() == QStringLiteral("7");
    }
    if (box == QStringLiteral("password")) {
        frmPasswordBox password;
        password.setHidePasswordChars(true);
        password.showModal();
        return password.answerStatus() == frmPasswordBox::Entered;
    }
    FileChooser::Request request;
    request.mode = FileChooser::Mode::Folder;
    request.folder = QDir::tempPath();
    return FileChooser::choose(request).has_value();
}

void TestBoxOwners::theWindowGoesFirst()
{
    QFETCH(const QString, window);
    QFETCH(const QString, box);
    QFETCH(const bool, destroyed);
    Fixture fixture;
    fixture.boxes.acceptAll();
    QMainWindow main;
    main.show();
    Open shown = open(window, &main);
    shown.window->show();
    shown.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(shown.window));
    QTest::qWait(1);            // the monitor tells that it found no ports
    TestHooks::answerBoxes({}); // from here on the real boxes
    bool boxWasShown = false;
    bool boxOutlived = false;
    const Hand hand([&](QWidget *modal) {
        const QPointer<QWidget> dialog = modal;
        boxWasShown = true;
        if (destroyed)
            shown.destroy();
        else
            shown.window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        boxOutlived = dialog && dialog->isVisible();
        if (!dialog)
            return;
        if (auto *files = qobject_cast<QFileDialog *>(dialog.data()))
            QTimer::singleShot(0, files, &QDialog::accept);
        else
            for (auto *button : dialog->findChildren<QPushButton *>())
                if (button->text().remove(QLatin1Char('&')) == QStringLiteral("OK"))
                    QTimer::singleShot(0, button, &QAbstractButton::click);
    });
    const bool ok = answersOk(box);
    QVERIFY(boxWasShown);
    // A window that only closes never takes the box along.
    if (!destroyed)
        QVERIFY(boxOutlived);
    if (boxOutlived)
        QVERIFY(ok);
    if (!boxOutlived && box != QStringLiteral("message"))
        QVERIFY(!ok);
}

void TestBoxOwners::aBoxThatIsGoneTakesNothingMore()
{
    const Fixture fixture;
    auto owner = std::make_unique<QWidget>();
    owner->show();
    owner->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(owner.get()));
    frmInputBox input;
    frmPasswordBox password;
    owner.reset();
    input.setText(QStringLiteral("prompt"));
    input.setDefaultValue(QStringLiteral("7"));
    input.setInputBoxWidth(100);
    input.setHidePasswordChars(true);
    input.clearEntry();
    input.showModal();
    password.setHidePasswordChars(true);
    password.showModal();
    QCOMPARE(input.answerStatus(), std::int16_t{frmInputBox::Unanswered});
    QCOMPARE(password.answerStatus(), std::int16_t{frmPasswordBox::Unanswered});
}

KELDOX_TEST(TestBoxOwners)
#include "TestBoxOwners.moc"
