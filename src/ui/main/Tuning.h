// Tuning from the main window: the frequency box and the step slider, and how both follow the
// unit's frequency.
#pragma once

#include "ui/main/ShownUnit.h"

#include <QObject>
#include <QScopedValueRollback>

#include <optional>

class QLineEdit;
class StepSlider;

namespace Ui {
class frmMain_KeldoX2;
}

class Tuning : public QObject
{
    Q_OBJECT

public:
    Tuning(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown);

    // From now on the controls show what this unit says; what the one before said is forgotten.
    void follow(const clsKeldoX &unit);
    // Sets the slider's scale, end and page by the unit's steps.
    void showRange(clsKeldoX &unit);
    // The plan as the unit has told it, 0 for what it has not: places are shown only inside one.
    void setPlan(double startMHz, std::int32_t spacingHz);
    void markFrequency(bool confirmed);

    // Until they are allowed, and while code moves the slider, its changes are not sent.
    void allowSliderEvents() { m_sliderEvents = true; }
    [[nodiscard]] QScopedValueRollback<bool> withoutSliderEvents()
    {
        return QScopedValueRollback(m_sliderEvents, false);
    }

    void select(); // typing replaces the frequency
    // The slider is enabled only while the unit's place is known.
    void enable();
    void disable();
    void clear(); // nothing is known of the unit

private:
    void txtCurrentFreq_KeyUp();
    void txtCurrentFreq_DblClick();
    void HScroll1_Scroll(int position);
    void HScroll1_Change();
    void HScroll1_Released();
    void mDevice_FreqChange(qint32 step, double freqMHz);
    void addShortcuts();
    void sendStep(qint32 step);
    void followUnit();
    void moveSlider(qint32 step);
    void learnSpacing(const clsKeldoX &unit, qint32 step, double freqMHz);
    void updateSlider();

    QLineEdit *txtCurrentFreq;
    StepSlider *HScroll1;
    const QLineEdit *m_startFreq;
    const ShownUnit &m_shown;
    QMetaObject::Connection m_following;

    struct Place
    {
        qint32 step = 0;
        double megahertz = 0;
    };
    std::optional<Place> m_unitsPlace; // as last heard from it
    double m_startMHz = 0;             // 0: not known
    std::int32_t m_spacingHz = 0;      // as last heard; 0: not known
    bool m_enabled = false;
    bool m_sending = false;
    bool m_sliderEvents = false;
};
