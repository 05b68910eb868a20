// The settings store: what is written is read, in a file of the user's own, and trouble is told.
#include "support/TestMain.h"

#include "platform/RunTimeError.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

class TestSettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void whatIsWrittenIsRead_data();
    void whatIsWrittenIsRead();
    void aMissingKeyIsEmpty();
    void aNewValueReplacesTheOld();
    void keysAndSectionsAreApart();
    void theFileIsTheUsersAlone();
    void aFileThatOthersCouldReadIsClosedToThem();
    void nonsenseInTheFileReadsAsEmptyAndCanBeWrittenOver();
    void aStoreThatCannotBeWrittenRaises75();

private:
    static QString read(const char *key);
    static void write(const char *key, const QString &value);

    std::unique_ptr<QTemporaryDir> home;
    QByteArray oldHome;
};

static const QString application = QStringLiteral("KELDO-X Control Program");
static const QString section = QStringLiteral("Settings");

QString TestSettingsStore::read(const char *key)
{
    return SettingsStore::read(application, section, QString::fromLatin1(key));
}

void TestSettingsStore::write(const char *key, const QString &value)
{
    SettingsStore::write(application, section, QString::fromLatin1(key), value);
}

void TestSettingsStore::init()
{
    home = std::make_unique<QTemporaryDir>();
    oldHome = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", home->path().toLocal8Bit());
}

void TestSettingsStore::cleanup()
{
    qputenv("XDG_CONFIG_HOME", oldHome);
}

void TestSettingsStore::whatIsWrittenIsRead_data()
{
    QTest::addColumn<QString>("value");
    QTest::addRow("frequency") << QStringLiteral("145.5");
    QTest::addRow("leading blank") << QStringLiteral(" 145.5");
    QTest::addRow("empty") << QString();
    QTest::addRow("list-like") << QStringLiteral("a,b;c=d");
    QTest::addRow("quotes") << QStringLiteral("\"quoted\" \\back\\slash");
    QTest::addRow("lines") << QStringLiteral("one\r\ntwo");
    QTest::addRow("not ASCII") << QString::fromUtf8("Pa\xc3\x9fwort \xe2\x82\xac");
}

void TestSettingsStore::whatIsWrittenIsRead()
{
    QFETCH(const QString, value);
    write("PresetFrequency 4", value);
    QCOMPARE(read("PresetFrequency 4"), value);
}

void TestSettingsStore::aMissingKeyIsEmpty()
{
    QCOMPARE(read("pwd"), QString());
    QVERIFY(!QFileInfo::exists(SettingsStore::location(application))); // reading makes no file
    write("PresetFrequency 4", QStringLiteral("1"));
    QCOMPARE(read("pwd"), QString());
}

void TestSettingsStore::aNewValueReplacesTheOld()
{
    write("pwd", QStringLiteral("old"));
    write("pwd", QStringLiteral("new"));
    QCOMPARE(read("pwd"), QStringLiteral("new"));
}

void TestSettingsStore::keysAndSectionsAreApart()
{
    write("a", QStringLiteral("1"));
    write("b", QStringLiteral("2"));
    SettingsStore::write(application, QStringLiteral("Other"), QStringLiteral("a"),
                         QStringLiteral("3"));
    QCOMPARE(read("a"), QStringLiteral("1"));
    QCOMPARE(read("b"), QStringLiteral("2"));
}

void TestSettingsStore::theFileIsTheUsersAlone()
{
    write("pwd", QStringLiteral("secret"));
    write("pwd", QStringLiteral("secret again"));
    const QString name = SettingsStore::location(application);
    QVERIFY(name.startsWith(home->path()));
    QCOMPARE(QFile::permissions(name) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
             QFile::ReadOwner | QFile::WriteOwner);
}

void TestSettingsStore::aFileThatOthersCouldReadIsClosedToThem()
{
    const QString name = SettingsStore::location(application);
    QVERIFY(QDir().mkpath(QFileInfo(name).absolutePath()));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Settings]\nkept=1\n");
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                QFile::ReadOther));
    write("pwd", QStringLiteral("secret"));
    QCOMPARE(QFile::permissions(name) & (QFile::ReadGroup | QFile::ReadOther),
             QFile::Permissions());
    QCOMPARE(read("kept"), QStringLiteral("1"));
}

void TestSettingsStore::nonsenseInTheFileReadsAsEmptyAndCanBeWrittenOver()
{
    const QString name = SettingsStore::location(application);
    QVERIFY(QDir().mkpath(QFileInfo(name).absolutePath()));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\x00\xff\xfe[[[=\nno ini at all\n]=[\n\x01", 28));
    file.close();
    QCOMPARE(read("pwd"), QString());
    write("pwd", QStringLiteral("secret"));
    QCOMPARE(read("pwd"), QStringLiteral("secret"));
    QVERIFY(file.open(QIODevice::ReadOnly)); // on the disk, not in memory alone
    QVERIFY(file.readAll().contains("[Settings]\npwd=secret\n"));
}

void TestSettingsStore::aStoreThatCannotBeWrittenRaises75()
{
    QFile blocker(home->filePath(QStringLiteral("keldo-x"))); // where the folder should be
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    int number = 0;
    QString description;
    try {
        write("pwd", QStringLiteral("secret"));
    } catch (const RunTimeError &error) {
        number = error.number();
        description = error.description();
    }
    QCOMPARE(number, 75);
    QVERIFY2(description.contains(SettingsStore::location(application)), qPrintable(description));
    QCOMPARE(read("pwd"), QString());
}

KELDOX_TEST(TestSettingsStore)
#include "TestSettingsStore.moc"
