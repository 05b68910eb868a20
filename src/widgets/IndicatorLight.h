// A small round light. Its colour is never the only sign: whoever sets it also says in words what
// it means, shown as the tool tip and spoken by screen readers.
#pragma once

#include <QColor>
#include <QWidget>

class IndicatorLight : public QWidget
{
    Q_OBJECT

public:
    static constexpr QColor green{0x00, 0xFF, 0x00};
    static constexpr QColor red{0xFF, 0x00, 0x00};
    static constexpr QColor amber{0xFF, 0xB0, 0x00};
    static constexpr QColor buttonFace{}; // off: no colour of its own, the palette decides

    explicit IndicatorLight(QWidget *parent = nullptr);

    QColor fillColor() const { return m_fillColor; }
    QString meaning() const { return m_meaning; }
    void setFillColor(const QColor &color, const QString &meaning);

    // A light whose value the unit has not confirmed shows a question mark and says so in words.
    bool isConfirmed() const { return m_confirmed; }
    void setConfirmed(bool confirmed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void speak();

    QColor m_fillColor = buttonFace;
    QString m_meaning;
    bool m_confirmed = true;
};
