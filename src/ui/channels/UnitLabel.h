// The unit of measure behind a box: there while the box is there, grey while it is grey.
#pragma once

#include <QLabel>

class UnitLabel : public QLabel
{
    Q_OBJECT

public:
    UnitLabel(const QString &unit, QWidget *box);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_box;
};
