// The captions of the frequency plan.
#include "ui/main/PlanCaptions.h"

#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "ui_frmMain_KeldoX2.h"

static constexpr double hertzPerKilohertz = 1000;

PlanCaptions::PlanCaptions(const Ui::frmMain_KeldoX2 &ui)
    : lblChannelSpacing(ui.lblChannelSpacing), lblbandwidth(ui.lblbandwidth)
{
}

void PlanCaptions::showSpacing(std::int32_t hertz)
{
    m_unitWasShown = true;
    lblChannelSpacing->setText(numberToTextWithBlank(hertz / hertzPerKilohertz) +
                               QStringLiteral(" kHz frequency spacing"));
}

void PlanCaptions::showBandwidth(clsKeldoX &unit)
{
    const double bandwidth = unit.ChanBW() / hertzPerKilohertz;
    lblbandwidth->setText(bandwidth == 0 ? QString()
                                         : numberToTextWithBlank(bandwidth) +
                                               QStringLiteral(" kHz channel bandwidth"));
}

void PlanCaptions::clear()
{
    if (!m_unitWasShown)
        return;
    lblChannelSpacing->clear();
    lblbandwidth->clear();
}
