// The frequency box and the step slider.
#include "ui/main/Tuning.h"

#include "app/Handlers.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/EntryEvents.h"
#include "widgets/EntryMark.h"
#include "widgets/WhileDisabled.h"

#include <QShortcut>

static constexpr std::int32_t mostSingleSteps = 32000; // beyond it four steps are one slider unit
static constexpr double pageMHz = 2.5;
static constexpr double hertzPerMegahertz = 1000000.0;

Tuning::Tuning(const Ui::frmMain_KeldoX2 &ui, const ShownUnit &shown)
    : txtCurrentFreq(ui.txtCurrentFreq),
      HScroll1(ui.HScroll1),
      m_startFreq(ui.txtFreq_1),
      m_shown(shown)
{
    const auto *entry = EntryEvents::watch(txtCurrentFreq);
    connect(entry, &EntryEvents::EnterUp, this, &Tuning::txtCurrentFreq_KeyUp);
    connect(entry, &EntryEvents::DblClick, this, &Tuning::txtCurrentFreq_DblClick);
    connect(HScroll1, &StepSlider::sliderMoved, this, &Tuning::HScroll1_Scroll);
    connect(HScroll1, &StepSlider::valueChanged, this, &Tuning::HScroll1_Change);
    connect(HScroll1, &StepSlider::sliderReleased, this, &Tuning::HScroll1_Released);
    EntryMark::of(*txtCurrentFreq).setReading(frequencyInMHz);
    addShortcuts();
}

void Tuning::addShortcuts()
{
    QWidget *window = txtCurrentFreq->window();
    const auto *frequency = new QShortcut(QKeySequence(QStringLiteral("Ctrl+F")), window);
    connect(frequency, &QShortcut::activated, this, &Tuning::select);
    const auto *slider = new QShortcut(QKeySequence(QStringLiteral("Ctrl+T")), window);
    connect(slider, &QShortcut::activated, this,
            [this] { HScroll1->setFocus(Qt::ShortcutFocusReason); });
}

void Tuning::follow(const clsKeldoX &unit)
{
    disconnect(m_following);
    m_unitsPlace.reset();
    m_following = connect(&unit, &clsKeldoX::FreqChange, this, &Tuning::mDevice_FreqChange);
}

void Tuning::showRange(clsKeldoX &unit)
{
    const std::int32_t maxStep = unit.MaxStep();
    const std::int16_t scale = maxStep > mostSingleSteps ? 4 : 1;
    app().sliderScale = scale;
    HScroll1->setMaximum(toInt32(static_cast<double>(maxStep) / scale));
    // Not divided by the scale on purpose: on units of many steps a page is 10 MHz.
    const std::int32_t page = toInt32(unit.MHzToSteps(pageMHz));
    if (HScroll1->minimum() <= page && page < HScroll1->maximum())
        HScroll1->setPageStep(page);
}

void Tuning::setPlan(double startMHz, std::int32_t spacingHz)
{
    m_startMHz = startMHz;
    m_spacingHz = spacingHz;
    updateSlider();
}

void Tuning::markFrequency(bool confirmed)
{
    EntryMark::of(*txtCurrentFreq).setConfirmed(confirmed);
}

// Also where the box has the focus already.
void Tuning::select()
{
    txtCurrentFreq->setFocus(Qt::ShortcutFocusReason);
    txtCurrentFreq->selectAll();
}

void Tuning::enable()
{
    m_enabled = true;
    txtCurrentFreq->setEnabled(true);
    updateSlider();
}

// An arrow key on a slider whose place is not the unit's would tune from the wrong one.
void Tuning::updateSlider()
{
    if (!m_sending)
        HScroll1->setEnabled(m_enabled && m_unitsPlace && HScroll1->maximum() > 0);
}

void Tuning::disable()
{
    m_enabled = false;
    // Disabling a control would hand the focus on, and the next key to whoever gets it.
    for (QWidget *control :
         {static_cast<QWidget *>(txtCurrentFreq), static_cast<QWidget *>(HScroll1)})
        if (control->hasFocus())
            control->clearFocus();
    txtCurrentFreq->setEnabled(false);
    HScroll1->setEnabled(false);
}

void Tuning::clear()
{
    m_unitsPlace.reset();
    setPlan(0, 0);
    const auto quiet = withoutSliderEvents();
    // An end of the unit before must not bound the first place of the next one.
    HScroll1->setSliderDown(false);
    HScroll1->setValue(HScroll1->minimum());
    EntryMark::of(*txtCurrentFreq).clear();
}

// A text that is no number is ignored without a message; "145.5 MHz" is one. The text is selected
// afterwards, so that the next frequency replaces it.
void Tuning::txtCurrentFreq_KeyUp()
{
    handle(
        "frmMain.txtCurrentFreq_KeyUp",
        [this, unit = m_shown.mDevice] {
            if (const auto megahertz = frequencyInMHz(txtCurrentFreq->text()))
                unit->setCurrentFreq(*megahertz);
        },
        Afterwards{[this] {
            if (txtCurrentFreq->hasFocus())
                txtCurrentFreq->selectAll();
        }});
}

// Sends the frequency shown once more.
void Tuning::txtCurrentFreq_DblClick()
{
    handle("frmMain.txtCurrentFreq_DblClick", [this, unit = m_shown.mDevice] {
        const double megahertz = leadingFrequencyInMHz(txtCurrentFreq->text());
        if (megahertz > 0)
            unit->setCurrentFreq(megahertz);
    });
}

// While the thumb is dragged only the box follows; the unit tunes when it is let go. Nothing is
// asked either: what the unit has told of its spacing counts.
void Tuning::HScroll1_Scroll(int position)
{
    reportAndEnd("frmMain.HScroll1_Scroll", [&] {
        const double start = leadingNumber(m_startFreq->text());
        if (m_spacingHz < 1)
            return;
        const double offset = m_spacingHz / hertzPerMegahertz * (position * app().sliderScale);
        txtCurrentFreq->setText(numberToText(start + offset));
    });
}

void Tuning::HScroll1_Change()
{
    if (!HScroll1->isEnabled() || !m_sliderEvents)
        return;
    const qint32 step = HScroll1->value() * app().sliderScale;
    // A step that was refused, or that the unit ignores because rounding took it beyond the
    // maximum: slider and box go back to where the unit is.
    handle(
        "frmMain.HScroll1_Change", [&] { sendStep(step); }, Afterwards{[this] { followUnit(); }});
}

// The slider is disabled meanwhile, so that no second change arrives while the unit works.
void Tuning::sendStep(qint32 step)
{
    const auto unit = m_shown.mDevice;
    const Still tunable = m_shown.tunable.still();
    WhileDisabled hold(HScroll1);
    const QScopedValueRollback sending(m_sending, true);
    unit->setCurrentStep(step);
    if (!tunable)
        hold.keepDisabled();
}

// A drag that ends where it began sends nothing: the box shows the unit's frequency again.
void Tuning::HScroll1_Released()
{
    if (HScroll1->sliderPosition() == HScroll1->value())
        followUnit();
}

// The frequency is start + steps x spacing, made of what may be missing. A setting that failed
// raises the place from before, which is no news where none is known.
void Tuning::mDevice_FreqChange(qint32 step, double freqMHz)
{
    if (m_shown.reportsAreStale)
        return;
    const auto unit = m_shown.mDevice;
    learnSpacing(*unit, step, freqMHz);
    const bool failed =
        unit->lastStatus() == clsKeldoX::BadReply || unit->lastStatus() == clsKeldoX::Refused;
    if (m_startMHz <= 0 || m_spacingHz < 1 || (failed && !m_unitsPlace))
        return;
    m_unitsPlace = Place{step, freqMHz};
    followUnit();
    updateSlider();
}

// What was missing when the unit was shown may have been read since: the event is made of it.
void Tuning::learnSpacing(const clsKeldoX &unit, qint32 step, double freqMHz)
{
    if (m_startMHz <= 0 && unit.isInitialized())
        m_startMHz = m_shown.mDevice->StartFreq(); // kept by the unit's object: nothing is sent
    if (m_startMHz > 0 && m_spacingHz < 1 && step > 0 && freqMHz > m_startMHz)
        m_spacingHz = toInt32((freqMHz - m_startMHz) / step * hertzPerMegahertz);
}

void Tuning::followUnit()
{
    if (!m_unitsPlace)
        return;
    const Place place = *m_unitsPlace;
    resumeNext(
        "frmMain.DUT_FreqChange", [&] { moveSlider(place.step); },
        [&] { EntryMark::of(*txtCurrentFreq).showUnitText(numberToText(place.megahertz)); });
}

// A step beyond the slider's end leaves the slider where it is.
void Tuning::moveSlider(qint32 step)
{
    const double place = static_cast<double>(step) / app().sliderScale;
    // The thumb that the operator holds stays where the hand is.
    if (place == HScroll1->value() || place > HScroll1->maximum() || HScroll1->isSliderDown())
        return;
    const auto quiet = withoutSliderEvents();
    HScroll1->setValue(toInt32(place));
}
