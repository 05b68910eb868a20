// The indicator light, painted with the palette's colours around the fill.
#include "widgets/IndicatorLight.h"

#include "widgets/PlainText.h"
#include "widgets/Spoken.h"

#include <QAccessible>
#include <QPainter>

IndicatorLight::IndicatorLight(QWidget *parent) : QWidget(parent)
{
    speakControls();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFillColor(buttonFace, tr("off"));
}

void IndicatorLight::setFillColor(const QColor &color, const QString &meaning)
{
    m_fillColor = color;
    m_meaning = meaning;
    setToolTip(plainToolTip(meaning));
    setAccessibleDescription(meaning);
    QAccessibleEvent renamed(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
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
    painter.setBrush(m_fillColor.isValid() ? m_fillColor : palette().color(QPalette::Button));
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.6F);
    painter.setPen(QPen(edge, 1.2));
    const qreal side = std::min(width(), height()) - 3.0;
    painter.drawEllipse(QRectF((width() - side) / 2, (height() - side) / 2, side, side));
}
