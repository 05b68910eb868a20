// The contact window: where the project lives and how to report a fault. Shown modeless.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmContact;
}

class frmContact : public QDialog
{
    Q_OBJECT

public:
    explicit frmContact(QWidget *owner = nullptr);
    ~frmContact() override;

private:
    void Form_Load();

    std::unique_ptr<Ui::frmContact> m_ui;
};
