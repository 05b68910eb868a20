// The indicator light, painted with the palette's colours around the fill.
#include "widgets/IndicatorLight.h"

#include <QPainter>

QColor colorOfBgr(unsigned bgr)
{
    if (bgr == IndicatorLight::buttonFace)
        return {};
    return QColor::fromRgb(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                           static_cast<int>((bgr >> 16) & 0xFF));
}

IndicatorLight::IndicatorLight(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFillColor(buttonFace, tr("off"));
}

void IndicatorLight::setFillColor(unsigned bgr, const QString &meaning)
{
    m_fillColor = bgr;
    setToolTip(meaning);
    setAccessibleDescription(meaning);
    update();
}

QSize IndicatorLight::sizeHint() const
{
    const int side = fontMetrics().height();
    return {side, side};
}

void IndicatorLight::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = colorOfBgr(m_fillColor);
    painter.setBrush(fill.isValid() ? fill : palette().color(QPalette::Button));
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.6F);
    painter.setPen(QPen(edge, 1.2));
    const qreal side = std::min(width(), height()) - 3.0;
    painter.drawEllipse(QRectF((width() - side) / 2, (height() - side) / 2, side, side));
}
