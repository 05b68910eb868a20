// The scroll bar that tuning is done with: reached by Tab, moved by arrow and page keys, sends when
// it is let go, and shows that it has the focus.
#pragma once

#include <QScrollBar>

class StepSlider : public QScrollBar
{
    Q_OBJECT

public:
    explicit StepSlider(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};
