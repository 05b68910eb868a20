// The places of windows in the settings: "x y width height", and "maximized" where it was.
#include "widgets/WindowPlace.h"

#include "platform/Application.h"
#include "platform/RunTimeError.h"
#include "platform/SettingsStore.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <optional>

static const QSize frameRoom(16, 48); // for a window's frame and caption
static constexpr int smallestSide = 80;
static constexpr int largestSide = 16000;

QSize roomOnScreen(const QWidget &window)
{
    return window.screen()->availableGeometry().size() - frameRoom;
}

QSize withinScreen(const QWidget &window, const QSize &wanted)
{
    return wanted.boundedTo(roomOnScreen(window));
}

static const char passingHeightName[] = "passingHeight";

void setPassingHeight(QWidget &window, int pixels)
{
    window.setProperty(passingHeightName, pixels);
}

int passingHeight(const QWidget &window)
{
    return window.property(passingHeightName).toInt();
}

QString WindowPlace::section()
{
    return QStringLiteral("Settings");
}

QString WindowPlace::key(const QString &name)
{
    return QStringLiteral("Geometry ") + name;
}

WindowPlace::WindowPlace(QWidget *window, QString name)
    : QObject(window), m_window(window), m_name(std::move(name))
{
    restore();
    window->installEventFilter(this);
}

void WindowPlace::keep(QWidget &window, const QString &name)
{
    new WindowPlace(&window, name);
}

static std::optional<QRect> placeIn(const QStringList &words)
{
    if (words.size() < 4)
        return std::nullopt;
    int numbers[4];
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = words.at(i).toInt(&isNumber);
        if (!isNumber || qAbs(numbers[i]) > largestSide)
            return std::nullopt;
    }
    const QRect place(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (place.width() < smallestSide || place.height() < smallestSide)
        return std::nullopt;
    return place;
}

static constexpr int captionMiddle = 12; // below the frame's upper edge

// The caption can be taken hold of: its middle is on a screen that is there.
static bool canBeReached(const QRect &place)
{
    for (const QScreen *screen : QGuiApplication::screens())
        if (screen->geometry().contains(place.center().x(), place.top() + captionMiddle))
            return true;
    return false;
}

void WindowPlace::restore()
{
    const QStringList words = SettingsStore::read(applicationTitle(), section(), key(m_name))
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto place = placeIn(words);
    if (!place || !canBeReached(*place))
        return;
    m_window->move(place->topLeft());
    const QSize kept = withinScreen(*m_window, place->size());
    const QSize shown = withinScreen(*m_window, kept + QSize(0, passingHeight(*m_window)));
    setPassingHeight(*m_window, shown.height() - kept.height());
    m_window->resize(shown);
    if (words.value(4) == QLatin1String("maximized"))
        m_window->setWindowState(m_window->windowState() | Qt::WindowMaximized);
}

// Hiding comes before every end: closing, and the end of the program. Being minimized is no hiding.
bool WindowPlace::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::Hide && !event->spontaneous())
        save();
    return QObject::eventFilter(watched, event);
}

void WindowPlace::save() const
{
    const bool maximized = m_window->isMaximized();
    QRect place(m_window->pos(), m_window->size());
    if (maximized || m_window->isMinimized()) {
        // Without the frame, which would move the window by its caption at every run.
        const QPoint frame = m_window->geometry().topLeft() - m_window->pos();
        place = m_window->normalGeometry().translated(-frame);
    }
    QString text = QStringLiteral("%1 %2 %3 %4")
                       .arg(place.x())
                       .arg(place.y())
                       .arg(place.width())
                       .arg(place.height() - passingHeight(*m_window));
    if (maximized)
        text += QStringLiteral(" maximized");
    try {
        SettingsStore::write(applicationTitle(), section(), key(m_name), text);
    } catch (const RunTimeError &) { // NOLINT(bugprone-empty-catch)
        // A window that closes is no place for a message about its place.
    }
}
