// What an entry box says about its text: that it is not the value that the unit has ("not sent"),
// or that the unit has not confirmed the value ("unconfirmed"). A sign inside the box, the tool tip
// and the accessible description say so; colour says nothing.
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QLabel;
class QLineEdit;

class EntryMark : public QObject
{
    Q_OBJECT

public:
    // How a text is read: two texts of one value are the same. Plain numbers unless told.
    using Reading = std::function<std::optional<double>(const QString &text)>;

    static constexpr char notSentSign = '*';
    static constexpr char unconfirmedSign = '?';

    // The box's one mark, made when first asked for; it lives as long as the box.
    static EntryMark &of(QLineEdit &box);

    void setReading(Reading reading);

    // What the unit has: the box shows it, and Escape in the box puts it back.
    void showUnitText(const QString &text);
    // Nothing is known of the unit (any more): the box is empty and unmarked.
    void clear();
    bool hasUnitText() const { return !m_unitText.isEmpty(); }

    void setConfirmed(bool confirmed);
    bool isConfirmed() const { return m_confirmed; }
    bool isNotSent() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit EntryMark(QLineEdit &box);
    void update();
    void placeSign();

    QLineEdit &m_box;
    QLabel *m_sign;
    Reading m_reading;
    QString m_unitText;
    bool m_confirmed = true;
};

// The same for a control without a text of the operator's: a check box or a group box gets the sign
// behind its caption, a light inside.
void markConfirmed(QWidget &control, bool confirmed);
// What to do about a value that is not confirmed.
QString unconfirmedTip();
