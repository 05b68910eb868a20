// Message boxes over QMessageBox.
#include "widgets/MessageBox.h"

#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "widgets/DialogOwner.h"

#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QScopeGuard>

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

// The text format holds for the box's own text; the informative text has a label of its own.
void showAsPlainText(const QMessageBox &box)
{
    for (QLabel *label : box.findChildren<QLabel *>())
        if (!label->text().isEmpty())
            label->setTextFormat(Qt::PlainText);
}

} // namespace

MessageBox::Answer MessageBox::show(const Request &request)
{
    const bool question = (request.style & buttonMask) == YesNoCancel;
    if (EventQueue::ending())
        return question ? Answer::Cancel : Answer::Ok;
    if (answererSlot())
        return answererSlot()(request);

    // Its owner may go while it is shown, and takes it along.
    const QPointer<QMessageBox> box = new QMessageBox(dialogOwner());
    const auto dispose = qScopeGuard([&] { delete box; });
    box->setObjectName(QStringLiteral("MessageBox"));
    box->setTextFormat(Qt::PlainText);
    box->setIcon(iconOf(request.style));
    box->setWindowTitle(request.title);
    box->setText(request.text);
    box->setInformativeText(request.informative);
    showAsPlainText(*box);
    box->setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                                     : QMessageBox::StandardButtons(QMessageBox::Ok));
    const int button = box->exec();
    if (EventQueue::ending() && question)
        return Answer::Cancel;
    return answerOf(button);
}

MessageBox::Answer MessageBox::show(const QString &text, int style, const QString &title)
{
    return show(Request{text, style, title});
}

MessageBox::Answer MessageBox::show(const QString &text, int style)
{
    return show(text, style, applicationTitle());
}

void TestHooks::answerBoxes(std::function<MessageBox::Answer(const MessageBox::Request &)> answerer)
{
    answererSlot() = std::move(answerer);
}
