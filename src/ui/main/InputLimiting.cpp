// How the input limiting's buttons follow the unit, and what a click sends.
#include "ui/main/InputLimiting.h"

#include "app/Handlers.h"
#include "device/clsKeldoX.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/EntryMark.h"

InputLimiting::InputLimiting(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown)
    : FrameInputLimiting(ui.FrameInputLimiting), m_shown(shown)
{
    optInputLimit.insert({ui.optInputLimit_1, ui.optInputLimit_2, ui.optInputLimit_3}, 1);
    for (const int mode : optInputLimit.all().keys())
        m_modes.add(mode, optInputLimit(mode));
    connect(&m_modes, &OptionSet::Click, this, &InputLimiting::optInputLimit_Click);
}

void InputLimiting::follow(const clsKeldoX &unit)
{
    disconnect(m_following);
    m_following = connect(&unit, &clsKeldoX::InputLimitingModeChange, this,
                          &InputLimiting::mDevice_InputLimitingModeChange);
}

void InputLimiting::mark(bool confirmed)
{
    markConfirmed(*FrameInputLimiting, confirmed);
}

void InputLimiting::mDevice_InputLimitingModeChange(qint16 mode)
{
    reportAndEnd("formMain.DUT_InputLimitingModeChange", [&] {
        if (!m_shown.reportsAreStale)
            ShowInputLimitingMode(mode);
    });
}

void InputLimiting::ShowInputLimitingMode(std::int16_t mode)
{
    const bool offered = optInputLimit.all().contains(mode);
    m_mode = offered ? mode : std::int16_t{0};
    FrameInputLimiting->setEnabled(offered);
    for (QRadioButton *button : optInputLimit.all())
        button->setEnabled(offered);
    m_modes.select(m_mode);
}

void InputLimiting::optInputLimit_Click(int index)
{
    // Refused, or not sent at all: the buttons show the mode that the unit has.
    handle(
        "frmMain.optInputLimit_Click",
        [index, unit = m_shown.mDevice] {
            unit->setInputLimitingMode(static_cast<std::int16_t>(index));
        },
        Afterwards{[this] { m_modes.select(m_mode); }});
}
