// Disables a control for the length of a scope without losing the keyboard's place in the window.
#pragma once

#include <QPointer>
#include <QWidget>

class WhileDisabled
{
public:
    explicit WhileDisabled(QWidget *control) : m_control(control), m_hadFocus(control->hasFocus())
    {
        // Without this the focus moves on, and a held arrow key goes to the next control.
        if (m_hadFocus)
            control->clearFocus();
        control->setEnabled(false);
    }

    ~WhileDisabled()
    {
        if (!m_control || !m_enableAgain)
            return;
        m_control->setEnabled(true);
        if (m_hadFocus && !m_control->window()->focusWidget())
            m_control->setFocus();
    }

    WhileDisabled(const WhileDisabled &) = delete;
    WhileDisabled &operator=(const WhileDisabled &) = delete;

    // Something else wants the control disabled now.
    void keepDisabled() { m_enableAgain = false; }

private:
    QPointer<QWidget> m_control;
    bool m_hadFocus;
    bool m_enableAgain = true;
};
