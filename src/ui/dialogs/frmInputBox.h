// The program's input box: one prompt, one entry, OK and Cancel. The caller chooses the kind of
// answer; the box converts or checks the entry before it closes. Windows ask for numbers alone; the
// other kinds are kept as ready components.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <memory>
#include <variant>

class EntryDialog;

namespace Ui {
class frmInputBox;
}

// Loading it is making it; unloading it is letting it go.
class frmInputBox : public QObject
{
    Q_OBJECT

public:
    using Result = std::variant<double, QString>;

    enum Kind : std::int16_t {
        NumberIfNumeric = 0, // and every value that is not listed
        Number = 1,
        Text = 2,
        IPAddress = 3,
    };

    enum Answer : std::int16_t {
        Entered = 0,
        Cancelled = 1,
        Unanswered = 2, // just loaded, closed by its frame, or an address was refused
    };

    frmInputBox();
    ~frmInputBox() override;

    // Shows the box over the active window and returns when it was closed, or when the program
    // ends. May be called again: the entry stays as it is.
    void showModal();

    void setHidePasswordChars(bool hide); // "*" for every character
    void setResultType(std::int16_t kind) { m_kind = kind; }
    void setInputBoxWidth(int pixels); // of the entry
    void setText(const QString &prompt);
    // Puts the text into the entry and keeps it: a Number that is none becomes its number.
    void setDefaultValue(const QString &text);
    void clearEntry();

    // Set when OK succeeds: a number for Number and for numeric text of NumberIfNumeric.
    const Result &result() const { return m_result; }
    QString resultText() const; // the result as text, whichever it is
    std::int16_t answerStatus() const { return m_answer; }

private:
    void Form_Load();
    void OKButton_Click();
    void CancelButton_Click();
    void takeEntry();

    QPointer<EntryDialog> m_dialog; // goes with its owner, if that goes first
    std::unique_ptr<Ui::frmInputBox> m_ui;
    std::int16_t m_kind = NumberIfNumeric;
    QString m_defaultValue;
    Result m_result = 0.0;
    std::int16_t m_answer = Unanswered;
};
