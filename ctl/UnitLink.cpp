// Opening, and telling what went wrong.
#include "ctl/UnitLink.h"

#include "core/Message.h"
#include "core/Secrets.h"
#include "core/TextNumbers.h"
#include "core/TextStart.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

namespace {

// Units that are not meant need not answer to an address: the search waits no longer either.
constexpr int addressingMs = 1900;
constexpr int replyMs = 10000; // as in the program

// The texts are laid out for boxes.
QString onOneLine(const QString &text)
{
    return text.simplified();
}

} // namespace

UnitLink::UnitLink(const Request &request)
    : m_unit(std::make_shared<clsKeldoX>()),
      m_wire(*m_unit->commPort(), request.verbose),
      m_timeout(request.timeout.value_or(replyMs)),
      m_address(request.address)
{
    installMessageDoor([this](const QString &text, int, const QString &informative) {
        hear(text + QLatin1Char(' ') + informative);
        return MessageBox::Answer::Ok;
    });
    m_unit->setConnection(clsKeldoX::SerialPort);
    m_unit->commPort()->setPortNumber(request.portNumber());
    // The port's own words are for boxes; its cause and remedy are told instead.
    m_unit->commPort()->setDisplayErrors(false);
    QObject::connect(m_unit.get(), &clsKeldoX::LinkLost, &m_wire, [this] { m_lost = true; });
    QObject::connect(m_unit.get(), &clsKeldoX::AboutToExchange, &m_wire,
                     [this] { leaveUnsentAfterSilence(); });
}

UnitLink::~UnitLink()
{
    installMessageDoor({});
    m_unit->commPort()->ClosePort();
}

void UnitLink::hear(const QString &text)
{
    if (!m_complaint)
        m_complaint = Complaint{onOneLine(text), m_unit->lastReply()};
}

// Each further command to a silent unit would wait for its own time-out.
void UnitLink::leaveUnsentAfterSilence()
{
    if (!m_keepsTrying && !m_identity.isEmpty() && m_wire.isSilent())
        m_unit->commPort()->ClosePort();
}

QString UnitLink::portName() const
{
    const std::int16_t number = m_unit->commPort()->PortNumber();
    const auto device = PortDirectory::instance().find(number);
    const QString name = QStringLiteral("COM%1").arg(number);
    return device && device->location != name
               ? QStringLiteral("%1 (%2)").arg(name, device->location)
               : name;
}

void UnitLink::open()
{
    const auto port = m_unit->commPort();
    PortDirectory::instance().refresh();
    if (!port->InitializePort()) {
        if (EventQueue::ending())
            throw interrupted();
        throw Failure(Exit::NoPort, port->OpenFailure().isEmpty()
                                        ? QStringLiteral("There is no %1. \"keldo-x-ctl ports\" "
                                                         "lists the ports.")
                                              .arg(portName())
                                        : port->OpenFailure());
    }
    if (m_address > 0) {
        port->settimeOutMs(std::min(m_timeout, addressingMs));
        m_unit->UNLISTEN();
        m_unit->LISTEN(m_address);
    }
    port->settimeOutMs(m_timeout);
    begin();
}

void UnitLink::connect()
{
    open();
    const QString identity = m_unit->ID();
    if (m_complaint && m_wire.isComplete() && !clsKeldoX::IsAnKeldoXID(identity))
        m_complaint->text =
            QStringLiteral("What is connected to %1 is no KELDO-X.").arg(portName());
    if (!isGood())
        throw failure({});
    m_identity = identity;
    m_unit->setDeviceFound(true);
}

void UnitLink::begin()
{
    m_complaint.reset();
    m_wire.forget();
}

bool UnitLink::isGood() const
{
    const std::int32_t status = m_unit->lastStatus();
    return !m_complaint && !m_lost && m_unit->PortIsOpen() &&
           (status == clsKeldoX::Good || status == clsKeldoX::LockedAfterStep);
}

Failure UnitLink::noAnswer() const
{
    return {Exit::NoAnswer,
            QStringLiteral("No answer from %1 within %2 s. Check the unit's power and data "
                           "connections.")
                .arg(m_address > 0 ? QStringLiteral("address %1 on ").arg(m_address) + portName()
                                   : portName(),
                     numberToText(m_timeout / 1000.0))};
}

Failure UnitLink::failure(const QString &what) const
{
    if (EventQueue::ending())
        return interrupted();
    if (m_lost)
        return {Exit::NoPort, QStringLiteral("%1 is gone: the device was unplugged or switched "
                                             "off.")
                                  .arg(portName())};
    if (m_wire.isSilent())
        return noAnswer();
    if (m_unit->lastStatus() == clsKeldoX::Refused)
        return {Exit::Refused,
                QStringLiteral("The unit refused: it wants its password first (keldo-x-ctl raw -, "
                               "with the line PASSWORD and the word).")};
    const Complaint complaint = m_complaint.value_or(
        Complaint{QStringLiteral("The unit did not answer correctly when %1.").arg(what),
                  m_unit->lastReply()});
    const QString reply = startOfText(secrets().masked(complaint.reply));
    return {Exit::Refused,
            complaint.text + QStringLiteral(" It answered \"%1\"%2.")
                                 .arg(reply, m_wire.isComplete()
                                                 ? QString()
                                                 : QStringLiteral(" and no line's end"))};
}
