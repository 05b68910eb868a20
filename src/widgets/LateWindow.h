// A window that is loaded at start and shown later, or never: what only a shown window needs, its
// fonts, its size and its place, is not paid for at start.
#pragma once

#include "widgets/WindowPlace.h"

#include <QMainWindow>

class LateWindow : public QMainWindow
{
public:
    // From its first show on; see WindowPlace.
    void keepPlaceAs(const QString &name) { m_placeName = name; }

    void setVisible(bool visible) override
    {
        if (visible && !m_isLaidOut) {
            m_isLaidOut = true;
            layOut();
            resize(withinScreen(*this, firstSize()));
            if (!m_placeName.isEmpty())
                WindowPlace::keep(*this, m_placeName);
        }
        QMainWindow::setVisible(visible);
    }

protected:
    virtual void layOut() = 0;
    virtual QSize firstSize() const = 0; // asked after layOut

private:
    QString m_placeName;
    bool m_isLaidOut = false;
};
