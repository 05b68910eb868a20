// The program's own password.
#include "ui/dialogs/clsPasswordHandler.h"

#include "core/Message.h"
#include "core/ResumeNext.h"
#include "platform/Application.h"
#include "platform/SettingsStore.h"
#include "ui/dialogs/frmInputBox.h"

#include <optional>

static constexpr int shortestPassword = 6;

static QString section()
{
    return QStringLiteral("Settings");
}

static QString key()
{
    return QStringLiteral("pwd");
}

static void prepareHiddenEntry(frmInputBox &box, const QString &prompt)
{
    box.setResultType(frmInputBox::Text);
    box.setHidePasswordChars(true);
    box.setDefaultValue(QString());
    box.setText(prompt);
}

// Nothing when the box was cancelled.
static std::optional<QString> ask(frmInputBox &box)
{
    box.showModal();
    if (box.answerStatus() != frmInputBox::Entered)
        return std::nullopt;
    return box.resultText();
}

bool clsPasswordHandler::PasswordExists()
{
    m_password = SettingsStore::read(applicationTitle(), section(), key());
    return !m_password.isEmpty();
}

bool clsPasswordHandler::CreateNewPassword()
{
    bool created = false;
    reportAndEnd("clsPasswordHandler.CreateNewPassword", [&] {
        std::optional<QString> again;
        std::optional<QString> password;
        {
            frmInputBox box;
            prepareHiddenEntry(box, QStringLiteral("Enter a password (at least 6 characters)"));
            password = ask(box);
            if (!password)
                return;
            if (password->size() < shortestPassword) {
                showMessage(QStringLiteral("invalid password"), MessageBox::Exclamation);
                return;
            }
            box.clearEntry();
            box.setText(QStringLiteral("Re-enter the password"));
            again = ask(box);
        }
        if (!again) // giving up at the second entry saves nothing
            return;
        if (*again != *password) {
            showMessage(QStringLiteral("password did not match"), MessageBox::Exclamation);
            return;
        }
        SettingsStore::write(applicationTitle(), section(), key(), *password);
        m_password = *password;
        created = true;
    });
    return created;
}

bool clsPasswordHandler::checkPassword() const
{
    std::optional<QString> entered;
    {
        frmInputBox box;
        prepareHiddenEntry(box, QStringLiteral("Enter the password"));
        entered = ask(box);
    }
    if (!entered)
        return false;
    if (*entered == m_password)
        return true;
    showMessage(QStringLiteral("invalid password"), MessageBox::Exclamation);
    return false;
}

bool clsPasswordHandler::getPassword()
{
    bool granted = false;
    reportAndEnd("clsPasswordHandler.getPassword", [&] {
        if (PasswordExists()) {
            granted = checkPassword();
            return;
        }
        const auto answer =
            showMessage(QStringLiteral("There is no password. Do you want to set one?"),
                        MessageBox::Question | MessageBox::YesNoCancel);
        if (answer == MessageBox::Answer::Yes)
            granted = CreateNewPassword();
        else
            granted = answer == MessageBox::Answer::No;
    });
    return granted;
}
