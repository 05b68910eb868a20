// The contact window.
#include "ui/dialogs/frmContact.h"

#include "platform/Application.h"
#include "ui_frmContact.h"
#include "widgets/ScrollPane.h"
#include "widgets/WindowPlace.h"

#include <QDir>
#include <QStandardPaths>

frmContact::frmContact(QWidget *owner) : QDialog(owner), m_ui(std::make_unique<Ui::frmContact>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(m_ui->OKButton, &QPushButton::clicked, this, &frmContact::close);
    Form_Load();
    ScrollPane::wrap(*m_ui->columnLayout, m_ui->textPage);
}

frmContact::~frmContact() = default;

void frmContact::Form_Load()
{
    setWindowTitle(QStringLiteral("   ") + applicationTitle() + QStringLiteral(" Contact"));
    QFont heading = font();
    heading.setBold(true);
    for (QLabel *label : {m_ui->lblReportHeading, m_ui->lblLogHeading})
        label->setFont(heading);
    heading.setPointSizeF(heading.pointSizeF() * 1.2);
    m_ui->lblTitle->setFont(heading);

    const QString log = QDir::toNativeSeparators(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
        QStringLiteral("/keldo-x/Keldo-X.log"));
    m_ui->lblTitle->setText(applicationTitle() + QLatin1Char(' ') + applicationVersion());
    m_ui->lblProject->setText(
        tr("The program lives in its source repository, together with its manual "
           "(docs/manual.md), the list of open faults and the people who look after it."));
    m_ui->lblReportHeading->setText(tr("To report a fault"));
    m_ui->lblReport->setText(
        tr("Open an issue in the repository. Say what you did, what you expected and what you saw, "
           "with the version above and the unit's firmware revision, which the status bar of the "
           "channels window shows."));
    m_ui->lblLogHeading->setText(tr("The log helps most"));
    m_ui->lblLog->setText(
        tr("Open the IO monitor, check \"Log events to a file\" in its Debug settings, repeat what "
           "went wrong, and attach this file:\n%1")
            .arg(log));
    const int room = roomOnScreen(*this).width();
    m_ui->lblProject->setMinimumWidth(qMin(fontMetrics().height() * 26, room / 2));
}
