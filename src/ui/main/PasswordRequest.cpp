// The password box and what is sent after it.
#include "ui/main/PasswordRequest.h"

#include "core/ResumeNext.h"
#include "device/clsKeldoX.h"
#include "platform/EventQueue.h"
#include "ui/dialogs/frmPasswordBox.h"

PasswordRequest::PasswordRequest(const ShownUnit &shown) : m_shown(shown) {}

PasswordRequest::~PasswordRequest() = default;

void PasswordRequest::follow(const clsKeldoX &unit)
{
    disconnect(m_following);
    m_following =
        connect(&unit, &clsKeldoX::GetPassword, this, &PasswordRequest::mDevice_GetPassword);
}

// The command is sent also after Cancel, deliberately, then with nothing behind the blank.
void PasswordRequest::mDevice_GetPassword()
{
    if (m_box) // one box is enough, whatever else is refused while it is open
        return;
    reportAndEnd("formMain.DUT_GetPassword", [this] {
        const auto unit = m_shown.mDevice;
        QString password;
        m_box = std::make_unique<frmPasswordBox>();
        m_box->showModal();
        if (m_box->answerStatus() == frmPasswordBox::Entered)
            password = m_box->result();
        m_box.reset();
        if (!EventQueue::ending())
            unit->deviceWrite(QStringLiteral("PASSWORD ") + password);
    });
}
