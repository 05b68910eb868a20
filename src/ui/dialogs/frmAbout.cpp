// The about window.
#include "ui/dialogs/frmAbout.h"

#include "platform/Application.h"
#include "ui_frmAbout.h"
#include "widgets/ScrollPane.h"
#include "widgets/WindowPlace.h"

#include <QApplication>
#include <QIcon>

frmAbout::frmAbout(QWidget *owner) : QDialog(owner), m_ui(std::make_unique<Ui::frmAbout>())
{
    m_ui->setupUi(this);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmAbout::accept);
    Form_Load();
    ScrollPane::wrap(*m_ui->columnLayout, m_ui->textPage);
}

frmAbout::~frmAbout() = default;

void frmAbout::Form_Load()
{
    setWindowTitle(QStringLiteral("   About ") + applicationTitle());
    // Major, minor and revision, as the build knows them.
    m_ui->lblVersion->setText(QStringLiteral("Version ") + applicationVersion());
    m_ui->lblTitle->setText(applicationTitle());
    m_ui->lblDescription->setText(
        QStringLiteral("KELDO-X Series Active Bandpass Filter Tuning Software for Windows"));
    QFont title = font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.4);
    m_ui->lblTitle->setFont(title);
    const int side = fontMetrics().height() * 5;
    m_ui->picIcon->setPixmap(QApplication::windowIcon().pixmap(QSize(side, side)));
    const int room = roomOnScreen(*this).width() - side;
    m_ui->lblDescription->setMinimumWidth(qMin(fontMetrics().height() * 20, room / 2));
}
