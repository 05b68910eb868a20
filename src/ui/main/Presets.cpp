// The presets and the mode in which they are set.
#include "ui/main/Presets.h"

#include "app/Handlers.h"
#include "app/Words.h"
#include "core/Message.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "platform/RunTimeError.h"
#include "ui/main/clsPresetButton.h"
#include "ui_frmMain_KeldoX2.h"

#include "widgets/PanelStatusBar.h"

#include <QShortcut>

Presets::Presets(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown)
    : cmdSetPresets(ui.cmdSetPresets),
      txtCurrentFreq(ui.txtCurrentFreq),
      StatusBar(ui.StatusBar),
      m_shown(shown)
{
    txtFreq.insert({ui.txtFreq_1, ui.txtFreq_2, ui.txtFreq_3}, Preset::start);
    cmdSetDUTFreq.insert(
        {ui.cmdSetDUTFreq_4, ui.cmdSetDUTFreq_5, ui.cmdSetDUTFreq_6, ui.cmdSetDUTFreq_7},
        Preset::firstButton);
    for (int i = Preset::firstButton; i <= Preset::last; ++i)
        connect(cmdSetDUTFreq(i), &QPushButton::clicked, this,
                [this, i] { cmdSetDUTFreq_Click(i); });
    connect(cmdSetPresets, &QPushButton::clicked, this, &Presets::cmdSetPresets_Click);
    addShortcuts();
}

void Presets::addShortcuts()
{
    for (int i = Preset::firstButton; i <= Preset::last; ++i) {
        const auto keys = QStringLiteral("Ctrl+%1").arg(i - Preset::firstButton + 1);
        auto *shortcut = new QShortcut(QKeySequence(keys), cmdSetPresets->window());
        connect(shortcut, &QShortcut::activated, cmdSetDUTFreq(i), &QPushButton::animateClick);
    }
}

void Presets::create()
{
    auto &presets = app().presets;
    for (int i = Preset::start; i <= Preset::last; ++i) {
        if (!presets[i])
            presets[i] = std::make_shared<clsPresetButton>();
        if (i < Preset::firstButton) {
            presets[i]->setDisplay(txtFreq(i));
            continue;
        }
        presets[i]->setButton(cmdSetDUTFreq(i));
        presets[i]->setDisplay(cmdSetDUTFreq(i));
        presets[i]->LoadFromPersistantStorage();
    }
}

void Presets::EnablePresetsIfTheyreValid()
{
    for (int i = Preset::start; i <= Preset::last; ++i)
        if (const auto preset = app().presets[i])
            preset->EnableIfValid();
}

void Presets::refresh()
{
    for (int i = Preset::firstButton; i <= Preset::last; ++i)
        if (const auto preset = app().presets[i])
            preset->refresh();
}

// A display whose frequency would be made of something that could not be read stays empty.
void Presets::UpdateFreqs(clsKeldoX &unit, bool spacingIsKnown)
{
    auto &presets = app().presets;
    presets[Preset::start]->setValue(unit.StartFreq());
    presets[Preset::center]->setValue(unit.CenterFreq());
    presets[Preset::stop]->setValue(unit.StopFreq());
    const bool startIsKnown = presets[Preset::start]->value() > 0;
    const bool endIsKnown = startIsKnown && spacingIsKnown && unit.MaxStep() > 0;
    for (int i = Preset::start; i <= Preset::stop; ++i) {
        const bool isKnown = i == Preset::start ? startIsKnown : endIsKnown;
        presets[i]->setDisplayText(
            isKnown ? numberToText(presets[i]->value()) + QStringLiteral(" MHz") : QString());
        presets[i]->Display()->setVisible(true);
    }
}

void Presets::clearFreqs()
{
    for (QLineEdit *box : txtFreq.all())
        box->clear();
}

void Presets::clearCaptions()
{
    for (QPushButton *button : cmdSetDUTFreq.all())
        button->setText({});
}

void Presets::cmdSetPresets_Click()
{
    handle("frmMain.cmdSetPresets_Click", [this] {
        m_setMode = !m_setMode;
        setBackColor(*cmdSetPresets,
                     m_setMode ? clsPresetButton::setModeColor : clsPresetButton::buttonFaceColor);
        const QString meaning =
            m_setMode ? tr("Setting presets: click a preset to store the current frequency, "
                           "then click here again")
                      : tr("Then click a preset to store the current frequency in it");
        cmdSetPresets->setToolTip(meaning);
        cmdSetPresets->setAccessibleDescription(meaning);
        for (int i = Preset::firstButton; i <= Preset::last; ++i) {
            app().presets[i]->setSetMode(m_setMode);
            app().presets[i]->setEnabled(true);
        }
    });
}

// The number that the frequency box shows. Raises 13 (type mismatch) when it shows none.
static double shownFrequency(const QString &text)
{
    if (const auto megahertz = frequencyInMHz(text))
        return *megahertz;
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       QObject::tr("There is no frequency in the box to store: type one in MHz, "
                                   "then click the preset again."));
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

void Presets::cmdSetDUTFreq_Click(int index)
{
    const auto preset = app().presets[index];
    handle("frmMain.cmdSetDUTFreq_Click", [this, preset, unit = m_shown.mDevice] {
        if (preset->SetMode()) {
            preset->setValue(shownFrequency(txtCurrentFreq->text()));
            preset->SaveToPersistantStorage();
        } else if (preset->value() <= 0) {
            tellThatPresetIsNotSet();
        } else if (!unit->DeviceFound() || !unit->PortIsOpen()) {
            StatusBar->setPanelText(MainPanel::connection, Words::notConnected);
        } else {
            unit->setCurrentFreq(preset->value());
        }
    });
}
