// Input limiting on the main window: the frame and its three modes.
#pragma once

#include "ui/main/ShownUnit.h"
#include "widgets/ControlArray.h"
#include "widgets/OptionSet.h"

class QGroupBox;
class QRadioButton;

namespace Ui {
class frmMain_KeldoX2;
}

class InputLimiting : public QObject
{
    Q_OBJECT

public:
    InputLimiting(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown);

    // From now on the frame shows what this unit says.
    void follow(const clsKeldoX &unit);
    // 1 to 3 select that mode; any other disables the frame and selects none.
    void ShowInputLimitingMode(std::int16_t mode);
    void mark(bool confirmed);

private:
    void optInputLimit_Click(int index);
    void mDevice_InputLimitingModeChange(qint16 mode);

    QGroupBox *FrameInputLimiting;
    ControlArray<QRadioButton> optInputLimit{QStringLiteral("optInputLimit")}; // modes
    OptionSet m_modes;
    const ShownUnit &m_shown;
    QMetaObject::Connection m_following;
    std::int16_t m_mode = 0;
};
