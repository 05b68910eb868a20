// The operating instructions.
#include "ui/dialogs/frmOperation.h"

#include "platform/Application.h"
#include "ui_frmOperation.h"
#include "widgets/WindowPlace.h"

frmOperation::frmOperation(QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::frmOperation>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmOperation::close);
    Form_Load();
}

frmOperation::~frmOperation() = default;

void frmOperation::Form_Load()
{
    setWindowTitle(QStringLiteral("   ") + applicationTitle() + QStringLiteral(" Operation"));
    QFont text = font();
    text.setFamily(QStringLiteral("Arial"));
    setFont(text);
    QFont heading = text;
    heading.setBold(true);
    for (QLabel *label : {m_ui->Label1, m_ui->Label10, m_ui->Label11})
        label->setFont(heading);
    heading.setPointSizeF(heading.pointSizeF() * 1.3);
    m_ui->Label2->setFont(heading);
    for (QLabel *unused : {m_ui->Label5, m_ui->Label6, m_ui->Label20})
        unused->hide();

    // The doubled "the" and the double blanks are part of the texts and are kept.
    m_ui->label21->setText(QStringLiteral(
        "Communication Status indicator: \r\n"
        "green = OK, \r\n"
        "red = this program did not get the expected response from the the Keldo-X. "
        "Check the data and power cables (on USB models, it may help to unplug the USB cable, "
        "wait a few seconds, reconnect it, and wait a few seconds for Windows to find the USB "
        "device), then select 'Connect to Keldo-X' from the menu. "));
    m_ui->lblAGC->setText(QStringLiteral(
        "Use the AGC checkbox to select either AGC or manual attenuation.\r\n"
        "When AGC is selected, and the AGC attenuation is set to zero, the output power will be at "
        "the default value of -45 dBm.  "
        "You can lower this power by increasing the AGC attenuation, or raise it by decreasing the "
        "AGC attenuation.  "
        "When manual attenuation is selected and set to zero, the Keldo-X is at its highest output "
        "power. You can lower the "
        "power by increasing the manual attenuation. "));
    const int em = fontMetrics().height();
    resize(withinScreen(*this, QSize(em * 36, em * 46)));
}
