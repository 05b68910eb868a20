// The port chooser.
#include "ui/connect/clsChooseAPort.h"

#include "app/modSearchPorts.h"

#include <QComboBox>

clsChooseAPort::clsChooseAPort(std::shared_ptr<frmConnectToComport> dialog)
    : m_dialog(dialog ? std::move(dialog) : std::make_shared<frmConnectToComport>()),
      m_combo(&m_dialog->comboComPort())
{
    connect(m_combo, &QComboBox::activated, this, &clsChooseAPort::m_combo_Click);
}

void clsChooseAPort::PopulateComboBox(QComboBox &combo)
{
    PopulateComboBoxFor("PopulateComboBox", combo);
}

void clsChooseAPort::m_combo_Click()
{
    static_cast<void>(m_combo->isEnabled());
}
