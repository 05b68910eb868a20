// A pair of up and down arrow buttons beside a text box. Also works from the keyboard: Up and
// Down while it has the focus.
#pragma once

#include <QPointer>
#include <QWidget>

class QLineEdit;
class QToolButton;

class UpDown : public QWidget
{
    Q_OBJECT

public:
    explicit UpDown(QWidget *parent = nullptr);

    // The box whose value the arrows step: screen readers speak it with them.
    void setBox(QLineEdit *box);
    QString boxText() const;

signals:
    void UpClick();
    void DownClick();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QToolButton *makeButton(Qt::ArrowType arrow, const QString &name);

    QPointer<QLineEdit> m_box;
};
