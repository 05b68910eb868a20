// The preset buttons.
#include "ui/main/clsPresetButton.h"

#include "app/Words.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/StoredPreset.h"
#include "core/TextNumbers.h"
#include "widgets/PlainText.h"

#include <QLineEdit>

void setBackColor(QPushButton &button, const QColor &color)
{
    button.setStyleSheet(color.isValid()
                             ? QStringLiteral("QPushButton { background-color: %1; color: black; }"
                                              "QPushButton:disabled { color: #506050; }")
                                   .arg(color.name())
                             : QString());
}

void clsPresetButton::ShowThatPresetIsNotSetMessageBox() const
{
    showMessage(QStringLiteral("That preset button has not been set.\r\n"
                               "To set a preset button to the current frequency, click 'set "
                               "presets' then click the preset button. Then click 'set presets' "
                               "again."),
                MessageBox::Information);
}

void clsPresetButton::setSetMode(bool on)
{
    m_setMode = on;
    if (!m_button)
        return;
    setBackColor(*m_button, on ? setModeColor : buttonFaceColor);
    showMeaning();
}

// In words: the frequency with its unit, and what a click does now.
void clsPresetButton::showMeaning()
{
    if (!m_button)
        return;
    const bool isSet = m_value > 0;
    const int number = m_index - Preset::firstButton + 1;
    const QString frequency =
        isSet ? QObject::tr("%1 MHz").arg(numberToText(m_value)) : QObject::tr("not set");
    QString click = QObject::tr("a click tunes to it");
    if (m_setMode)
        click = isSet ? QObject::tr("a click stores the current frequency in its place")
                      : QObject::tr("a click stores the current frequency here");
    else if (!isSet)
        click = QObject::tr("a click tells how to set it");
    const QString meaning =
        QObject::tr("Preset %1, %2: %3 (Ctrl+%1)").arg(number).arg(frequency, click);
    m_button->setToolTip(meaning);
    m_button->setAccessibleName(QObject::tr("Preset %1: %2").arg(number).arg(frequency));
    m_button->setAccessibleDescription(meaning);
}

void clsPresetButton::SaveToPersistantStorage() const
{
    StoredPreset::write(m_index, m_value);
}

void clsPresetButton::LoadFromPersistantStorage()
{
    setValue(StoredPreset::read(m_index));
}

void clsPresetButton::setButton(QPushButton *button)
{
    m_button = button;
    // Elements of a control array are named name_index.
    m_index =
        button ? button->objectName().section(QLatin1Char('_'), -1).toShort() : std::int16_t{-1};
    setSetMode(m_setMode);
}

void clsPresetButton::setValue(double megahertz)
{
    m_value = megahertz;
    refresh();
    showMeaning();
}

void clsPresetButton::refresh()
{
    setDisplayText(m_value > 0 ? numberToTextWithBlank(m_value) : QString());
}

void clsPresetButton::setDisplayText(const QString &text)
{
    m_displayText = text;
    if (auto *button = qobject_cast<QPushButton *>(m_display.data()))
        button->setText(plainCaption(text));
    else if (auto *box = qobject_cast<QLineEdit *>(m_display.data()))
        box->setText(text);
}

void clsPresetButton::Disable()
{
    setEnabled(false);
}

void clsPresetButton::EnableIfValid()
{
    reportAndEnd("clsPresetButton.EnableIfValid", [this] {
        if (m_button)
            setEnabled(true);
    });
}

void clsPresetButton::setEnabled(bool enabled)
{
    m_enabled = enabled;
    if (m_button)
        m_button->setEnabled(enabled);
}
