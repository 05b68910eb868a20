// The password box.
#include "ui/dialogs/frmPasswordBox.h"

#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "ui/dialogs/EntryDialog.h"
#include "ui_frmPasswordBox.h"
#include "widgets/DialogOwner.h"

frmPasswordBox::frmPasswordBox()
    : m_dialog(new EntryDialog(dialogOwner())), m_ui(std::make_unique<Ui::frmPasswordBox>())
{
    m_ui->setupUi(m_dialog);
    m_dialog->setModal(true); // also when the end of the program leaves the wait before the box
    m_dialog->onShown = [this] { m_ui->Text1->setFocus(); };
    m_dialog->onEscape = [this] { CancelButton_Click(); };
    connect(m_ui->OKButton, &QPushButton::clicked, this, &frmPasswordBox::OKButton_Click);
    connect(m_ui->CancelButton, &QPushButton::clicked, this, &frmPasswordBox::CancelButton_Click);
    Form_Load();
}

frmPasswordBox::~frmPasswordBox()
{
    if (!m_dialog)
        return;
    setHidePasswordChars(false);
    m_dialog->close();
    delete m_dialog;
}

void frmPasswordBox::Form_Load()
{
    m_dialog->load();
    m_answer = Unanswered;
    setHidePasswordChars(false);
    m_ui->Label1->setText(QStringLiteral("Password"));
    m_result.clear();
    m_ui->Text1->clear();
}

void frmPasswordBox::showModal()
{
    if (!m_dialog || EventQueue::ending())
        return;
    m_dialog->exec();
    if (m_dialog)
        m_dialog->hide();
}

void frmPasswordBox::setHidePasswordChars(bool hide)
{
    if (m_dialog)
        EntryDialog::setCharactersHidden(*m_ui->Text1, hide);
}

void frmPasswordBox::OKButton_Click()
{
    resumeNext(
        "frmPasswordBox.OKButton_Click", [this] { m_result = m_ui->Text1->text(); },
        [this] { m_answer = Entered; }, [this] { m_dialog->accept(); });
}

void frmPasswordBox::CancelButton_Click()
{
    m_answer = Cancelled;
    m_dialog->reject();
}
