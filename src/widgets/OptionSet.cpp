// The option set over free-standing radio buttons.
#include "widgets/OptionSet.h"

#include "widgets/Spoken.h"

#include <QRadioButton>

OptionSet::OptionSet(QObject *parent) : QObject(parent) {}

void OptionSet::add(int index, QRadioButton *button)
{
    speakControls();
    button->setAutoExclusive(false);
    m_buttons.insert(index, button);
    connect(button, &QRadioButton::clicked, this, [this, index] { onClicked(index); });
}

void OptionSet::select(int index)
{
    m_selected = m_buttons.contains(index) ? index : 0;
    for (auto button = m_buttons.cbegin(); button != m_buttons.cend(); ++button)
        button.value()->setChecked(button.key() == m_selected);
}

void OptionSet::onClicked(int index)
{
    const int previous = m_selected;
    select(index);
    emit Click(index, previous);
}
