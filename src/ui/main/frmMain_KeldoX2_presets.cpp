// The preset buttons of the main window and the mode in which they are set.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "app/Words.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "ui/main/clsPresetButton.h"
#include "ui_frmMain_KeldoX2.h"

void frmMain_KeldoX2::EnablePresetsIfTheyreValid()
{
    for (int i = Preset::start; i <= Preset::last; ++i)
        if (const auto preset = app().presets[i])
            preset->EnableIfValid();
}

// The captions were emptied with the displays: the stored values show again.
void frmMain_KeldoX2::showPresets()
{
    for (int i = Preset::firstButton; i <= Preset::last; ++i)
        if (const auto preset = app().presets[i])
            preset->refresh();
}

void frmMain_KeldoX2::cmdSetPresets_Click()
{
    handle("frmMain.cmdSetPresets_Click", [this] {
        m_setMode = !m_setMode;
        setBackColor(*m_ui->cmdSetPresets,
                     m_setMode ? clsPresetButton::setModeColor : clsPresetButton::buttonFaceColor);
        const QString meaning =
            m_setMode ? tr("Setting presets: click a preset to store the current frequency, "
                           "then click here again")
                      : tr("Then click a preset to store the current frequency in it");
        m_ui->cmdSetPresets->setToolTip(meaning);
        m_ui->cmdSetPresets->setAccessibleDescription(meaning);
        for (int i = Preset::firstButton; i <= Preset::last; ++i) {
            app().presets[i]->setSetMode(m_setMode);
            app().presets[i]->setEnabled(true);
        }
    });
}

// The number that the frequency box shows. Raises 13 (type mismatch) when it shows none.
static double shownFrequency(const QString &text)
{
    const auto megahertz = numberWithUnit(text);
    return megahertz ? *megahertz : numericValue(text);
}

// Says the same as the preset's own message but for ", then": both wordings are kept on purpose.
static void tellThatPresetIsNotSet()
{
    showMessage(QStringLiteral("That preset button has not been set.\r\n"
                               "To set a preset button to the current frequency, click 'set "
                               "presets' then click the preset button, then click 'set presets' "
                               "again."),
                MessageBox::Information);
}

void frmMain_KeldoX2::cmdSetDUTFreq_Click(int index)
{
    const auto preset = app().presets[index];
    handle("frmMain.cmdSetDUTFreq_Click", [this, preset, unit = mDevice] {
        if (preset->SetMode()) {
            preset->setValue(shownFrequency(m_ui->txtCurrentFreq->text()));
            preset->SaveToPersistantStorage();
        } else if (preset->value() <= 0) {
            tellThatPresetIsNotSet();
        } else {
            unit->setCurrentFreq(preset->value());
        }
    });
}
