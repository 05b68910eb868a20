// The box that asks for a unit's access password.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <memory>

class EntryDialog;

namespace Ui {
class frmPasswordBox;
}

// Loading it is making it; unloading it is letting it go.
class frmPasswordBox : public QObject
{
    Q_OBJECT

public:
    enum Answer : std::int16_t {
        Entered = 0,
        Cancelled = 1,
        Unanswered = 2, // just loaded, or closed by its frame: counts as cancelled
    };

    frmPasswordBox();
    ~frmPasswordBox() override;

    // Shows the box over the active window and returns when it was closed, or when the program
    // ends.
    void showModal();

    void setHidePasswordChars(bool hide);       // "*" for every character
    QString result() const { return m_result; } // empty until OK
    std::int16_t answerStatus() const { return m_answer; }

private:
    void Form_Load();
    void OKButton_Click();
    void CancelButton_Click();

    QPointer<EntryDialog> m_dialog; // goes with its owner, if that goes first
    std::unique_ptr<Ui::frmPasswordBox> m_ui;
    QString m_result;
    std::int16_t m_answer = Unanswered;
};
