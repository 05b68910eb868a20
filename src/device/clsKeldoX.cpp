// The unit's transaction: opening, addressing, identity, the reading of the set-up, and one command
// line out and one reply line back.
#include "device/clsKeldoX.h"

#include "core/EventLog.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/PortDirectory.h"

static QString logName()
{
    return QStringLiteral("Keldo-X ");
}

clsKeldoX::clsKeldoX()
    : Exchange(static_cast<UnitEvents &>(*this)),
      Options(static_cast<Exchange &>(*this)),
      FrequencyPlan(*this, *this),
      StepTuning(*this, *this, *this),
      Levels(*this, *this, *this)
{
}

clsKeldoX::~clsKeldoX() = default;

void clsKeldoX::InitThePort()
{
    reportAndEnd("clsKeldoX.InitThePort", [this] {
        if (Connection() != SerialPort)
            return;
        const auto port = commPort();
        port->setPollInterval(0);
        port->setPollDelay(0);
        if (port->PortMode() == clsCommPort::Event) {
            port->setPollTimeOutCount(1000);
        } else if (port->PortMode() == clsCommPort::Polling) {
            port->setPollTimeOutCount(200);
            port->settimeOutMs(10000);
        }
        // A unit plugged in since the last search is found under its number.
        PortDirectory::instance().refresh();
        port->InitializePort();
        if (port->IsOpen()) {
            logEvent(logName(), QStringLiteral(" opened serial port "));
            return;
        }
        logEvent(logName(), QStringLiteral(" could not open serial port "));
        showMessage(QStringLiteral("The serial port is not open"), MessageBox::Exclamation);
    });
}

bool clsKeldoX::Initialize()
{
    // Whoever waits for a reply in here may see the table's slot filled with another unit.
    const auto unit = keepAlive();
    bool accepted = false;
    setup().initializing = true;
    setup().complained = false;
    resumeNext(
        "clsKeldoX.Initialize", [] { logEvent(logName(), QStringLiteral(" initializing ")); },
        [this] { InitThePort(); },
        [this] {
            if (m_addr > 0) {
                UNLISTEN();
                LISTEN(m_addr);
            }
        },
        [&] { accepted = IsAnKeldoXID(ID().toUpper()); });
    if (accepted) {
        resumeNext(
            "clsKeldoX.Initialize", [this] { setup().deviceFound = true; }, [this] { Locked(); },
            [this] { readSetup(); }, [this] { readFineTuning(); },
            [this] {
                setup().initialized = true;
                emit DUTChange();
            },
            [this] { currentFreq(); });
    }
    setup().initializing = false;
    return accepted;
}

// What a unit is does not change while it is connected: it is read once, but read again when a
// reply was bad the first time.
void clsKeldoX::readSetup()
{
    if (setup().initialized && setup().isGood)
        return;
    setup().initialized = false;
    setup().isGood = true;
    setup().reading = true;
    resumeNext(
        "clsKeldoX.Initialize", [this] { rereadFirmware(); }, [this] { StartFreq(); },
        [this] { MaxStep(); }, [this] { StopFreq(); }, [this] { IFfreq(); }, [this] { ChanBW(); },
        [this] { AOPT(); }, [this] { COPT(); }, [this] { HasBypass(); },
        [this] {
            if (!HasAGC())
                setAGC(false);
        },
        [this] { HasPelltrim(); }, [this] { InputLimitingMode(); });
    setup().reading = false;
    // A port that was closed under the reading has left values unread without a bad reply.
    if (!PortIsOpen())
        setup().isGood = false;
}

void clsKeldoX::readFineTuning()
{
    if (!knowsPelltrim())
        return;
    askCalibration();
    m_rememberedPelltrim = Pelltrim();
}

QString clsKeldoX::ParseData(const QString &text)
{
    return ReplyText::numberPart(text);
}

void clsKeldoX::LISTEN(std::int16_t address)
{
    reportAndEnd("clsKeldoX.LISTEN", [&] {
        if (!PortIsOpen())
            return;
        const QString digits = QString::number(address).rightJustified(2, QLatin1Char('0'));
        logEvent(logName(), QStringLiteral(" sending LISTEN ") + digits);
        deviceWrite(QStringLiteral(">LISTEN") + digits);
    });
}

void clsKeldoX::UNLISTEN()
{
    reportAndEnd("clsKeldoX.UNLISTEN", [this] {
        if (!PortIsOpen())
            return;
        logEvent(logName(), QStringLiteral(" sending UNLISTEN "));
        deviceWrite(QStringLiteral(">UNLISTEN"));
    });
}

// With the port open, an object that is not initialized forgets its address when asked: what the
// unit answers to is not known then.
std::int16_t clsKeldoX::addr()
{
    if (!PortIsOpen())
        return 0;
    if (!setup().initialized)
        m_addr = 0;
    return m_addr;
}

void clsKeldoX::setAddr(std::int16_t address)
{
    const auto unit = keepAlive();
    // The search gives units their addresses while their ports are closed.
    if (!PortIsOpen()) {
        m_addr = address;
        return;
    }
    reportAndEnd("clsKeldoX.Let addr", [&] {
        const QString reply = deviceWrite(QStringLiteral("!ADDR") + numberToTextWithBlank(address));
        if (isNumeric(reply) && leadingNumber(ParseData(reply)) == address) {
            keep(Good);
            m_addr = address;
            return;
        }
        keep(BadReply);
        complain("The device did not respond correctly to an address command.");
    });
}

QString clsKeldoX::ID()
{
    const auto unit = keepAlive();
    QString identity;
    reportAndEnd("clsKeldoX.Get ID", [&] {
        if (!PortIsOpen())
            return;
        const QString reply = deviceWrite(QStringLiteral("*ID?"));
        const bool notUnderstood =
            reply == QLatin1String("TIMED OUT") || reply == QLatin1String("UNRECOGNIZED COMMAND");
        m_id = notUnderstood ? QStringLiteral("???") : reply;
        identity = m_id;
        if (!IsAnKeldoXID(reply.toUpper()))
            complain("The device did not respond correctly to an ID query.");
    });
    return identity;
}

bool clsKeldoX::IsAnKeldoXID(const QString &text)
{
    const QString identity = text.toUpper();
    return identity == QLatin1String("KELDO-X") || identity == QLatin1String("TOVIN-R");
}
