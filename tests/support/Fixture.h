// What every test of the program starts from: a fresh application-wide state, no serial ports but
// those that the test plugs in, and message boxes that the test expects one by one.
#pragma once

#include "widgets/MessageBox.h"

#include <QList>
#include <QString>

// Answers every message box and fails the test on one that it did not expect. One at a time.
class ExpectedBoxes
{
public:
    ExpectedBoxes();
    ~ExpectedBoxes(); // fails the test when an expected box was not shown

    // The next box must have exactly this text; icon 0 accepts any icon.
    void expect(const QString &text, int icon = 0,
                MessageBox::Answer answer = MessageBox::Answer::Ok);
    // The next box must begin with this text.
    void expectStart(const QString &start, int icon = 0,
                     MessageBox::Answer answer = MessageBox::Answer::Ok);
    // Accept whatever comes; look at shown().
    void acceptAll() { m_acceptAll = true; }
    // Runs while the next box is "open", before it is answered.
    void whileOpen(std::function<void()> action) { m_whileOpen = std::move(action); }

    const QList<MessageBox::Request> &shown() const { return m_shown; }
    QStringList texts() const;
    // True when every expected box was shown.
    bool allShown() const { return m_expected.isEmpty(); }
    void clear();

private:
    struct Expectation
    {
        QString text;
        bool startOnly = false;
        int icon = 0;
        MessageBox::Answer answer = MessageBox::Answer::Ok;
    };

    MessageBox::Answer answer(const MessageBox::Request &request);

    QList<Expectation> m_expected;
    QList<MessageBox::Request> m_shown;
    std::function<void()> m_whileOpen;
    bool m_acceptAll = false;
};

// A fresh state, a port directory that sees no system ports and no links but those of the test,
// and a program that is not ending. Make one per test function.
class Fixture
{
public:
    Fixture();
    ~Fixture();

    // COM n is this device ("/dev/pts/7") until the fixture ends or unplug(n).
    void plug(int number, const QString &device);
    void plug(int number, const std::string &device);
    void unplug(int number); // takes the number away; the line itself is the test's

    ExpectedBoxes boxes;

private:
    QList<int> m_numbers;
};
