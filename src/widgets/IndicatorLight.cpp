// The indicator light, painted with the palette's colours around the fill.
#include "widgets/IndicatorLight.h"

#include "widgets/EntryMark.h"
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
    speak();
}

void IndicatorLight::setConfirmed(bool confirmed)
{
    m_confirmed = confirmed;
    speak();
}

void IndicatorLight::speak()
{
    QString tip = m_meaning;
    QString words = m_meaning;
    if (!m_confirmed) {
        tip += QLatin1Char('\n') + unconfirmedTip();
        words += QStringLiteral(", ") + tr("unconfirmed");
    }
    setToolTip(plainToolTip(tip));
    setAccessibleDescription(words);
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
    const QRectF disc((width() - side) / 2, (height() - side) / 2, side, side);
    painter.drawEllipse(disc);
    if (m_confirmed)
        return;
    QFont bold = font();
    bold.setBold(true);
    bold.setPixelSize(std::max(1, static_cast<int>(side * 0.8)));
    painter.setFont(bold);
    painter.setPen(m_fillColor.isValid() ? QColor(Qt::black)
                                         : palette().color(QPalette::ButtonText));
    painter.drawText(disc, Qt::AlignCenter, QString(QLatin1Char(EntryMark::unconfirmedSign)));
}
