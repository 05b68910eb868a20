// What a screen reader makes of a window's controls, and which keys reach them.
#pragma once

#include <QAccessible>
#include <QtWidgets>

inline QAccessibleInterface *heard(QObject *control)
{
    return QAccessible::queryAccessibleInterface(control);
}

inline QString heardName(QObject *control)
{
    return heard(control)->text(QAccessible::Name);
}

// Panes, bars and the parts of a control: what they hold, or belong to, is heard.
inline bool isHeardThroughOthers(const QWidget &control)
{
    for (const char *kind : {"QScrollArea", "QMenuBar", "QSizeGrip", "PanelStatusBar"})
        if (control.inherits(kind))
            return true;
    return control.layout() || control.objectName().startsWith(QStringLiteral("qt_")) ||
           control.parent()->inherits("QComboBox") ||
           control.parent()->inherits("QAbstractScrollArea");
}

// On some systems a combo box is heard by its label, or by its description, and its text is its
// name.
inline QString faultOfBox(const QComboBox &box)
{
    QAccessibleInterface *spoken = heard(const_cast<QComboBox *>(&box));
    if (spoken->text(QAccessible::Name) != box.accessibleName() &&
        spoken->relations(QAccessible::Label).isEmpty() &&
        spoken->text(QAccessible::Description).isEmpty())
        return QStringLiteral("no label");
    const QString value = spoken->text(QAccessible::Value);
    return value == box.currentText() ? QString() : QStringLiteral("value \"%1\"").arg(value);
}

// What is wrong with what is heard of one control, empty when it has a role and a name, and says
// what it shows.
inline QString faultOf(QWidget &control)
{
    QAccessibleInterface *spoken = heard(&control);
    if (!spoken || spoken->role() == QAccessible::Client || spoken->role() == QAccessible::NoRole)
        return QStringLiteral("no role");
    const QString name = spoken->text(QAccessible::Name);
    if (const auto *label = qobject_cast<QLabel *>(&control)) {
        QString shown = label->text().trimmed();
        if (label->buddy())
            shown.remove(QLatin1Char('&'));
        return name.contains(shown) ? QString() : QStringLiteral("\"%1\"").arg(name);
    }
    if (const auto *box = qobject_cast<QComboBox *>(&control))
        return faultOfBox(*box);
    if (name.trimmed().isEmpty())
        return QStringLiteral("no name");
    const QString value = spoken->text(QAccessible::Value);
    if (const auto *box = qobject_cast<QLineEdit *>(&control))
        return value == box->text() ? QString() : QStringLiteral("value \"%1\"").arg(value);
    const auto *button = qobject_cast<QAbstractButton *>(&control);
    if (button && button->isCheckable() && bool(spoken->state().checked) != button->isChecked())
        return QStringLiteral("check mark");
    return {};
}

// "name: what is wrong" for each control of the window that is seen and not heard.
inline QStringList unheard(const QWidget &window)
{
    QStringList faults;
    for (QWidget *control : window.findChildren<QWidget *>()) {
        if (!control->isVisible() || isHeardThroughOthers(*control))
            continue;
        if (const QString fault = faultOf(*control); !fault.isEmpty())
            faults.append(control->objectName() + QStringLiteral(": ") + fault);
    }
    return faults;
}

// The entries of a menu or a bar, and of the menus below, that have no mnemonic, or one that is
// taken.
inline QStringList mnemonicFaults(const QWidget &menu, QStringList taken = {})
{
    QStringList faults;
    for (const QAction *entry : menu.actions()) {
        if (entry->isSeparator())
            continue;
        const QString key = QKeySequence::mnemonic(entry->text()).toString();
        if (key.isEmpty() || taken.contains(key))
            faults.append(entry->text());
        taken.append(key);
        if (entry->menu())
            faults += mnemonicFaults(*entry->menu());
    }
    return faults;
}

// The keys of the buttons, and of the labels with a buddy, inside a window.
inline QStringList mnemonicsIn(const QWidget &window)
{
    QStringList keys;
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>())
        keys.append(QKeySequence::mnemonic(button->text()).toString());
    for (const QLabel *label : window.findChildren<QLabel *>())
        if (label->buddy())
            keys.append(QKeySequence::mnemonic(label->text()).toString());
    keys.removeAll(QString());
    keys.sort();
    return keys;
}
