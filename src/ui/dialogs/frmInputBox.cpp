// The input box.
#include "ui/dialogs/frmInputBox.h"

#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/EventQueue.h"
#include "ui/dialogs/EntryDialog.h"
#include "ui/dialogs/IPAddress.h"
#include "ui_frmInputBox.h"
#include "widgets/DialogOwner.h"

frmInputBox::frmInputBox()
    : m_dialog(new EntryDialog(dialogOwner())), m_ui(std::make_unique<Ui::frmInputBox>())
{
    m_ui->setupUi(m_dialog);
    m_dialog->onShown = [this] {
        m_ui->Text1->setFocus();
        m_ui->Text1->selectAll();
    };
    m_dialog->onEscape = [this] { CancelButton_Click(); };
    connect(m_ui->OKButton, &QPushButton::clicked, this, &frmInputBox::OKButton_Click);
    connect(m_ui->CancelButton, &QPushButton::clicked, this, &frmInputBox::CancelButton_Click);
    // A developer's button without a function: it stays out of the operator's sight.
    m_ui->cmdUnittest->hide();
    Form_Load();
}

frmInputBox::~frmInputBox()
{
    if (!m_dialog)
        return;
    setHidePasswordChars(false);
    m_dialog->close();
    delete m_dialog;
}

void frmInputBox::Form_Load()
{
    m_dialog->load();
    m_kind = NumberIfNumeric;
    m_defaultValue = QStringLiteral("0");
    m_answer = Unanswered;
    setHidePasswordChars(false);
}

void frmInputBox::showModal()
{
    m_answer = Unanswered;
    if (m_dialog && !EventQueue::ending())
        m_dialog->exec();
}

void frmInputBox::setHidePasswordChars(bool hide)
{
    if (m_dialog)
        EntryDialog::setCharactersHidden(*m_ui->Text1, hide);
}

void frmInputBox::setInputBoxWidth(int pixels)
{
    if (m_dialog)
        m_ui->Text1->setFixedWidth(pixels);
}

void frmInputBox::setText(const QString &prompt)
{
    if (!m_dialog)
        return;
    m_ui->Label1->setText(prompt);
    m_ui->Text1->setAccessibleName(prompt);
}

void frmInputBox::setDefaultValue(const QString &text)
{
    m_defaultValue = text;
    if (m_dialog)
        m_ui->Text1->setText(text);
}

void frmInputBox::clearEntry()
{
    if (m_dialog)
        m_ui->Text1->clear();
}

QString frmInputBox::resultText() const
{
    const auto *number = std::get_if<double>(&m_result);
    return number ? numberToText(*number) : std::get<QString>(m_result);
}

void frmInputBox::OKButton_Click()
{
    reportAndEnd("frmInputBox.OKButton_Click", [this] {
        if (m_kind == IPAddress && !IsValidIPAddress(m_ui->Text1->text())) {
            showMessage(QStringLiteral("IP addresses must be in the form  x.x.x.x  where x is an "
                                       "integer from 0 to 255"),
                        MessageBox::Exclamation);
            m_answer = Unanswered;
            return; // the box may have gone meanwhile
        }
        takeEntry();
        m_answer = Entered;
        m_dialog->accept();
    });
}

void frmInputBox::takeEntry()
{
    const QString text = m_ui->Text1->text();
    const bool wantsText = m_kind == Text || m_kind == IPAddress;
    if (!wantsText && isNumeric(text))
        m_result = numericValue(text);
    else if (m_kind == Number)
        m_result = leadingNumber(m_defaultValue); // an entry that is no number is never refused
    else
        m_result = text;
}

void frmInputBox::CancelButton_Click()
{
    m_answer = Cancelled;
    m_dialog->reject();
}
