// The operating instructions. Shown modeless.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmOperation;
}

class frmOperation : public QDialog
{
    Q_OBJECT

public:
    explicit frmOperation(QWidget *owner = nullptr);
    ~frmOperation() override;

private:
    void Form_Load();

    std::unique_ptr<Ui::frmOperation> m_ui;
};
