// A status bar of numbered panels, from 1. Panel i has the object name "StatusBar_i". Long texts
// are cut with an ellipsis, shown whole as the tool tip, and never widen the window.
#pragma once

#include <QStatusBar>

class QLabel;

class PanelStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit PanelStatusBar(QWidget *parent = nullptr);

    // Panels with their share of the width, in order.
    void setPanels(const QList<int> &stretches);
    int panelCount() const { return static_cast<int>(m_panels.size()); }

    // Both raise 9 for a panel that the bar does not have.
    QString panelText(int panel) const;
    void setPanelText(int panel, const QString &text);

    // A widget between the panels and the size grip, such as a progress bar.
    void addTool(QWidget *tool, int stretch = 0);

private:
    QLabel *panelAt(int panel) const;

    QList<QLabel *> m_panels;
};
