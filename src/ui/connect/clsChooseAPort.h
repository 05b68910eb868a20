// A companion of the connect-to-port dialog: wraps its port list and can fill it the same way. No
// window reaches it: it is kept as a ready component.
#pragma once

#include "ui/connect/frmConnectToComport.h"

#include <QObject>

#include <memory>

class clsChooseAPort : public QObject
{
    Q_OBJECT

public:
    // Binds the dialog's list; without a dialog it makes one of its own.
    explicit clsChooseAPort(std::shared_ptr<frmConnectToComport> dialog = {});

    void Init() {} // does nothing

    // Lists the ports that can be opened, without the highest-numbered one. With none at all an
    // error is reported and the list stays disabled.
    void PopulateComboBox(QComboBox &combo);

    // Reads whether the list is enabled and has no other effect.
    void m_combo_Click();

private:
    std::shared_ptr<frmConnectToComport> m_dialog;
    QComboBox *m_combo;
};
