// The tuning scroll bar.
#include "ui/main/StepSlider.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>

namespace {

// A click in the groove moves by a page, also where the desktop's own bars jump to the place.
class PagingStyle : public QProxyStyle
{
public:
    PagingStyle() : QProxyStyle(QApplication::style()->name()) {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_ScrollBar_LeftClickAbsolutePosition)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        // The thumb is found and held easily, however small a page is.
        if (metric == PM_ScrollBarSliderMin && widget)
            return widget->fontMetrics().height() * 2;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
};

// The bar counts steps, which mean nothing to a listener: its value is spoken as the box shows it.
class SpokenSlider : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit SpokenSlider(StepSlider *slider) : QAccessibleWidget(slider, QAccessible::Slider) {}

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? slider().displayText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider().value(); }
    void setCurrentValue(const QVariant &value) override { slider().setValue(value.toInt()); }
    QVariant maximumValue() const override { return slider().maximum(); }
    QVariant minimumValue() const override { return slider().minimum(); }
    QVariant minimumStepSize() const override { return slider().singleStep(); }

private:
    StepSlider &slider() const { return *static_cast<StepSlider *>(widget()); }
};

QAccessibleInterface *spokenSlider(const QString &, QObject *object)
{
    auto *slider = qobject_cast<StepSlider *>(object);
    return slider ? new SpokenSlider(slider) : nullptr;
}

} // namespace

StepSlider::StepSlider(QWidget *parent) : QScrollBar(Qt::Horizontal, parent)
{
    QAccessible::installFactory(&spokenSlider);
    auto *paging = new PagingStyle;
    paging->setParent(this);
    setStyle(paging);
    setFocusPolicy(Qt::StrongFocus);
    setInvertedControls(false); // Up and Page Up raise the frequency
    setTracking(false);         // nothing changes before the thumb is let go
}

void StepSlider::setDisplay(QLineEdit *box)
{
    m_display = box;
    connect(box, &QLineEdit::textChanged, this, [this](const QString &text) {
        QAccessibleValueChangeEvent changed(this, text);
        QAccessible::updateAccessibility(&changed);
    });
}

QString StepSlider::displayText() const
{
    return m_display ? m_display->text() : QString::number(value());
}

QSize StepSlider::sizeHint() const
{
    return {QScrollBar::sizeHint().width(), fontMetrics().height() * 3 / 2};
}

QSize StepSlider::minimumSizeHint() const
{
    return {fontMetrics().height() * 8, fontMetrics().height() * 3 / 2};
}

void StepSlider::paintEvent(QPaintEvent *event)
{
    QScrollBar::paintEvent(event);
    QPainter painter(this);
    if (isEnabled() && maximum() > minimum()) {
        // Where the bar stands, however wide the thumb is.
        QStyleOptionSlider option;
        initStyleOption(&option);
        const QRect thumb = style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                                    QStyle::SC_ScrollBarSlider, this);
        QRect mark(0, 0, 4, thumb.height() - 8);
        mark.moveCenter(thumb.center());
        painter.fillRect(mark, palette().color(QPalette::ButtonText)); // seen on any thumb
    }
    if (!hasFocus())
        return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

// A wheel that turns while the pointer passes over the bar must not tune the unit.
void StepSlider::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QScrollBar::wheelEvent(event);
    else
        event->ignore();
}
