// The strip that searches the display: highlights every place, goes from one to the next and around
// the ends, and says when there is none.
#pragma once

#include <QTextDocument>
#include <QWidget>

#include <memory>

namespace Ui {
class FindStrip;
}

class QPlainTextEdit;

class FindStrip : public QWidget
{
    Q_OBJECT

public:
    explicit FindStrip(QWidget *parent = nullptr); // hidden
    ~FindStrip() override;

    void setPane(QPlainTextEdit *pane) { m_pane = pane; }

    // Shows the strip; what is selected in the pane is looked for.
    void open();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void searchAsTyped();
    void findNext();
    void findPrevious();
    void search(QTextDocument::FindFlags direction);
    void highlight();
    void closeStrip();

    std::unique_ptr<Ui::FindStrip> m_ui;
    QPlainTextEdit *m_pane = nullptr;
};
