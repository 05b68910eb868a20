// The operator's hand in tests of modal dialogs.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>

// The operator's hand on the next modal dialog that is ready: acts once. A dialog that a failed
// check leaves open is closed: nobody else would.
class Hand : public QObject
{
public:
    using Act = std::function<void(QWidget *)>;
    using Ready = std::function<bool(QWidget *)>;

    explicit Hand(Act act, Ready ready = {}) : m_act(std::move(act)), m_ready(std::move(ready))
    {
        m_timer.setInterval(10);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const QPointer<QWidget> dialog = QApplication::activeModalWidget();
            if (!dialog || acted || (m_ready && !m_ready(dialog)))
                return;
            acted = true;
            m_act(dialog);
            if (QTest::currentTestFailed() && dialog)
                dialog->close();
        });
        m_timer.start();
    }

    bool acted = false;

private:
    Act m_act;
    Ready m_ready;
    QTimer m_timer;
};
