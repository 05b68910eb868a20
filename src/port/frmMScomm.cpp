// The host: a serial control and two timers.
#include "port/frmMScomm.h"

#include "port/clsCommPort.h"

#include <QVariant>

frmMScomm::frmMScomm()
    : CommCtl(new CommControl(this)),
      tmrCommTimer2(new TimerControl(this)),
      tmrCommTimer(new TimerControl(this))
{
    setObjectName(QStringLiteral("frmMScomm"));
    CommCtl->setObjectName(QStringLiteral("CommCtl"));
    tmrCommTimer2->setObjectName(QStringLiteral("tmrCommTimer2"));
    tmrCommTimer->setObjectName(QStringLiteral("tmrCommTimer"));
    setProperty("label", labelText());
    elapseOnTimer(tmrCommTimer2);
    elapseOnTimer(tmrCommTimer);
    connect(CommCtl, &CommControl::OnComm, this, [this] {
        if (m_parent)
            m_parent->DoOnComm();
    });
    connect(CommCtl, &CommControl::HungUp, this, [this] {
        if (m_parent)
            m_parent->DoHangUp();
    });
}

QString frmMScomm::labelText()
{
    return QStringLiteral(
        "This form exists only to hold some controls, and should never be visible");
}
