// Tuning from the main window: the frequency box and the step slider, and how both follow the
// unit's frequency.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/WhileDisabled.h"

#include <QScopedValueRollback>

// A text that is no number is ignored without a message; "145.5 MHz" is one. The text is selected
// afterwards, so that the next frequency replaces it.
void frmMain_KeldoX2::txtCurrentFreq_KeyUp()
{
    handle(
        "frmMain.txtCurrentFreq_KeyUp",
        [this, unit = mDevice] {
            if (const auto megahertz = numberWithUnit(m_ui->txtCurrentFreq->text()))
                unit->setCurrentFreq(*megahertz);
        },
        Afterwards{[this] {
            if (m_ui->txtCurrentFreq->hasFocus())
                m_ui->txtCurrentFreq->selectAll();
        }});
}

// Sends the frequency shown once more.
void frmMain_KeldoX2::txtCurrentFreq_DblClick()
{
    handle("frmMain.txtCurrentFreq_DblClick", [this, unit = mDevice] {
        const double megahertz = leadingNumber(m_ui->txtCurrentFreq->text());
        if (megahertz > 0)
            unit->setCurrentFreq(megahertz);
    });
}

// While the thumb is dragged only the box follows; the unit tunes when it is let go.
void frmMain_KeldoX2::HScroll1_Scroll(int position)
{
    reportAndEnd("frmMain.HScroll1_Scroll", [&] {
        const double start = leadingNumber(txtFreq(1)->text());
        const double offset = mDevice->StepsToMHz(position * app().sliderScale);
        m_ui->txtCurrentFreq->setText(numberToText(start + offset));
    });
}

void frmMain_KeldoX2::HScroll1_Change()
{
    if (!m_ui->HScroll1->isEnabled() || !m_sliderEvents)
        return;
    const qint32 step = m_ui->HScroll1->value() * app().sliderScale;
    // A step that was refused, or that the unit ignores because rounding took it beyond the
    // maximum: slider and box go back to where the unit is.
    handle(
        "frmMain.HScroll1_Change", [&] { sendStep(step); }, Afterwards{[this] { followUnit(); }});
}

// The slider is disabled meanwhile, so that no second change arrives while the unit works.
void frmMain_KeldoX2::sendStep(qint32 step)
{
    const auto unit = mDevice;
    const Still shown = m_shown.still();
    WhileDisabled hold(m_ui->HScroll1);
    unit->setCurrentStep(step);
    if (!shown)
        hold.keepDisabled();
}

// A drag that ends where it began sends nothing: the box shows the unit's frequency again.
void frmMain_KeldoX2::HScroll1_Released()
{
    if (m_ui->HScroll1->sliderPosition() == m_ui->HScroll1->value())
        followUnit();
}

void frmMain_KeldoX2::mDevice_FreqChange(qint32 step, double freqMHz)
{
    if (m_reportsAreStale)
        return;
    m_tuning = Tuning{step, freqMHz};
    followUnit();
}

void frmMain_KeldoX2::followUnit()
{
    if (!m_tuning)
        return;
    const Tuning tuning = *m_tuning;
    resumeNext(
        "frmMain.DUT_FreqChange", [&] { moveSlider(tuning.step); },
        [&] { m_ui->txtCurrentFreq->setText(numberToText(tuning.megahertz)); });
}

// A step beyond the slider's end leaves the slider where it is.
void frmMain_KeldoX2::moveSlider(qint32 step)
{
    StepSlider *slider = m_ui->HScroll1;
    const double place = static_cast<double>(step) / app().sliderScale;
    // The thumb that the operator holds stays where the hand is.
    if (place == slider->value() || place > slider->maximum() || slider->isSliderDown())
        return;
    const QScopedValueRollback quiet(m_sliderEvents, false);
    slider->setValue(toInt32(place));
}
