// The seven presets of the main window: the three displays of the unit's frequency plan, the four
// buttons, and the mode in which the buttons are set.
#pragma once

#include "ui/main/ShownUnit.h"
#include "widgets/ControlArray.h"

#include <QObject>

class QLineEdit;
class QPushButton;
class PanelStatusBar;

namespace Ui {
class frmMain_KeldoX2;
}

class Presets : public QObject
{
    Q_OBJECT

public:
    Presets(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown);

    // Makes the preset objects that the table lacks, gives each its controls, and loads what the
    // buttons have stored.
    void create();
    void EnablePresetsIfTheyreValid();
    // The captions were emptied with the displays: the stored values show again.
    void refresh();
    void UpdateFreqs(clsKeldoX &unit, bool spacingIsKnown); // start, center and stop
    void clearFreqs();
    void clearCaptions();

private:
    void cmdSetPresets_Click();
    void cmdSetDUTFreq_Click(int index);
    void addShortcuts();

    ControlArray<QPushButton> cmdSetDUTFreq{QStringLiteral("cmdSetDUTFreq")};
    ControlArray<QLineEdit> txtFreq{QStringLiteral("txtFreq")};
    QPushButton *cmdSetPresets;
    const QLineEdit *txtCurrentFreq;
    PanelStatusBar *StatusBar;
    const ShownUnit &m_shown;
    bool m_setMode = false;
};
