// The thirteen control arrays of the channels window, indexed by channel 1 to 8, and one row of
// them: what a channel takes out of the window.
#pragma once

#include "widgets/ControlArray.h"
#include "widgets/OptionSet.h"
#include "widgets/UpDown.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

struct ChannelControls
{
    ControlArray<QRadioButton> optPortNum{QStringLiteral("optPortNum")};
    ControlArray<QLabel> lblPortNum{QStringLiteral("lblPortNum")};
    ControlArray<QLineEdit> txtChanAtten{QStringLiteral("txtChanAtten")};
    ControlArray<QLineEdit> txtChanInputAtten{QStringLiteral("txtChanInputAtten")};
    ControlArray<QLineEdit> txtChanFreq{QStringLiteral("txtChanFreq")};
    ControlArray<QCheckBox> chkChanAGC{QStringLiteral("chkChanAGC")};
    ControlArray<QLineEdit> txtChanAGCoffset{QStringLiteral("txtChanAGCoffset")};
    ControlArray<QCheckBox> chkChanBYP{QStringLiteral("chkChanBYP")};
    ControlArray<UpDown> udAtten{QStringLiteral("udAtten")};
    ControlArray<UpDown> udInputAtten{QStringLiteral("udInputAtten")};
    ControlArray<UpDown> udAGCOffset{QStringLiteral("udAGCOffset")};
    ControlArray<QLabel> lbldB{QStringLiteral("lbldB")};
    ControlArray<QLabel> lblAGCdB{QStringLiteral("lblAGCdB")};

    OptionSet *portOptions = nullptr; // the exclusive set over optPortNum
};

// The elements of one channel.
struct ChannelRowControls
{
    QRadioButton *optPortNum;
    QLabel *lblPortNum;
    QLineEdit *txtChanAtten;
    QLineEdit *txtChanInputAtten;
    QLineEdit *txtChanFreq;
    QCheckBox *chkChanAGC;
    QLineEdit *txtChanAGCoffset;
    QCheckBox *chkChanBYP;
    UpDown *udAtten;
    UpDown *udInputAtten;
    UpDown *udAGCOffset;
    QLabel *lbldB;
    QLabel *lblAGCdB;
};

// Raises 9 (subscript out of range) for an index that the window has no controls for.
inline ChannelRowControls rowOf(const ChannelControls &controls, int index)
{
    return {controls.optPortNum(index),       controls.lblPortNum(index),
            controls.txtChanAtten(index),     controls.txtChanInputAtten(index),
            controls.txtChanFreq(index),      controls.chkChanAGC(index),
            controls.txtChanAGCoffset(index), controls.chkChanBYP(index),
            controls.udAtten(index),          controls.udInputAtten(index),
            controls.udAGCOffset(index),      controls.lbldB(index),
            controls.lblAGCdB(index)};
}
