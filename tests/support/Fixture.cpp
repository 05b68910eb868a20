// The common start of the program's tests.
#include "support/Fixture.h"

#include "app/AppState.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"
#include "platform/RunTimeError.h"
#include "platform/SettingsStore.h"
#include "platform/TestHooks.h"
#include "widgets/WindowPlace.h"

#include <QDir>
#include <QFile>
#include <QtTest>

static constexpr int iconMask = 0x70;

ExpectedBoxes::ExpectedBoxes()
{
    TestHooks::answerBoxes([this](const MessageBox::Request &request) { return answer(request); });
}

ExpectedBoxes::~ExpectedBoxes()
{
    TestHooks::answerBoxes({});
    for (const Expectation &missing : std::as_const(m_expected))
        QTest::qFail(qPrintable(QStringLiteral("Message box not shown: ") + missing.text), __FILE__,
                     __LINE__);
}

void ExpectedBoxes::expect(const QString &text, int icon, MessageBox::Answer answer)
{
    m_expected.append({text, false, icon, answer});
}

void ExpectedBoxes::expectStart(const QString &start, int icon, MessageBox::Answer answer)
{
    m_expected.append({start, true, icon, answer});
}

QStringList ExpectedBoxes::texts() const
{
    QStringList all;
    for (const MessageBox::Request &request : m_shown)
        all.append(request.text);
    return all;
}

void ExpectedBoxes::clear()
{
    m_expected.clear();
    m_shown.clear();
    m_acceptAll = false;
}

MessageBox::Answer ExpectedBoxes::answer(const MessageBox::Request &request)
{
    m_shown.append(request);
    if (m_whileOpen) {
        const auto action = std::move(m_whileOpen);
        m_whileOpen = {};
        action();
    }
    if (m_expected.isEmpty()) {
        if (!m_acceptAll)
            QTest::qFail(qPrintable(QStringLiteral("Unexpected message box: ") + request.text),
                         __FILE__, __LINE__);
        return MessageBox::Answer::Ok;
    }
    const Expectation next = m_expected.takeFirst();
    const bool textFits =
        next.startOnly ? request.text.startsWith(next.text) : request.text == next.text;
    const bool iconFits = next.icon == 0 || (request.style & iconMask) == next.icon;
    if (!textFits || !iconFits)
        QTest::qFail(qPrintable(QStringLiteral("Message box \"%1\" (style %2) instead of \"%3\"")
                                    .arg(request.text)
                                    .arg(request.style)
                                    .arg(next.text)),
                     __FILE__, __LINE__);
    return next.answer;
}

// No test sees its windows where the test before has left them.
static void forgetPlaces()
{
    for (const char *name : {"main", "channels", "monitor"}) {
        const QString key = WindowPlace::key(QString::fromLatin1(name));
        try {
            if (!SettingsStore::read(applicationTitle(), WindowPlace::section(), key).isEmpty())
                SettingsStore::write(applicationTitle(), WindowPlace::section(), key, {});
        } catch (const RunTimeError &) {
            // the test's settings cannot be written
        }
    }
}

Fixture::Fixture()
{
    forgetPlaces();
    TestHooks::takeBackEnding();
    TestHooks::carryLines({});
    TestHooks::failOpening(0);
    TestHooks::limitCommEvents(0);
    TestHooks::shortenTimers(0);
    TestHooks::settleWithin(0);
    resetAppState();
    installMessageBoxes();
    TestHooks::listPorts([] { return QList<PortDirectory::Device>(); });
}

Fixture::~Fixture()
{
    resetAppState();
    const auto plugged = m_numbers;
    for (const int number : plugged)
        unplug(number);
}

static QString linkName(int number)
{
    return PortDirectory::linkFolder() + QStringLiteral("/com%1").arg(number);
}

void Fixture::plug(int number, const QString &device)
{
    QDir().mkpath(PortDirectory::linkFolder());
    QFile::remove(linkName(number));
    QVERIFY(QFile::link(device, linkName(number)));
    m_numbers.append(number);
    PortDirectory::instance().refresh();
}

void Fixture::plug(int number, const std::string &device)
{
    plug(number, QString::fromStdString(device));
}

void Fixture::unplug(int number)
{
    QFile::remove(linkName(number));
    m_numbers.removeAll(number);
    PortDirectory::instance().refresh();
}
