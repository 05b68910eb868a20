// The main window's life: making, loading, first activation, closing.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Units.h"
#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/ResumeNext.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "ui/main/HelpMenu.h"
#include "ui/main/InputLimiting.h"
#include "ui/main/PasswordRequest.h"
#include "ui/main/PlanCaptions.h"
#include "ui/main/Polling.h"
#include "ui/main/Presets.h"
#include "ui/main/Tuning.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/ScrollPane.h"
#include "widgets/WindowPlace.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHelpEvent>
#include <QTimer>
#include <QToolTip>

#include <algorithm>

frmMain_KeldoX2::frmMain_KeldoX2() : m_ui(std::make_unique<Ui::frmMain_KeldoX2>())
{
    m_ui->setupUi(this);
    ScrollPane::wrap(*this);
    m_ui->StatusBar->setPanels({5, 2});
    tmr1.setParent(this);
    tmr1.setObjectName(QStringLiteral("tmr1"));
    elapseOnTimer(&tmr1);
    bindControls();
    bindMenus();
    styleControls();
    frmMain_KeldoX2::setDevice(makeUnit());
}

frmMain_KeldoX2::~frmMain_KeldoX2() = default;

void frmMain_KeldoX2::bindControls()
{
    m_tuning = std::make_unique<Tuning>(*m_ui, m_shown);
    m_presets = std::make_unique<Presets>(*m_ui, m_shown);
    m_polling = std::make_unique<Polling>(*m_ui, this);
    m_limiting = std::make_unique<InputLimiting>(*m_ui, m_shown);
    m_password = std::make_unique<PasswordRequest>(m_shown);
    m_captions = std::make_unique<PlanCaptions>(*m_ui);
    m_help = std::make_unique<HelpMenu>(*m_ui, this);
}

static const double heroScale = 2.6; // of the window's own font, and at most three times that

int frmMain_KeldoX2::smallestFrequencyPixels() const
{
    return static_cast<int>(QFontInfo(font()).pixelSize() * heroScale);
}

// The digits fill their box: the current frequency is read across the room.
void frmMain_KeldoX2::fitFrequencyFont()
{
    QLineEdit *box = m_ui->txtCurrentFreq;
    const int smallest = smallestFrequencyPixels();
    QFont large = box->font();
    large.setPixelSize(smallest);
    const double widest = QFontMetrics(large).horizontalAdvance(QStringLiteral("0000.0000000"));
    const double fitting = std::min(box->height() * 0.62, box->width() * smallest / widest);
    large.setPixelSize(std::clamp(static_cast<int>(fitting), smallest, smallest * 3));
    if (large != box->font())
        box->setFont(large);
}

void frmMain_KeldoX2::styleControls()
{
    QFont large = font();
    large.setPixelSize(smallestFrequencyPixels());
    large.setWeight(QFont::DemiBold);
    m_ui->txtCurrentFreq->setFont(large);
    // Fixed here, so that the window can be made small again after the digits have grown.
    m_ui->txtCurrentFreq->setMinimumSize(
        QFontMetrics(large).horizontalAdvance(QStringLiteral("0000.0000000")),
        m_ui->txtCurrentFreq->sizeHint().height());
    m_ui->paneEntry->setMaximumHeight(m_ui->txtCurrentFreq->minimumHeight() * 3);
    m_ui->txtCurrentFreq->installEventFilter(this);
    // As wide with a text as without, so that nothing moves when a unit is connected.
    const int planWidth =
        fontMetrics().horizontalAdvance(QStringLiteral(" 000.00 kHz channel bandwidth"));
    m_ui->lblChannelSpacing->setMinimumWidth(planWidth);
    m_ui->lblbandwidth->setMinimumWidth(planWidth);
    QFont unit = font();
    unit.setPointSizeF(font().pointSizeF() * 1.6);
    m_ui->lblMHz->setFont(unit);
    QFont heading = font();
    heading.setBold(true);
    m_ui->lblCurrentFreq->setFont(heading);
    m_ui->lblCurrentChannel->setFont(heading);
    QPalette display = palette();
    display.setColor(QPalette::Base, palette().color(QPalette::Window));
    const int displayWidth = fontMetrics().horizontalAdvance(QStringLiteral("0000.000000 MHz 0"));
    for (QLineEdit *box : {m_ui->txtFreq_1, m_ui->txtFreq_2, m_ui->txtFreq_3}) {
        box->setPalette(display); // shows, and does not invite to type
        box->setFixedWidth(displayWidth);
    }
    m_ui->HScroll1->setDisplay(m_ui->txtCurrentFreq);
    m_ui->HScroll_Pelltrim->setDisplay(m_ui->txtPelltrim);
    m_ui->txtPelltrim->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("000000000")));
    for (QPushButton *button : {m_ui->cmdSetDUTFreq_4, m_ui->cmdSetDUTFreq_5, m_ui->cmdSetDUTFreq_6,
                                m_ui->cmdSetDUTFreq_7})
        button->setMinimumSize(fontMetrics().horizontalAdvance(QStringLiteral(" 0000.000000 ")),
                               fontMetrics().height() * 2);
    m_ui->cmdSetPresets->setMinimumHeight(fontMetrics().height() * 2);
    resize(withinScreen(*this, QSize(46, 31) * fontMetrics().height()));
}

void frmMain_KeldoX2::load()
{
    resumeNext(
        "frmMain.Form_Load", [this] { m_firstActivation = true; }, [this] { stopPolling(); },
        [this] { ClearDisplays(); }, [this] { setCurrentChannelCaption(Words::noActiveChannel); },
        [this] { setWindowTitle(QStringLiteral("   ") + applicationTitle()); },
        [this] {
            setStatusPanel(MainPanel::connection, Words::notConnected);
            m_ui->ShapeStatusLight->setFillColor(IndicatorLight::buttonFace,
                                                 tr("no unit has been asked yet"));
            showInputAttenuation({});
        },
        [this] { m_ui->HScroll1->setPageStep(10); }, [this] { m_presets->create(); },
        [this] {
            if (!Pelltrim)
                Pelltrim =
                    std::make_unique<clsPelltrim>(m_ui->HScroll_Pelltrim, m_ui->txtPelltrim,
                                                  m_ui->chkPelltrimCalMode, m_ui->FramePelltrim);
            Pelltrim->setDevice(m_shown.mDevice);
        },
        [this] { disableUnitControls(); });
}

// Some desktops, and a bare virtual display, never activate a window: the first show counts too.
void frmMain_KeldoX2::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    QTimer::singleShot(0, this, &frmMain_KeldoX2::Form_Activate);
}

bool frmMain_KeldoX2::event(QEvent *event)
{
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::WindowActivate)
        Form_Activate();
    return handled;
}

// The frequency's digits follow their box. Entries on the menu bar itself have no tool tips of
// their own; a disabled one must say why.
bool frmMain_KeldoX2::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->menuBar && event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const QAction *entry = m_ui->menuBar->actionAt(help->pos());
        QToolTip::showText(help->globalPos(),
                           entry && !entry->menu() ? entry->toolTip() : QString(), m_ui->menuBar);
        return true;
    }
    if (watched == m_ui->txtCurrentFreq && event->type() == QEvent::Resize)
        fitFrequencyFont();
    return QMainWindow::eventFilter(watched, event);
}

void frmMain_KeldoX2::Form_Activate()
{
    if (!m_firstActivation || !isVisible())
        return;
    m_firstActivation = false;
    // An hourglass is seen from the next turn of the event queue on. Until then it is not set: a
    // theme's animated one takes longer to load than all that is done here.
    QTimer hourglass;
    hourglass.setSingleShot(true);
    connect(&hourglass, &QTimer::timeout, this, [this] { setCursor(Qt::WaitCursor); });
    resumeNext(
        "frmMain.Form_Activate", [&] { hourglass.start(0); }, [this] { m_polling->begin(); },
        [this] {
            m_tuning->allowSliderEvents();
            app().guard().set(true);
        },
        [this] { setFocus(); }, // not in a display that happens to be first
        [&] {
            hourglass.stop();
            unsetCursor();
        });
}

void frmMain_KeldoX2::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    event->accept();
}

// The window itself is not unloaded by the loop: the end of the program disposes of it.
void frmMain_KeldoX2::Form_Unload()
{
    if (EventQueue::ending())
        return;
    resumeNext(
        "frmMain.Form_Unload",
        [this] {
            QList<QPointer<QWidget>> others;
            for (QWidget *window : QApplication::topLevelWidgets())
                if (window != this && window->isVisible())
                    others.prepend(window);
            for (const auto &window : others)
                if (window)
                    window->close();
        },
        [] { EventQueue::endProgram(); });
}
