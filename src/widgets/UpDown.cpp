// The up-down arrows over two tool buttons.
#include "widgets/UpDown.h"

#include "widgets/Spoken.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

static constexpr int focusFrame = 2; // pixels around the buttons, where the focus shows

UpDown::UpDown(QWidget *parent) : QWidget(parent)
{
    speakControls();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(focusFrame, focusFrame, focusFrame, focusFrame);
    column->setSpacing(0);
    auto *up = makeButton(Qt::UpArrow, QStringLiteral("up"));
    auto *down = makeButton(Qt::DownArrow, QStringLiteral("down"));
    column->addWidget(up);
    column->addWidget(down);
    connect(up, &QToolButton::clicked, this, &UpDown::UpClick);
    connect(down, &QToolButton::clicked, this, &UpDown::DownClick);
}

QToolButton *UpDown::makeButton(Qt::ArrowType arrow, const QString &name)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setAccessibleName(name);
    button->setArrowType(arrow);
    button->setFocusPolicy(Qt::NoFocus);
    const int side = fontMetrics().height();
    button->setFixedSize(side + side / 3, side * 4 / 5);
    return button;
}

void UpDown::setBox(QLineEdit *box)
{
    m_box = box;
    connect(box, &QLineEdit::textChanged, this, [this](const QString &text) {
        QAccessibleValueChangeEvent changed(this, text);
        QAccessible::updateAccessibility(&changed);
    });
}

QString UpDown::boxText() const
{
    return m_box ? m_box->text() : QString();
}

void UpDown::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Up)
        emit UpClick();
    else if (event->key() == Qt::Key_Down)
        emit DownClick();
    else
        QWidget::keyPressEvent(event);
}

void UpDown::paintEvent(QPaintEvent *)
{
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), focusFrame));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}
