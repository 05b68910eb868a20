// A unit that answers what somebody else decides, and an operator who does anything: a stream of
// choices drives both against the program's object of a unit. What must hold whatever comes is
// checked after each operation.
#pragma once

#include "device/clsKeldoX.h"
#include "sim/SimulatedUnit.h"
#include "support/MemoryLine.h"

#include <QHash>
#include <QSet>

class HostileUnit : public QObject
{
public:
    // The next choice, 0 to count - 1, and a piece of any bytes.
    struct Choices
    {
        std::function<int(int count)> choose;
        std::function<QByteArray()> piece;
    };

    explicit HostileUnit(Choices choices);
    ~HostileUnit() override;

    void connectUnit();
    // One operation, whatever the unit answers. What did not hold, or nothing.
    QString operate();
    int commands() const { return m_line->commands; }

private:
    using Operation = std::function<void(HostileUnit &)>;
    static const QList<Operation> &queries();
    static const QList<Operation> &settings();

    QList<QByteArray> answer(const QByteArray &command);
    QByteArray usualAnswer(const QByteArray &command);
    void hear(const QByteArray &command, const QByteArray &reply);
    void follow();
    void onFrequency(qint32 step, double megahertz);
    void onValue(UnitValue value, double number);
    void complain(const QString &what);

    Choices m_choices;
    std::shared_ptr<MemoryUnit> m_line = std::make_shared<MemoryUnit>();
    sim::SimulatedUnit m_simulated;
    std::shared_ptr<clsKeldoX> m_unit;
    // All that the unit has ever told of its plan: a frequency that is shown lies on one of these.
    QSet<double> m_starts;   // MHz
    QSet<double> m_spacings; // Hz
    QSet<double> m_steps;    // that the unit has told
    // What was shown since the last reply that may have had a sense.
    QHash<UnitValue, double> m_shown;
    bool m_onlyGarbage = false; // all replies to this operation are bad
    QString m_complaint;
};
