// The scroll bar that tuning is done with: reached by Tab, moved by arrow and page keys, sends when
// it is let go, and shows that it has the focus.
#pragma once

#include <QPointer>
#include <QScrollBar>

class QLineEdit;

class StepSlider : public QScrollBar
{
    Q_OBJECT

public:
    explicit StepSlider(QWidget *parent = nullptr);

    // The box that shows what the place of the bar means: screen readers speak it.
    void setDisplay(QLineEdit *box);
    QString displayText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QPointer<QLineEdit> m_display;
};
