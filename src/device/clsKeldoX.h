// One connected filter unit. Every property read or write is one command line and one reply line
// over the unit's serial port; events tell the windows what changed. The sources are by subject:
// transaction, shapes of query and setting, frequency plan, steps, levels, options, fine tuning.
//
// Common to all properties: with the port closed, writes send nothing and reads give 0, False or
// an empty text, but set-up values give what Initialize has read. A bad reply leaves the member as
// it was, gives status 2 and, while DisplayErrors is on, a message box. Run-time errors are
// reported and never leave the object.
#pragma once

#include "device/Levels.h"
#include "device/StepTuning.h"

#include <functional>
#include <optional>

class clsKeldoX : public UnitEvents,
                  private Exchange,
                  public Options,
                  public FrequencyPlan,
                  public StepTuning,
                  public Levels
{
    Q_OBJECT

public:
    static constexpr int MinPelltrimAbsoluteSetting = 0; // clicks
    static constexpr int MaxPelltrimAbsoluteSetting = 255;

    clsKeldoX();
    ~clsKeldoX() override;

    // --- transaction ---------------------------------------------------------------------------
    using Exchange::Network;
    using Exchange::NoTransport;
    using Exchange::SerialPort;
    using Exchange::Transport;

    using Exchange::commPort;
    using Exchange::Connection;
    using Exchange::deviceWrite;
    using Exchange::displaysErrors;
    using Exchange::lastReply;
    using Exchange::lastStatus;
    using Exchange::PortIsOpen;
    using Exchange::setConnection;
    using Exchange::setDisplayErrors;

    bool DeviceFound() const { return setup().deviceFound; }
    void setDeviceFound(bool found) { setup().deviceFound = found; }
    QString DebugInfo() const { return m_debugInfo; }
    void setDebugInfo(const QString &text) { m_debugInfo = text; }
    bool isInitialized() const { return setup().initialized; }

    // Opens the serial port; a box tells when it could not be opened.
    void InitThePort();
    // Opens the port, addresses and identifies the unit and reads its set-up. True when a unit
    // answered with an accepted identity. Ends with DUTChange and one reading of the frequency.
    bool Initialize();
    // Keeps digits, signs and points of a reply: "12.5 MHz" gives "12.5".
    static QString ParseData(const QString &text);
    void LISTEN(std::int16_t address); // sends >LISTENnn
    void UNLISTEN();                   // sends >UNLISTEN
    QString ID();                      // *ID?; "???" when the unit did not understand
    static bool IsAnKeldoXID(const QString &text);

    // --- options, identity, status ---------------------------------------------------------------
    std::int16_t addr(); // no transaction
    // With the port closed the address is stored for Initialize; with the port open the unit is
    // given it (!ADDR).
    void setAddr(std::int16_t address);

    // --- fine tuning, clicks ---------------------------------------------------------------------
    std::int16_t Pelltrim();               // *ZNSE?
    void setPelltrim(std::int16_t clicks); // sent as it stands; the unit judges it
    std::int16_t PelltrimCal();            // *ZNCA?
    void setPelltrimCal(std::int16_t clicks);
    bool ZN_calMode(); // *ZNCM? above firmware 2.27
    // Sent above firmware 2.27, emulated above 2.2, nothing below.
    void setZN_calMode(bool on);

    // --- detectors and AGC table, for service ------------------------------------------------
    static constexpr std::int16_t FirstAddr = 36; // of the AGC table in the unit's memory
    static constexpr std::int16_t SizeOfAGCTable = 50;
    // Deliberately one past the last entry: a scratch address.
    static constexpr std::int16_t LastAddr = FirstAddr + SizeOfAGCTable;

    // DETA?; on firmware below 2.33 through the AGC table's scratch address, which is left as it
    // was. After a bad reply the reading before.
    std::int32_t DetectorReading();
    std::int32_t InputDetectorReading(); // DETB?
    std::int16_t deadBand();             // *DBND?
    void setDeadBand(std::int16_t value);
    std::int16_t StartOfAGCTable();        // *ATAB?
    void setAGCaddr(std::int16_t address); // !SRCE
    std::int16_t AGCdata();                // *DATA?, the byte at the address, 0 to 255
    void setAGCdata(std::int16_t byte);    // !WDAT
    // !ATAB: the unit stores its detector value at the address. Gives that value; 0 when it failed.
    std::int32_t StoreADCvalue(std::int16_t value);

private:
    using Store = std::function<void(double number)>;

    // What a query is: its command, the test of a good reply, and the message for a bad one
    // (nullptr for none).
    struct ReplyQuery
    {
        const char *command;
        Test isGood;
        const char *message;
    };

    std::int32_t ask(const ReplyQuery &query, const Store &store);
    std::int32_t judgeEcho(const QString &reply, const QString &sent, const char *message,
                           const Store &store);
    std::int32_t judgeSwitch(const QString &reply, bool on, const char *message, bool &member);
    std::int32_t judgeFailure(const QString &reply, const char *message);
    bool isRefused(const QString &reply, std::int32_t &status);
    void readSetup();
    void readFineTuning();
    std::int32_t judgeClicks(const QString &reply, const char *message, std::int16_t &member);
    void askClicks(const char *source, const char *command, const char *message,
                   std::int16_t &member);
    std::int32_t writeClicks(const char *source, const char *command, std::int16_t clicks,
                             const char *message, std::int16_t &member);
    std::int32_t writePelltrim(std::int16_t clicks);
    void askCalibration();
    void finishClicks(std::int32_t status);
    bool canFineTune();
    void askDetector(const char *command, std::int32_t &reading);
    void readDetectorThroughTable();
    std::optional<std::int16_t> askAGCdata();
    std::int32_t storeADC(std::int16_t address, std::int32_t &reading);
    std::int32_t judgeService(const QString &reply, bool isGood, const char *message);

    std::int16_t m_addr = 0;
    QString m_id;
    QString m_debugInfo;

    std::int16_t m_pelltrim = 128;
    std::int16_t m_pelltrimCal = 128;
    std::int16_t m_rememberedPelltrim = 0;
    bool m_calMode = false;

    std::int32_t m_detectorReading = 0;
    std::int32_t m_inputDetectorReading = 0;
    std::int16_t m_deadBand = 0;
    std::int16_t m_startOfAGCTable = 0;
    std::int16_t m_agcData = 0;
};
