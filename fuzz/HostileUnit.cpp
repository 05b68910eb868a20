// What the hostile unit answers, and what must hold.
#include "HostileUnit.h"

#include "core/Message.h"
#include "core/TextNumbers.h"

#include <cmath>

static constexpr double hertzPerMegahertz = 1e6;

HostileUnit::HostileUnit(Choices choices) : m_choices(std::move(choices))
{
    m_line->answer = [this](const QByteArray &command) { return answer(command); };
    MemoryLine::install(m_line);
    TestHooks::shortenTimers(1);
    TestHooks::settleWithin(1);
    installMessageDoor(
        [](const QString &, int, const QString &) { return MessageBox::Answer::Ok; });
    m_unit = std::make_shared<clsKeldoX>();
    m_unit->setConnection(clsKeldoX::SerialPort);
    m_unit->commPort()->setPortNumber(1);
    follow();
}

HostileUnit::~HostileUnit()
{
    m_unit.reset();
    installMessageDoor({});
    TestHooks::carryLines({});
    TestHooks::listPorts({});
    TestHooks::shortenTimers(0);
    TestHooks::settleWithin(0);
}

void HostileUnit::connectUnit()
{
    m_unit->Initialize();
}

// Not the AGC offset: a unit may answer anything to its setting but a refusal.
void HostileUnit::follow()
{
    const clsKeldoX *unit = m_unit.get();
    connect(unit, &clsKeldoX::FreqChange, this, &HostileUnit::onFrequency);
    connect(unit, &clsKeldoX::AttenChange, this,
            [this](double decibels) { onValue(UnitValue::Attenuation, decibels); });
    connect(unit, &clsKeldoX::InputAttenChange, this,
            [this](double decibels) { onValue(UnitValue::InputAttenuation, decibels); });
    connect(unit, &clsKeldoX::AGCChange, this, [this](bool on) { onValue(UnitValue::AGC, on); });
    connect(unit, &clsKeldoX::BypassChange, this,
            [this](bool on) { onValue(UnitValue::Bypass, on); });
    connect(unit, &clsKeldoX::ZNChange, this,
            [this](qint16 clicks) { onValue(UnitValue::Pelltrim, clicks); });
    connect(unit, &clsKeldoX::InputLimitingModeChange, this,
            [this](qint16 mode) { onValue(UnitValue::InputLimiting, mode); });
}

void HostileUnit::complain(const QString &what)
{
    if (m_complaint.isEmpty())
        m_complaint = what;
}

// A frequency that is shown lies on a step of a plan that the unit has told. Below zero only the
// unit itself may put it: whatever is a number counts.
void HostileUnit::onFrequency(qint32 step, double megahertz)
{
    if (step < 0 && !m_steps.contains(step))
        complain(QStringLiteral("step %1").arg(step));
    for (const double start : std::as_const(m_starts))
        for (const double spacing : std::as_const(m_spacings))
            if (std::abs(start + step * spacing / hertzPerMegahertz - megahertz) <=
                1e-9 * std::max(1.0, std::abs(megahertz)))
                return;
    QStringList told;
    for (const double start : std::as_const(m_starts))
        told.append(QString::number(start, 'g', 17) + QStringLiteral(" MHz"));
    for (const double spacing : std::as_const(m_spacings))
        told.append(QString::number(spacing, 'g', 17) + QStringLiteral(" Hz"));
    complain(QStringLiteral("step %1 is shown at %2 MHz, told were: %3")
                 .arg(step)
                 .arg(megahertz, 0, 'g', 17)
                 .arg(told.join(QStringLiteral(", "))));
}

// A bad reply changes no member: what is shown after one is what was shown before.
void HostileUnit::onValue(UnitValue value, double number)
{
    if (m_shown.contains(value) && m_shown.value(value) != number)
        complain(QStringLiteral("value %1 went from %2 to %3 by bad replies alone")
                     .arg(int(value))
                     .arg(m_shown.value(value))
                     .arg(number));
    m_shown.insert(value, number);
}

QByteArray HostileUnit::usualAnswer(const QByteArray &command)
{
    const auto reply = m_simulated.answer(command.toStdString());
    return reply ? QByteArray::fromStdString(*reply) + '\r' : QByteArray();
}

static QByteArray garbage(int kind)
{
    switch (kind) {
    case 0:
        return {};
    case 1:
        return QByteArray("\r");
    case 2:
        return QByteArray("UNRECOGNIZED COMMAND\r");
    case 3:
        // No digit: one that is the value just sent would be its echo.
        return QByteArray("\xff\x80\x01\x07\x1b[J\r");
    case 4:
        return QByteArray("<b>bold</b>\r");
    default:
        return QByteArray("PERMISSION DENIED\r");
    }
}

QList<QByteArray> HostileUnit::answer(const QByteArray &command)
{
    QByteArray reply = usualAnswer(command);
    const int kind = m_onlyGarbage ? 0 : m_choices.choose(8);
    if (kind != 0)
        m_shown.clear(); // a reply that may have a sense may change what is known
    switch (kind) {
    case 0:
        reply = garbage(m_choices.choose(6));
        break;
    case 1: // bytes of its own
        reply = m_choices.piece() + '\r';
        break;
    case 2: // one byte of it is another
        if (!reply.isEmpty())
            reply[m_choices.choose(static_cast<int>(reply.size()))] =
                static_cast<char>(m_choices.choose(256));
        break;
    case 3: // cut short
        reply.truncate(m_choices.choose(static_cast<int>(reply.size()) + 1));
        break;
    default:
        break;
    }
    hear(command, reply);
    const qsizetype half = reply.size() / 2;
    if (m_choices.choose(4) == 0 && half > 0)
        return {reply.left(half), reply.mid(half)};
    return reply.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{reply};
}

// Any number that the reply could be read as counts as told: the text before it does not matter.
void HostileUnit::hear(const QByteArray &command, const QByteArray &reply)
{
    if (command != "*START FREQ?" && command != "*CHAN SPACE?" && command != "*STEP?")
        return;
    // A carriage return in the middle may end the reply, or not, as the bytes happen to arrive.
    for (const QByteArray &text : {reply.left(reply.indexOf('\r')), reply}) {
        const double number = leadingNumber(clsKeldoX::ParseData(QString::fromLatin1(text)));
        if (command == "*STEP?")
            m_steps.insert(std::nearbyint(number));
        else if (command == "*START FREQ?")
            m_starts.insert(number);
        else
            m_spacings.insert(std::nearbyint(number));
    }
}

const QList<HostileUnit::Operation> &HostileUnit::queries()
{
    static const QList<Operation> all = {
        [](HostileUnit &h) { h.m_unit->currentFreq(); },
        [](HostileUnit &h) { h.m_unit->StopFreq(); },
        [](HostileUnit &h) { h.m_unit->MaxStep(); },
        [](HostileUnit &h) { h.m_unit->ChannelSpacing(); },
        [](HostileUnit &h) { h.m_unit->ChanBW(); },
        [](HostileUnit &h) { h.m_unit->IFfreq(); },
        [](HostileUnit &h) { h.m_unit->preScaler(); },
        [](HostileUnit &h) { h.m_unit->Locked(); },
        [](HostileUnit &h) { h.m_unit->AGC(); },
        [](HostileUnit &h) { h.m_unit->atten(); },
        [](HostileUnit &h) { h.m_unit->MaxAtten(); },
        [](HostileUnit &h) { h.m_unit->attenStep(); },
        [](HostileUnit &h) { h.m_unit->InputAtten(); },
        [](HostileUnit &h) { h.m_unit->attenOffset(); },
        [](HostileUnit &h) { h.m_unit->Bypass(); },
        [](HostileUnit &h) { h.m_unit->InputLimitingMode(); },
        [](HostileUnit &h) { h.m_unit->Pelltrim(); },
        [](HostileUnit &h) { h.m_unit->PelltrimCal(); },
        [](HostileUnit &h) { h.m_unit->ZN_calMode(); },
        [](HostileUnit &h) { h.m_unit->DetectorReading(); },
        [](HostileUnit &h) { h.m_unit->InputDetectorReading(); },
        [](HostileUnit &h) { h.m_unit->deadBand(); },
        [](HostileUnit &h) { h.m_unit->StoreADCvalue(86); },
        [](HostileUnit &h) { h.m_unit->HasBypass(); },
        [](HostileUnit &h) { h.m_unit->HasPelltrim(); },
        [](HostileUnit &h) { h.m_unit->FirmwareRevision(); },
        [](HostileUnit &h) { h.m_unit->ID(); },
    };
    return all;
}

const QList<HostileUnit::Operation> &HostileUnit::settings()
{
    static const auto number = [](HostileUnit &h) { return h.m_choices.choose(256); };
    static const QList<Operation> all = {
        [](HostileUnit &h) { h.m_unit->setCurrentStep(number(h) * 20); },
        [](HostileUnit &h) { h.m_unit->setCurrentFreq(90 + number(h) / 4.0); },
        [](HostileUnit &h) { h.m_unit->setAGC(number(h) % 2 == 1); },
        [](HostileUnit &h) { h.m_unit->setAtten(number(h) / 4.0); },
        [](HostileUnit &h) { h.m_unit->setInputAtten(number(h) / 10.0); },
        [](HostileUnit &h) { h.m_unit->setAttenOffset(number(h) - 128); },
        [](HostileUnit &h) { h.m_unit->setBypass(number(h) % 2 == 1); },
        [](HostileUnit &h) {
            h.m_unit->setInputLimitingMode(static_cast<std::int16_t>(number(h) % 5));
        },
        [](HostileUnit &h) { h.m_unit->setPelltrim(static_cast<std::int16_t>(number(h))); },
        [](HostileUnit &h) { h.m_unit->setPelltrimCal(static_cast<std::int16_t>(number(h))); },
        [](HostileUnit &h) { h.m_unit->setZN_calMode(number(h) % 2 == 1); },
        [](HostileUnit &h) { h.m_unit->setDeadBand(static_cast<std::int16_t>(number(h))); },
        [](HostileUnit &h) { h.m_unit->setAGCaddr(static_cast<std::int16_t>(number(h))); },
        [](HostileUnit &h) { h.m_unit->deviceWrite(QStringLiteral("PASSWORD x")); },
    };
    return all;
}

QString HostileUnit::operate()
{
    m_onlyGarbage = m_choices.choose(4) == 0;
    const int kind = m_choices.choose(32);
    if (kind == 0) {
        m_unit->commPort()->ClosePort();
    } else if (kind <= 2 || !m_unit->PortIsOpen()) {
        m_shown.clear(); // another unit may answer
        m_unit->Initialize();
    } else if (kind < 18) {
        queries().at(m_choices.choose(static_cast<int>(queries().size())))(*this);
    } else {
        settings().at(m_choices.choose(static_cast<int>(settings().size())))(*this);
    }
    if (m_unit->commPort()->isBusy())
        complain(QStringLiteral("an exchange never ended"));
    if (m_unit->commPort()->Buffer().size() > clsCommPort::longestReply)
        complain(QStringLiteral("the buffer is not bounded"));
    return std::exchange(m_complaint, {});
}
