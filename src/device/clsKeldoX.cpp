// Connecting to a unit: opening the port, addressing, identity, and the reading of the set-up.
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
      Levels(*this, *this, *this),
      FineTuning(*this, *this, *this),
      Detectors(*this, *this)
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
    setup().complained = setup().gaveUp = setup().cancelled = false;
    resumeNext(
        "clsKeldoX.Initialize", [] { logEvent(logName(), QStringLiteral(" initializing ")); },
        [this] { InitThePort(); },
        [this] {
            if (m_addr > 0) {
                UNLISTEN();
                LISTEN(m_addr);
            }
        },
        [&] { accepted = IsAnKeldoXID(ID()); });
    if (accepted)
        readIn();
    else // whoever answers next may be another unit
        setup().initialized = setup().isGood = setup().deviceFound = false;
    setup().initializing = false;
    return accepted; // also by a unit that was lost while it was read in
}

// A port that closes meanwhile, by a hang-up, by the operator or because the unit fell silent, ends
// it: nothing of a closed port is kept or announced.
void clsKeldoX::readIn()
{
    const auto whileOpen = [this](auto step) {
        return [this, step] {
            if (PortIsOpen())
                step();
        };
    };
    beginReadingIn();
    resumeNext(
        "clsKeldoX.Initialize", [this] { setup().deviceFound = true; }, [this] { Locked(); },
        [this] { readSetup(); }, whileOpen([this] { readFineTuning(); }), whileOpen([this] {
            setup().initialized = true;
            emit DUTChange();
        }),
        whileOpen([this] { currentFreq(); }));
    if (!PortIsOpen())
        setup().initialized = setup().isGood = false;
    endReadingIn();
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
    forgetPlan();
    forgetStep();
    forgetOptions();
    forgetLevels();
    forgetFineTuning();
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

void clsKeldoX::LISTEN(std::int16_t address)
{
    run("clsKeldoX.LISTEN", [&] {
        const QString digits = QString::number(address).rightJustified(2, QLatin1Char('0'));
        logEvent(logName(), QStringLiteral(" sending LISTEN ") + digits);
        send(QStringLiteral(">LISTEN") + digits);
    });
}

void clsKeldoX::UNLISTEN()
{
    run("clsKeldoX.UNLISTEN", [this] {
        logEvent(logName(), QStringLiteral(" sending UNLISTEN "));
        send(QStringLiteral(">UNLISTEN"));
    });
}

QString clsKeldoX::ID()
{
    QString identity;
    run("clsKeldoX.Get ID", [&] {
        const QString reply = send(QStringLiteral("*ID?")).whole();
        identity = ReplyText::isErrorWord(reply) ? QStringLiteral("???") : reply;
        if (!IsAnKeldoXID(reply))
            complain("The device did not respond correctly to an ID query.");
    });
    return identity;
}

bool clsKeldoX::IsAnKeldoXID(const QString &text)
{
    const QString identity = text.toUpper();
    return identity == QLatin1String("KELDO-X") || identity == QLatin1String("TOVIN-R");
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
    // The search gives units their addresses while their ports are closed.
    if (!PortIsOpen()) {
        m_addr = address;
        return;
    }
    run("clsKeldoX.Let addr", [&] {
        const Reply reply = send(QStringLiteral("!ADDR") + numberToTextWithBlank(address));
        const bool good = ReplyText::isNumber(reply.whole(), address);
        if (good)
            m_addr = address;
        judge(reply, good, "The device did not respond correctly to an address command.", false);
    });
}
