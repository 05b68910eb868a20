// The marks of entry boxes and of controls whose value is not confirmed.
#include "widgets/EntryMark.h"

#include "core/TextNumbers.h"
#include "widgets/IndicatorLight.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace {

const char tipBefore[] = "toolTipWithoutMark";
const char descriptionBefore[] = "descriptionWithoutMark";

// The control's own words stand again when there is nothing to say any more.
void describe(QWidget &control, const QStringList &words, const QStringList &tips)
{
    if (!control.property(tipBefore).isValid() && !words.isEmpty()) {
        control.setProperty(tipBefore, control.toolTip());
        control.setProperty(descriptionBefore, control.accessibleDescription());
    }
    if (!words.isEmpty()) {
        control.setToolTip(tips.join(QLatin1Char('\n')));
        control.setAccessibleDescription(words.join(QStringLiteral(", ")));
    } else if (control.property(tipBefore).isValid()) {
        control.setToolTip(control.property(tipBefore).toString());
        control.setAccessibleDescription(control.property(descriptionBefore).toString());
        control.setProperty(tipBefore, QVariant());
        control.setProperty(descriptionBefore, QVariant());
    }
}

std::optional<double> plainNumber(const QString &text)
{
    return isNumeric(text) ? std::optional(numericValue(text)) : std::nullopt;
}

QString withSign(QString caption, bool confirmed)
{
    static const QString sign = QStringLiteral(" ") + QLatin1Char(EntryMark::unconfirmedSign);
    if (caption.endsWith(sign))
        caption.chop(sign.size());
    return confirmed ? caption : caption + sign;
}

} // namespace

QString unconfirmedTip()
{
    return QObject::tr("not confirmed by the unit: press F5 to read it again");
}

EntryMark::EntryMark(QLineEdit &box)
    : QObject(&box), m_box(box), m_sign(new QLabel(&box)), m_reading(plainNumber)
{
    m_sign->setObjectName(box.objectName() + QStringLiteral("_mark"));
    m_sign->setTextFormat(Qt::PlainText);
    m_sign->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_sign->hide();
    m_unitText = box.text();
    box.installEventFilter(this);
    connect(&box, &QLineEdit::textChanged, this, &EntryMark::update);
}

EntryMark &EntryMark::of(QLineEdit &box)
{
    auto *mark = box.findChild<EntryMark *>(QString(), Qt::FindDirectChildrenOnly);
    return mark ? *mark : *new EntryMark(box);
}

void EntryMark::setReading(Reading reading)
{
    m_reading = std::move(reading);
    update();
}

void EntryMark::showUnitText(const QString &text)
{
    m_unitText = text;
    m_box.setText(text);
    update();
}

void EntryMark::clear()
{
    m_confirmed = true;
    showUnitText({});
}

void EntryMark::setConfirmed(bool confirmed)
{
    m_confirmed = confirmed;
    update();
}

bool EntryMark::isNotSent() const
{
    const QString text = m_box.text();
    if (text == m_unitText || !m_box.isEnabled())
        return false;
    const auto typed = m_reading(text);
    return !typed || typed != m_reading(m_unitText);
}

void EntryMark::update()
{
    QStringList words;
    QStringList tips;
    QString sign;
    if (isNotSent()) {
        words.append(tr("not sent"));
        tips.append(tr("not sent: Enter sends it, Escape shows the unit's value again"));
        sign.append(QLatin1Char(notSentSign));
    }
    if (!m_confirmed) {
        words.append(tr("unconfirmed"));
        tips.append(unconfirmedTip());
        sign.append(QLatin1Char(unconfirmedSign));
    }
    describe(m_box, words, tips);
    m_sign->setText(sign);
    m_sign->setVisible(!sign.isEmpty());
    placeSign();
}

// At the left, where no box has its number's end; the text keeps clear of it.
void EntryMark::placeSign()
{
    if (m_sign->isHidden()) {
        m_box.setTextMargins(0, 0, 0, 0);
        return;
    }
    // Beside the large digits of the main window a sign of their size would take their room.
    const int words = QFontInfo(m_box.window()->font()).pixelSize();
    QFont font = m_box.font();
    font.setPixelSize(std::min(QFontInfo(font).pixelSize(), words * 3 / 2));
    font.setBold(true);
    m_sign->setFont(font);
    m_sign->adjustSize();
    const int margin = m_sign->fontMetrics().averageCharWidth();
    m_sign->move(margin, (m_box.height() - m_sign->height()) / 2);
    m_box.setTextMargins(margin + m_sign->width(), 0, 0, 0);
}

bool EntryMark::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Else a window's own Escape would take the key before the box sees it.
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && isNotSent())
            event->accept();
        break;
    case QEvent::KeyPress:
        // The key goes on to the window: Escape also ends a search.
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && isNotSent())
            m_box.setText(m_unitText);
        break;
    case QEvent::EnabledChange:
        update();
        break;
    case QEvent::Resize:
        placeSign();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void markConfirmed(QWidget &control, bool confirmed)
{
    if (auto *light = qobject_cast<IndicatorLight *>(&control))
        return light->setConfirmed(confirmed); // it speaks for itself
    if (auto *button = qobject_cast<QAbstractButton *>(&control))
        button->setText(withSign(button->text(), confirmed));
    else if (auto *group = qobject_cast<QGroupBox *>(&control))
        group->setTitle(withSign(group->title(), confirmed));
    if (confirmed)
        describe(control, {}, {});
    else
        describe(control, {QObject::tr("unconfirmed")}, {unconfirmedTip()});
}
