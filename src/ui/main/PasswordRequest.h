// Asks the operator for the unit's password when the unit refuses something, and sends it.
#pragma once

#include "ui/main/ShownUnit.h"

#include <QObject>

class frmPasswordBox;

class PasswordRequest : public QObject
{
    Q_OBJECT

public:
    explicit PasswordRequest(const ShownUnit &shown);
    ~PasswordRequest() override;

    void follow(const clsKeldoX &unit);

private:
    void mDevice_GetPassword();

    const ShownUnit &m_shown;
    std::unique_ptr<frmPasswordBox> m_box; // while it is shown
    QMetaObject::Connection m_following;
};
