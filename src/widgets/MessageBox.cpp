// Message boxes over QMessageBox.
#include "widgets/MessageBox.h"

#include "platform/Application.h"
#include "platform/EventQueue.h"

#include <QApplication>
#include <QMessageBox>

namespace {

constexpr int iconMask = 0x70;
constexpr int buttonMask = 0x07;

std::function<MessageBox::Answer(const MessageBox::Request &)> &answererSlot()
{
    static std::function<MessageBox::Answer(const MessageBox::Request &)> slot;
    return slot;
}

QMessageBox::Icon iconOf(int style)
{
    switch (style & iconMask) {
    case MessageBox::Critical:
        return QMessageBox::Critical;
    case MessageBox::Question:
        return QMessageBox::Question;
    case MessageBox::Exclamation:
        return QMessageBox::Warning;
    case MessageBox::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

MessageBox::Answer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return MessageBox::Answer::Yes;
    case QMessageBox::No:
        return MessageBox::Answer::No;
    case QMessageBox::Cancel:
        return MessageBox::Answer::Cancel;
    default:
        return MessageBox::Answer::Ok;
    }
}

} // namespace

MessageBox::Answer MessageBox::show(const QString &text, int style, const QString &title)
{
    const bool question = (style & buttonMask) == YesNoCancel;
    if (EventQueue::ending())
        return question ? Answer::Cancel : Answer::Ok;
    if (answererSlot())
        return answererSlot()({text, style, title});

    QMessageBox box(QApplication::activeWindow());
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setIcon(iconOf(style));
    box.setWindowTitle(title);
    box.setText(text);
    box.setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                                    : QMessageBox::StandardButtons(QMessageBox::Ok));
    const int button = box.exec();
    if (EventQueue::ending() && question)
        return Answer::Cancel;
    return answerOf(button);
}

MessageBox::Answer MessageBox::show(const QString &text, int style)
{
    return show(text, style, applicationTitle());
}

void MessageBox::setAnswerer(std::function<Answer(const Request &)> answerer)
{
    answererSlot() = std::move(answerer);
}
