// The hidden window that stands for the file dialog of one file object. Never shown. No window
// reaches its dialog: it is kept as a ready component.
#pragma once

#include "widgets/FileChooser.h"

#include <QWidget>

class frmCommonDialog : public QWidget
{
    Q_OBJECT

public:
    frmCommonDialog();

    // Shows the file dialog; nothing when it was cancelled.
    std::optional<QString> choose(const FileChooser::Request &request);
};
