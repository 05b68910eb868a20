// The accessible side of lights, arrows and options.
#include "widgets/Spoken.h"

#include "widgets/IndicatorLight.h"
#include "widgets/UpDown.h"

#include <QAccessibleWidget>
#include <QRadioButton>

namespace {

class SpokenLight : public QAccessibleWidget
{
public:
    explicit SpokenLight(IndicatorLight *light) : QAccessibleWidget(light, QAccessible::Indicator)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString meaning = widget()->accessibleDescription();
        if (kind == QAccessible::Name)
            return widget()->accessibleName() + QStringLiteral(": ") + meaning;
        return kind == QAccessible::Value ? meaning : QAccessibleWidget::text(kind);
    }
};

// The value is that of the box beside the arrows; they step it through the unit alone.
class SpokenArrows : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit SpokenArrows(UpDown *arrows) : QAccessibleWidget(arrows, QAccessible::SpinBox) {}

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? arrows().boxText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return arrows().boxText().toDouble(); }
    void setCurrentValue(const QVariant &) override {}
    QVariant maximumValue() const override { return {}; }
    QVariant minimumValue() const override { return {}; }
    QVariant minimumStepSize() const override { return {}; }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (widget()->isEnabled())
            names << increaseAction() << decreaseAction();
        return names;
    }

    void doAction(const QString &action) override
    {
        if (!widget()->isEnabled())
            return;
        if (action == increaseAction())
            emit arrows().UpClick();
        else if (action == decreaseAction())
            emit arrows().DownClick();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    UpDown &arrows() const { return *static_cast<UpDown *>(widget()); }
};

// Qt takes an option for a check box unless it is auto-exclusive, which ours are not.
class SpokenOption : public QAccessibleWidget
{
public:
    explicit SpokenOption(QRadioButton *option)
        : QAccessibleWidget(option, QAccessible::RadioButton)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString text = QAccessibleWidget::text(kind);
        return text.isEmpty() && kind == QAccessible::Name ? option().text().trimmed() : text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = option().isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (widget()->isEnabled())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString &action) override
    {
        if (action == pressAction())
            option().click(); // does nothing while it is disabled
        else
            QAccessibleWidget::doAction(action);
    }

private:
    QRadioButton &option() const { return *static_cast<QRadioButton *>(widget()); }
};

QAccessibleInterface *spokenControl(const QString &, QObject *object)
{
    if (auto *light = qobject_cast<IndicatorLight *>(object))
        return new SpokenLight(light);
    if (auto *arrows = qobject_cast<UpDown *>(object))
        return new SpokenArrows(arrows);
    if (auto *option = qobject_cast<QRadioButton *>(object))
        return new SpokenOption(option);
    return nullptr;
}

} // namespace

void speakControls()
{
    QAccessible::installFactory(&spokenControl);
}
