// Reading the fonts ahead: beside what the caller does, and done when it is waited for.
#include "platform/FontsAhead.h"
#include "support/TestMain.h"

#include <QDir>

#include <chrono>
#include <future>
#include <thread>

static qsizetype threads()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

class TestFontsAhead : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_threads = threads(); }
    void theyAreReadBesideTheCaller();
    void theEndWaitsToo();
    void withoutAReaderNothingIsDone();
    void theSystemsReaderLeavesNoThread();

private:
    qsizetype m_threads = 0; // before there was any
};

void TestFontsAhead::theyAreReadBesideTheCaller()
{
    std::promise<void> go;
    bool isRead = false;
    FontsAhead fonts([&] {
        go.get_future().wait(); // for ever, if the caller waited in the constructor
        isRead = true;
    });
    go.set_value();
    fonts.wait();
    QVERIFY(isRead);
    fonts.wait(); // again: nothing left to wait for
}

void TestFontsAhead::theEndWaitsToo()
{
    bool isRead = false;
    {
        const FontsAhead fonts([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            isRead = true;
        });
    }
    QVERIFY(isRead);
}

void TestFontsAhead::withoutAReaderNothingIsDone()
{
    FontsAhead fonts(nullptr);
    fonts.wait();
}

// The program has one thread of its own from start-up on.
void TestFontsAhead::theSystemsReaderLeavesNoThread()
{
    const FontsAhead::Reader reader = FontsAhead::systemReader();
    QVERIFY2(reader, "fontconfig, which Qt's fonts come from, was not found");
    FontsAhead fonts(reader);
    fonts.wait();
    QTRY_COMPARE(threads(), m_threads); // those of the tests before may still be ending
}

KELDOX_TEST(TestFontsAhead)
#include "TestFontsAhead.moc"
