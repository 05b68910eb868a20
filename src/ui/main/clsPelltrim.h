// Ties the fine-tuning controls (scroll bar, text box, "Calibrated" check box and the frame around
// them) to the unit whose fine offset they show.
#pragma once

#include "core/Presence.h"
#include "device/clsKeldoX.h"

#include <optional>

class QCheckBox;
class QLineEdit;
class QScrollBar;

class clsPelltrim : public QObject
{
    Q_OBJECT

public:
    clsPelltrim(QScrollBar *scrollBar, QLineEdit *textBox, QCheckBox *checkBox, QWidget *frame);

    // The unit whose events are shown; the one before is let go.
    std::shared_ptr<clsKeldoX> device() const { return mDevice; }
    void setDevice(std::shared_ptr<clsKeldoX> device);

    // Blanks the text box and disables the whole frame.
    void DisableControls();
    // Asks for what the controls show, where the unit can be fine-tuned.
    void readAgain();

    void mDevice_DUTChange();
    void mDevice_ZNChange(qint16 setting); // clicks
    void mDevice_ZNcalModeChange(const bool &on);
    void mDevice_ConfirmationChange(UnitValue value, bool confirmed);

private:
    void mchkZNcal_Click();
    void mHScrollZN_Change();
    void mHScrollZN_Scroll(int position);
    void mHScrollZN_Released();
    void mtxtZN_Enter(const char *source);

    void send(std::int16_t clicks);
    void sendAllWaiting(std::int16_t clicks);
    void showClicks(std::int16_t clicks);
    void moveScrollBar(int value);
    void showUnit(clsKeldoX &unit);
    void enableFor(bool calibrated);
    void setCalMode(bool on);
    void endDrag();

    QScrollBar *mHScrollZN;
    QLineEdit *mtxtZN;
    QCheckBox *mchkZNcal;
    QWidget *m_frame;
    std::shared_ptr<clsKeldoX> mDevice;

    bool m_eventsEnabled = true;           // down while code moves the scroll bar
    bool m_calibrated = false;             // the mode that the unit has
    std::optional<std::int16_t> m_setting; // last heard from the unit
    bool m_reportsAreStale = false;        // the unit went away
    bool m_sending = false;
    std::optional<std::int16_t> m_waiting; // the newest value given while one is being sent
    Presence m_tunable;                    // of a unit behind controls that are switched on
};
