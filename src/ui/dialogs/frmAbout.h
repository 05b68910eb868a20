// The about window: what the program is and which version. Shown modal.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmAbout;
}

class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *owner = nullptr);
    ~frmAbout() override;

private:
    void Form_Load();

    std::unique_ptr<Ui::frmAbout> m_ui;
};
