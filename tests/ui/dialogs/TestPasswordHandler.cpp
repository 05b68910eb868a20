// The program's own password: setting it, and being asked for it.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "platform/SettingsStore.h"
#include "ui/dialogs/clsPasswordHandler.h"

#include <QtWidgets>

// Answers one input box after the other and keeps what each of them showed.
class Answers : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        QString text;
        const char *button = "OKButton";
    };

    explicit Answers(QList<Answer> answers) : m_answers(std::move(answers))
    {
        m_timer.setInterval(10);
        connect(&m_timer, &QTimer::timeout, this, &Answers::next);
        m_timer.start();
    }

    bool allGiven() const { return m_answers.isEmpty(); }

    QStringList prompts;
    QStringList entriesBefore;
    QStringList displayed;

private:
    void next()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        if (m_answers.isEmpty()) {
            QTest::qFail("an input box that nobody expected", __FILE__, __LINE__);
            dialog->close();
            return;
        }
        const Answer answer = m_answers.takeFirst();
        auto *entry = dialog->findChild<QLineEdit *>(QStringLiteral("Text1"));
        prompts.append(dialog->findChild<QLabel *>(QStringLiteral("Label1"))->text());
        entriesBefore.append(entry->text());
        QTest::keyClicks(entry, answer.text);
        displayed.append(entry->displayText());
        dialog->findChild<QPushButton *>(QString::fromLatin1(answer.button))->click();
    }

    QTimer m_timer;
    QList<Answer> m_answers;
};

class TestPasswordHandler : public QObject
{
    Q_OBJECT

private slots:
    void init() { store(QString()); }
    void cleanupTestCase() { store(QString()); }

    void aNewPasswordIsAskedTwiceAndStoredAsTyped();
    void theLengthMatters_data();
    void theLengthMatters();
    void anotherLetterCaseDoesNotMatch();
    void cancellingKeepsTheOldPassword_data();
    void cancellingKeepsTheOldPassword();
    void theStoredPasswordGrantsAccess();
    void anotherPasswordDoesNot_data();
    void anotherPasswordDoesNot();
    void cancellingTheCheckDoesNotGrantAccess();
    void noGrantsAccessWhenThereIsNothingToProtect();
    void cancelDoesNot();
    void yesLetsTheUserSetOne_data();
    void yesLetsTheUserSetOne();
    void aStoreThatCannotBeWrittenIsReported();

private:
    static void store(const QString &password)
    {
        SettingsStore::write(QStringLiteral("KELDO-X Control Program"), QStringLiteral("Settings"),
                             QStringLiteral("pwd"), password);
    }
    static QString stored()
    {
        return SettingsStore::read(QStringLiteral("KELDO-X Control Program"),
                                   QStringLiteral("Settings"), QStringLiteral("pwd"));
    }
    static void expectQuestion(Fixture &fixture, MessageBox::Answer answer)
    {
        fixture.boxes.expect(QStringLiteral("There is no password. Do you want to set one?"),
                             MessageBox::Question, answer);
    }
};

void TestPasswordHandler::aNewPasswordIsAskedTwiceAndStoredAsTyped()
{
    const Fixture fixture;
    const Answers answers({{QStringLiteral(" S\"e;cret=% ")}, {QStringLiteral(" S\"e;cret=% ")}});
    clsPasswordHandler handler;
    QVERIFY(handler.CreateNewPassword());
    QCOMPARE(answers.prompts,
             (QStringList{QStringLiteral("Enter a password (at least 6 characters)"),
                          QStringLiteral("Re-enter the password")}));
    QCOMPARE(answers.entriesBefore, (QStringList{QString(), QString()}));
    QCOMPARE(answers.displayed, QStringList(2, QString(12, QLatin1Char('*'))));
    QCOMPARE(stored(), QStringLiteral(" S\"e;cret=% "));
}

void TestPasswordHandler::theLengthMatters_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("none") << "" << false;
    QTest::newRow("5") << "abcde" << false;
    QTest::newRow("6") << "abcdef" << true;
}

void TestPasswordHandler::theLengthMatters()
{
    QFETCH(const QString, password);
    QFETCH(const bool, accepted);
    Fixture fixture;
    QList<Answers::Answer> given{{password}};
    if (accepted)
        given.append({password});
    else
        fixture.boxes.expect(QStringLiteral("invalid password"), MessageBox::Exclamation);
    const Answers answers(given);
    QCOMPARE(clsPasswordHandler().CreateNewPassword(), accepted);
    QVERIFY(answers.allGiven());
    QCOMPARE(stored(), accepted ? password : QString());
    for (const auto &box : fixture.boxes.shown())
        QCOMPARE(box.title, QStringLiteral("KELDO-X Control Program"));
}

void TestPasswordHandler::anotherLetterCaseDoesNotMatch()
{
    Fixture fixture;
    fixture.boxes.expect(QStringLiteral("password did not match"), MessageBox::Exclamation);
    const Answers answers({{QStringLiteral("secret")}, {QStringLiteral("secreT")}});
    QVERIFY(!clsPasswordHandler().CreateNewPassword());
    QVERIFY(answers.allGiven());
    QCOMPARE(stored(), QString());
}

void TestPasswordHandler::cancellingKeepsTheOldPassword_data()
{
    QTest::addColumn<bool>("atSecond");
    QTest::newRow("first entry") << false;
    QTest::newRow("second entry") << true;
}

void TestPasswordHandler::cancellingKeepsTheOldPassword()
{
    QFETCH(const bool, atSecond);
    const Fixture fixture;
    store(QStringLiteral("old one"));
    QList<Answers::Answer> given;
    if (atSecond)
        given.append({QStringLiteral("secret")});
    given.append({QStringLiteral("secret"), "CancelButton"});
    const Answers answers(given);
    QVERIFY(!clsPasswordHandler().CreateNewPassword());
    QVERIFY(answers.allGiven());
    QCOMPARE(stored(), QStringLiteral("old one"));
}

void TestPasswordHandler::theStoredPasswordGrantsAccess()
{
    const Fixture fixture;
    store(QStringLiteral("Secret"));
    const Answers answers({{QStringLiteral("Secret")}});
    QVERIFY(clsPasswordHandler().getPassword());
    QCOMPARE(answers.prompts, QStringList{QStringLiteral("Enter the password")});
    QCOMPARE(answers.displayed, QStringList{QStringLiteral("******")});
}

void TestPasswordHandler::anotherPasswordDoesNot_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("another") << "different";
    QTest::newRow("letter case") << "secret";
    QTest::newRow("blank behind") << "Secret ";
    QTest::newRow("nothing") << "";
}

void TestPasswordHandler::anotherPasswordDoesNot()
{
    QFETCH(const QString, typed);
    Fixture fixture;
    store(QStringLiteral("Secret"));
    fixture.boxes.expect(QStringLiteral("invalid password"), MessageBox::Exclamation);
    const Answers answers({{typed}});
    QVERIFY(!clsPasswordHandler().getPassword());
    QVERIFY(answers.allGiven());
}

void TestPasswordHandler::cancellingTheCheckDoesNotGrantAccess()
{
    const Fixture fixture;
    store(QStringLiteral("Secret"));
    const Answers answers({{QStringLiteral("Secret"), "CancelButton"}});
    QVERIFY(!clsPasswordHandler().getPassword());
    QVERIFY(answers.allGiven());
}

void TestPasswordHandler::noGrantsAccessWhenThereIsNothingToProtect()
{
    Fixture fixture;
    expectQuestion(fixture, MessageBox::Answer::No);
    const Answers answers({});
    QVERIFY(clsPasswordHandler().getPassword());
    const auto box = fixture.boxes.shown().value(0);
    QCOMPARE(box.style & 7, int(MessageBox::YesNoCancel));
    QCOMPARE(box.title, QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(stored(), QString());
}

void TestPasswordHandler::cancelDoesNot()
{
    Fixture fixture;
    expectQuestion(fixture, MessageBox::Answer::Cancel);
    QVERIFY(!clsPasswordHandler().getPassword());
}

void TestPasswordHandler::yesLetsTheUserSetOne_data()
{
    QTest::addColumn<bool>("cancelled");
    QTest::newRow("set") << false;
    QTest::newRow("cancelled") << true;
}

void TestPasswordHandler::yesLetsTheUserSetOne()
{
    QFETCH(const bool, cancelled);
    Fixture fixture;
    expectQuestion(fixture, MessageBox::Answer::Yes);
    const Answers answers({{QStringLiteral("secret")},
                           {QStringLiteral("secret"), cancelled ? "CancelButton" : "OKButton"}});
    QCOMPARE(clsPasswordHandler().getPassword(), !cancelled);
    QVERIFY(answers.allGiven());
    QCOMPARE(stored(), cancelled ? QString() : QStringLiteral("secret"));
}

void TestPasswordHandler::aStoreThatCannotBeWrittenIsReported()
{
    Fixture fixture;
    const QString file = SettingsStore::location(QStringLiteral("KELDO-X Control Program"));
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkdir(file)); // a folder stands where the file belongs
    fixture.boxes.expectStart(QStringLiteral("Error 75 ("), MessageBox::Exclamation);
    const Answers answers({{QStringLiteral("secret")}, {QStringLiteral("secret")}});
    const bool created = clsPasswordHandler().CreateNewPassword();
    QVERIFY(QDir().rmdir(file));
    QVERIFY(!created);
    QVERIFY(fixture.boxes.texts().value(0).endsWith(
        QStringLiteral(" in clsPasswordHandler.CreateNewPassword\r\n")));
}

KELDOX_TEST(TestPasswordHandler)
#include "TestPasswordHandler.moc"
