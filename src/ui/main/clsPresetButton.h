// One stored frequency with the button and the display that show it. The displays of the start,
// center and stop frequencies are presets without a button.
#pragma once

#include <QColor>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QWidget>

#include <cstdint>

class clsPresetButton
{
public:
    static constexpr QColor setModeColor{0x80, 0xFF, 0x80}; // light green
    static constexpr QColor buttonFaceColor{};              // none: the palette's own

    // Tells how to store a preset. No window reaches it: the main window has its own wording.
    void ShowThatPresetIsNotSetMessageBox() const;

    // In set mode a click stores the current frequency; the button is light green then.
    bool SetMode() const { return m_setMode; }
    void setSetMode(bool on);

    bool DisplayCanBeEnabled() const { return m_displayCanBeEnabled; }
    void setDisplayCanBeEnabled(bool can) { m_displayCanBeEnabled = can; }

    // The button's index in its control array; -1 without a button.
    std::int16_t Index() const { return m_index; }
    void setIndex(std::int16_t index) { m_index = index; }

    // The user's settings, key "PresetFrequency" and the index. Raises 75 when they cannot be
    // written.
    void SaveToPersistantStorage() const;
    // A missing entry, or one that is no number, loads as 0.
    void LoadFromPersistantStorage();

    QPushButton *Button() const { return m_button; }
    void setButton(QPushButton *button);

    // A push button or a text box shows the display text; any other control is left alone.
    QWidget *Display() const { return m_display; }
    void setDisplay(QWidget *display) { m_display = display; }

    double value() const { return m_value; } // MHz; 0 and below: not set
    void setValue(double megahertz);
    void refresh(); // shows the value again

    QString DisplayText() const { return m_displayText; }
    void setDisplayText(const QString &text);
    void Clear() { setDisplayText({}); }

    void Disable();
    // Enables the button if there is one. The name notwithstanding the value does not matter: an
    // unset preset has to be clickable to tell how it is set.
    void EnableIfValid();

    bool Enabled() const { return m_enabled; }
    void setEnabled(bool enabled);

private:
    void showMeaning();

    std::int16_t m_index = -1;
    double m_value = 0;
    QPointer<QPushButton> m_button;
    QPointer<QWidget> m_display;
    QString m_displayText;
    bool m_setMode = false;
    bool m_displayCanBeEnabled = false;
    bool m_enabled = false;
};

// Colours a button: setModeColor with black text, or buttonFaceColor.
void setBackColor(QPushButton &button, const QColor &color);
