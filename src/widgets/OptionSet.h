// Option buttons of which at most one is selected, wherever they stand (also across tabs) and with
// "none" allowed. Arrow keys do not select, as they would with Qt's own exclusive groups.
#pragma once

#include <QMap>
#include <QObject>

class QRadioButton;

class OptionSet : public QObject
{
    Q_OBJECT

public:
    explicit OptionSet(QObject *parent = nullptr);

    void add(int index, QRadioButton *button);

    // The selected index, 0 when none is. Selecting by code raises no Click.
    int selected() const { return m_selected; }
    void select(int index);

signals:
    // A click of the operator. The set has selected the button already; previous is what was
    // selected before, for a handler that refuses.
    void Click(int index, int previous);

private:
    void onClicked(int index);

    QMap<int, QRadioButton *> m_buttons;
    int m_selected = 0;
};
