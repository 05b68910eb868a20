// The content of a window that may be larger than its screen: shown whole where there is room,
// with scroll bars where there is none.
#pragma once

#include <QScrollArea>

class QBoxLayout;
class QMainWindow;

class ScrollPane : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollPane(QWidget *content, QWidget *parent = nullptr);

    QSize sizeHint() const override; // of the content
    QSize minimumSizeHint() const override;

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    // Puts the window's central widget into a pane.
    static ScrollPane *wrap(QMainWindow &window);
    // Puts the part of a column that may grow into a pane in its place.
    static ScrollPane *wrap(QBoxLayout &column, QWidget *content);

private:
    QWidget *m_content;
};
