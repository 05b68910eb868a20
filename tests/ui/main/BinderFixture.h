// The fine-tuning controls in a frame as the window has it, bound to a simulated unit.
#pragma once

#include "device/UnitFixture.h"

#include "platform/EventQueue.h"
#include "ui/main/clsPelltrim.h"

#include <QtWidgets>

// The frame as the window has it, around plain controls.
class Panel : public QGroupBox
{
public:
    Panel()
    {
        bar->setTracking(false);
        bar->setFocusPolicy(Qt::StrongFocus);
        bar->setInvertedControls(false);
        bar->setRange(7, 99);
        auto *row = new QVBoxLayout(this);
        for (QWidget *control : std::initializer_list<QWidget *>{check, bar, box})
            row->addWidget(control);
        resize(600, 160);
    }

    QScrollBar *bar = new QScrollBar(Qt::Horizontal, this);
    QLineEdit *box = new QLineEdit(this);
    QCheckBox *check = new QCheckBox(QStringLiteral("Calibrated"), this);
};

class BinderFixture : public UnitFixture
{
public:
    explicit BinderFixture(sim::UnitSettings settings = unitWithFirmware("3.38"))
        : UnitFixture(settings)
    {
        panel.show();
        app().guard().set(true);
        binder.setDevice(unit);
        connectUnit();
    }
    ~BinderFixture() { unit->commPort()->ClosePort(); }

    QPoint thumb() const
    {
        QStyleOptionSlider option;
        option.initFrom(panel.bar);
        option.subControls = QStyle::SC_All;
        option.orientation = Qt::Horizontal;
        option.minimum = panel.bar->minimum();
        option.maximum = panel.bar->maximum();
        option.sliderPosition = panel.bar->sliderPosition();
        option.sliderValue = panel.bar->value();
        option.pageStep = panel.bar->pageStep();
        option.state |= QStyle::State_Horizontal;
        return panel.bar->style()
            ->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, panel.bar)
            .center();
    }
    void press() { QTest::mousePress(panel.bar, Qt::LeftButton, {}, m_hand = thumb()); }
    void drag(int right)
    {
        m_hand += QPoint(right, 0);
        QMouseEvent move(QEvent::MouseMove, m_hand, panel.bar->mapToGlobal(QPointF(m_hand)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(panel.bar, &move);
    }
    void release() { QTest::mouseRelease(panel.bar, Qt::LeftButton, {}, m_hand); }
    void enter(const QString &clicks)
    {
        panel.box->setText(clicks);
        QTest::keyClick(panel.box, Qt::Key_Return);
    }
    void clickCheck() { panel.check->click(); }
    bool isEnabled(bool frame, bool box, bool check) const
    {
        return panel.isEnabled() == frame && panel.bar->isEnabled() == box &&
               panel.box->isEnabled() == box && panel.check->isEnabled() == check;
    }

    Panel panel;
    clsPelltrim binder{panel.bar, panel.box, panel.check, &panel};

private:
    QPoint m_hand;
};

inline sim::UnitSettings calibratedUnit(const std::string &firmware = "3.38")
{
    sim::UnitSettings settings = unitWithFirmware(firmware);
    settings.fineTuning = 40;
    settings.fineCalibration = 90;
    return settings;
}
