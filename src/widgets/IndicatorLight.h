// A small round light. Its colour is never the only sign: whoever sets it also says in words what
// it means, shown as the tool tip and spoken by screen readers.
#pragma once

#include <QColor>
#include <QWidget>

class IndicatorLight : public QWidget
{
    Q_OBJECT

public:
    static constexpr unsigned green = 0x00FF00; // blue-green-red, as all colour values here
    static constexpr unsigned red = 0x0000FF;
    static constexpr unsigned buttonFace = 0x8000000F; // the palette's own colour

    explicit IndicatorLight(QWidget *parent = nullptr);

    // Blue-green-red value, or buttonFace for a light that is off.
    unsigned fillColor() const { return m_fillColor; }
    void setFillColor(unsigned bgr, const QString &meaning);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    unsigned m_fillColor = buttonFace;
};

// The colour of a blue-green-red value; invalid for buttonFace, which the palette decides.
QColor colorOfBgr(unsigned bgr);
