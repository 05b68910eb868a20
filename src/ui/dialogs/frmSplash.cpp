// The splash window. A plain window: it neither stays on top nor goes away when it is clicked.
#include "ui/dialogs/frmSplash.h"

#include "platform/Application.h"

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

static constexpr int displayTimeMs = 4000;
static constexpr int channelBindings = 8;

namespace {

// Painted eight times before anything else is on the screen: a style's bar with its gradients took
// a twentieth of the start.
class ProgressLine : public QProgressBar
{
public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), palette().color(QPalette::Mid));
        const double share = double(value() - minimum()) / qMax(1, maximum() - minimum());
        QRect done = rect();
        done.setWidth(qRound(rect().width() * share));
        painter.fillRect(done, palette().color(QPalette::Highlight));
    }
};

} // namespace

frmSplash::frmSplash() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), m_tmrSplash(this)
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(applicationTitle());
    setAttribute(Qt::WA_QuitOnClose, false);
    layOut();
    m_tmrSplash.setObjectName(QStringLiteral("tmrSplash"));
    connect(&m_tmrSplash, &TimerControl::Timer, this, &frmSplash::tmrSplash_Timer);
    m_tmrSplash.setInterval(displayTimeMs);
    m_tmrSplash.setEnabled(true);
}

void frmSplash::layOut()
{
    const int unit = fontMetrics().height();
    auto *picture = new QLabel(this);
    picture->setObjectName(QStringLiteral("picSplash"));
    picture->setPixmap(QApplication::windowIcon().pixmap(QSize(unit * 4, unit * 4)));
    picture->setAccessibleName(tr("Program icon"));

    auto *title = new QLabel(applicationTitle(), this);
    title->setObjectName(QStringLiteral("lblSplashTitle"));
    QFont large = font();
    // As the main window's "MHz": one font less to load.
    large.setPointSizeF(font().pointSizeF() * 1.6);
    title->setFont(large);
    auto *subtitle = new QLabel(tr("Tunable active bandpass filters"), this);
    subtitle->setObjectName(QStringLiteral("lblSplashSubtitle"));

    m_progress = new ProgressLine(this);
    m_progress->setObjectName(QStringLiteral("prgSplash"));
    m_progress->setRange(0, channelBindings);
    m_progress->setValue(0);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(unit / 4);
    m_progress->setAccessibleName(tr("Start-up progress"));

    auto *words = new QVBoxLayout;
    words->addStretch();
    words->addWidget(title);
    words->addWidget(subtitle);
    words->addStretch();
    auto *top = new QHBoxLayout;
    top->setSpacing(unit);
    top->addWidget(picture);
    top->addLayout(words, 1);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(unit * 2, unit * 2, unit * 2, unit * 2);
    all->setSpacing(unit);
    all->addLayout(top);
    all->addWidget(m_progress);
}

void frmSplash::show()
{
    adjustSize();
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    QWidget::show();
    repaint();
}

void frmSplash::advance()
{
    m_progress->setValue(m_progress->value() + 1);
}

void frmSplash::unload()
{
    m_tmrSplash.setEnabled(false);
    close();
}

void frmSplash::tmrSplash_Timer()
{
    m_tmrSplash.setEnabled(false);
    m_readyToClose = true;
}

void frmSplash::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
