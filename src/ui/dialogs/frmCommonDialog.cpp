// The file dialog's hidden window.
#include "ui/dialogs/frmCommonDialog.h"

#include <QLabel>
#include <QVBoxLayout>

frmCommonDialog::frmCommonDialog()
{
    setObjectName(QStringLiteral("frmCommonDialog"));
    auto *column = new QVBoxLayout(this);
    // The two blanks have always been there.
    column->addWidget(
        new QLabel(QStringLiteral("this form exists just to hold  a common dialog"), this));
}

std::optional<QString> frmCommonDialog::choose(const FileChooser::Request &request)
{
    return FileChooser::choose(request);
}
