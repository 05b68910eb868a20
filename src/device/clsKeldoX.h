// One connected filter unit: its subjects over one exchange, and the connection that reads them in.
// Events tell the windows what changed; device/Exchange.h says what is common to all properties.
#pragma once

#include "device/Detectors.h"
#include "device/FineTuning.h"
#include "device/Levels.h"
#include "device/StepTuning.h"

class clsKeldoX : public UnitEvents,
                  private Exchange,
                  public Options,
                  public FrequencyPlan,
                  public StepTuning,
                  public Levels,
                  public FineTuning,
                  public Detectors
{
    Q_OBJECT

public:
    clsKeldoX();
    ~clsKeldoX() override;

    using Exchange::Network;
    using Exchange::NoTransport;
    using Exchange::SerialPort;
    using Exchange::Transport;

    using Exchange::cancelInitialize;
    using Exchange::commPort;
    using Exchange::Connection;
    using Exchange::deviceWrite;
    using Exchange::displaysErrors;
    using Exchange::fellSilent;
    using Exchange::isUnconfirmed;
    using Exchange::lastReply;
    using Exchange::lastStatus;
    using Exchange::PortIsOpen;
    using Exchange::setConnection;
    using Exchange::setDisplayErrors;
    using Exchange::silences;

    bool DeviceFound() const { return setup().deviceFound; }
    void setDeviceFound(bool found) { setup().deviceFound = found; }
    bool isInitialized() const { return setup().initialized; }
    // The last connection was broken off before it was made.
    bool wasCancelled() const { return setup().cancelled; }
    QString DebugInfo() const { return m_debugInfo; }
    void setDebugInfo(const QString &text) { m_debugInfo = text; }

    // Opens the serial port; a box tells when it could not be opened.
    void InitThePort();
    // Opens the port, addresses and identifies the unit and reads its set-up. True when a unit
    // answered with an accepted identity. Ends with DUTChange and one reading of the frequency.
    bool Initialize();

    // Keeps digits, signs and points of a reply: "12.5 MHz" gives "12.5".
    static QString ParseData(const QString &text) { return ReplyText::numberPart(text); }
    void LISTEN(std::int16_t address); // sends >LISTENnn
    void UNLISTEN();                   // sends >UNLISTEN
    QString ID();                      // *ID?; "???" when the unit did not understand
    static bool IsAnKeldoXID(const QString &text);
    std::int16_t addr(); // no exchange: nothing is sent
    // With the port closed the address is stored for Initialize; with the port open the unit is
    // given it (!ADDR).
    void setAddr(std::int16_t address);

private:
    void readIn();
    void readSetup();

    QString m_debugInfo;
    std::int16_t m_addr = 0;
};
