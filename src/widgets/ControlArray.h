// Controls of one kind that share a name and differ by an index: optPortNum(1) to optPortNum(8).
// Element i has the object name "name_i".
#pragma once

#include "platform/RunTimeError.h"

#include <QMap>
#include <QString>

#include <initializer_list>

template <class Control> class ControlArray
{
public:
    explicit ControlArray(QString name) : m_name(std::move(name)) {}

    void insert(int index, Control *control)
    {
        control->setObjectName(QStringLiteral("%1_%2").arg(m_name).arg(index));
        m_controls.insert(index, control);
    }

    // The elements from first on.
    void insert(std::initializer_list<Control *> controls, int first)
    {
        for (Control *control : controls)
            insert(first++, control);
    }

    // Raises 9 (subscript out of range) for an index that has no control.
    Control *operator()(int index) const
    {
        const auto found = m_controls.constFind(index);
        if (found == m_controls.cend())
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return *found;
    }

    const QMap<int, Control *> &all() const { return m_controls; }

private:
    QString m_name;
    QMap<int, Control *> m_controls;
};
