// The two captions of the unit's frequency plan: its spacing and its bandwidth. As designed they
// stand until a unit is shown.
#pragma once

#include <cstdint>

class QLabel;
class clsKeldoX;

namespace Ui {
class frmMain_KeldoX2;
}

class PlanCaptions
{
public:
    explicit PlanCaptions(const Ui::frmMain_KeldoX2 &ui);

    void showSpacing(std::int32_t hertz);
    void showBandwidth(clsKeldoX &unit); // asks the unit; nothing where it has none
    void clear();

private:
    QLabel *lblChannelSpacing;
    QLabel *lblbandwidth;
    bool m_unitWasShown = false;
};
