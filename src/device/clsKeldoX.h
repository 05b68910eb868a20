// One connected filter unit. Every property read or write is one command line and one reply line
// over the unit's serial port; events tell the windows what changed. The sources are by subject:
// transaction, shapes of query and setting, frequency plan, steps, levels, options, fine tuning.
//
// Common to all properties: with the port closed, writes send nothing and reads give 0, False or
// an empty text, but set-up values give what Initialize has read. A bad reply leaves the member as
// it was, gives status 2 and, while DisplayErrors is on, a message box. Run-time errors are
// reported and never leave the object.
#pragma once

#include "device/UnitValue.h"
#include "port/clsCommPort.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class clsKeldoX : public QObject, public std::enable_shared_from_this<clsKeldoX>
{
    Q_OBJECT

public:
    // Codes of StatusChange. There is no code 1.
    enum Status : std::int32_t {
        Good = 0,
        BadReply = 2,
        Unlocked = 3,
        LockedAfterStep = 4,
        Refused = 5,
    };

    // Values of Connection. Only the serial port carries lines.
    enum Transport : std::int32_t { NoTransport = 0, SerialPort = 1, Network = 2 };

    static constexpr int MinPelltrimAbsoluteSetting = 0; // clicks
    static constexpr int MaxPelltrimAbsoluteSetting = 255;

    clsKeldoX();
    ~clsKeldoX() override;

    // --- transaction ---------------------------------------------------------------------------
    std::int32_t Connection() const { return m_connection; }
    void setConnection(std::int32_t transport) { m_connection = transport; }
    void setDisplayErrors(bool display) { m_displayErrors = display; }
    bool displaysErrors() const { return m_displayErrors; }
    // On: an unlocked oscillator in a step reply also raises DUTError.
    void setRaiseErrorEvents(bool raise) { m_raiseErrorEvents = raise; }
    bool DeviceFound() const { return m_deviceFound; }
    void setDeviceFound(bool found) { m_deviceFound = found; }
    QString DebugInfo() const { return m_debugInfo; }
    void setDebugInfo(const QString &text) { m_debugInfo = text; }
    bool isInitialized() const { return m_initialized; }
    std::int32_t lastStatus() const { return m_lastStatus; }
    QString lastReply() const { return m_lastReply; }

    // The serial port object, made on first use. Never null.
    std::shared_ptr<clsCommPort> commPort();

    // Opens the serial port; a box tells when it could not be opened.
    void InitThePort();
    // Opens the port, addresses and identifies the unit and reads its set-up. True when a unit
    // answered with an accepted identity. Ends with DUTChange and one reading of the frequency.
    bool Initialize();
    bool PortIsOpen();

    // Sends one command line (without its carriage return) and gives the reply without trailing
    // blanks, CR and LF; what had arrived after a time-out; empty on a closed port. Stops polling.
    QString deviceWrite(const QString &command);
    // Keeps digits, signs and points of a reply: "12.5 MHz" gives "12.5".
    static QString ParseData(const QString &text);
    void LISTEN(std::int16_t address); // sends >LISTENnn
    void UNLISTEN();                   // sends >UNLISTEN
    QString ID();                      // *ID?; "???" when the unit did not understand
    static bool IsAnKeldoXID(const QString &text);

    // --- frequency plan, MHz and steps -----------------------------------------------------------
    double StartFreq(); // *START FREQ?
    void setStartFreq(double megahertz);
    double StopFreq(); // computed: start + maximum step
    double CenterFreq();
    std::int32_t IFfreq();                  // *IFRQ?, rounded to whole MHz
    void setIFfreq(std::int32_t megahertz); // up to 2147 MHz; beyond it error 6 is reported
    std::int32_t ChanBW(); // *BNDW?, Hz as the unit reports it; 0 on firmware up to 1.6
    void setChanBW(std::int32_t bandwidth);
    std::int32_t ChannelSpacing(); // *CHAN SPACE?, Hz; asked at every read
    void setChannelSpacing(std::int32_t hertz);
    std::int32_t MaxStep(); // *MAX STEP?
    void setMaxStep(std::int32_t steps);
    std::int32_t CurrentStep(); // *STEP?; asked at every read
    // *STEP n. Steps below 0 or beyond the maximum are ignored.
    void setCurrentStep(std::int32_t step);
    double currentFreq();
    // Tunes to the nearest step. A box tells of a frequency outside start to stop.
    void setCurrentFreq(double megahertz);
    void setQuickfreq(bool quick) { m_quickFreq = quick; } // on: QuickFreqChange, not FreqChange
    std::int16_t preScaler();                              // *PRSC?
    void setPreScaler(std::int16_t divisor);               // 64 or 128; others are ignored

    // Offsets from the start frequency, unrounded. 0 steps while the spacing is not known.
    double MHzToSteps(double megahertz);
    double StepsToMHz(std::int32_t steps);
    // Preset memory: 500 entries of two bytes from address 94208.
    static std::int32_t RomAdddrToStep(std::int32_t address); // zero-based entry
    static std::int32_t OneBasedIndexToRomAddr(std::int32_t index);

    // --- output levels, dB -----------------------------------------------------------------------
    bool AGC();           // *AGC_?
    void setAGC(bool on); // firmware above 1.6
    double atten();       // *ATTN?; a bad reply is normal while AGC runs. Raises no StatusChange.
    void setAtten(double decibels);
    std::int16_t MaxAtten(); // *MXAT?, or from option word A on firmware up to 2.3
    double attenStep();      // "*ATT STEP? "; 0 when the unit cannot tell
    double InputAtten();     // "INPUT ATTN?"; raises no event
    void setInputAtten(double decibels);
    double attenOffset(); // *AOFF?; firmware 2.0 and above
    void setAttenOffset(double decibels);
    bool Bypass(); // *ACT_?
    void setBypass(bool on);
    bool HasAdjustableInputLimiting(); // firmware 3.37 and above
    std::int16_t InputLimitingMode();  // "InputLimitMode?"
    void setInputLimitingMode(std::int16_t mode);

    // --- options, identity, status ---------------------------------------------------------------
    QString FirmwareRevision(); // *REVISION?; the raw reply, also when it is an error word
    double firmwareNumber();    // the revision's last four characters; 0 when not known
    std::int32_t AOPT();        // *AOPT?
    void setAOPT(std::int32_t word);
    std::int32_t COPT(); // *BOPT? up to firmware 3.37, OPTC? above
    void setCOPT(std::int32_t word);
    bool HasAGC();
    void setHasAGC(bool fitted);
    bool HasAtten();
    bool HasInputAtten();
    bool HasAGCOffset(); // AGC fitted, firmware 2.0 to 3.17
    bool HasPelltrim();
    void setHasPelltrim(bool fitted);
    bool HasBypass(); // *BYP_?; firmware above 1.6
    void setHasBypass(bool fitted);
    std::int16_t addr(); // no transaction
    // With the port closed the address is stored for Initialize; with the port open the unit is
    // given it (!ADDR).
    void setAddr(std::int16_t address);
    bool Locked(); // *LOCK?

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

signals:
    void FreqChange(qint32 step, double freqMHz);
    void QuickFreqChange(qint32 step, double freqMHz);
    void AGCChange(bool on);
    void AGCOffsetChange(double decibels);
    void AttenChange(double decibels);
    void InputAttenChange(double decibels);
    void DUTChange();
    void StatusChange(qint32 status);
    void DUTError(bool error);
    void ZNChange(qint16 setting);
    void BypassChange(bool on);
    void ZNcalModeChange(bool &on);
    void GetPassword();
    void InputLimitingModeChange(qint16 mode);

    // False: a setting got no good reply, so nobody knows what the unit has. True: it was read
    // again.
    void ConfirmationChange(UnitValue value, bool confirmed);

    // A command is about to be sent. Polling stops on it, and only its owner starts it again.
    void AboutToExchange();
    // The unit's port hung up; the object stays usable and opens it again when initialized.
    void LinkLost();

private:
    using Test = bool (*)(const QString &reply);
    using Store = std::function<void(double number)>;

    // What a query is: its command, the test of a good reply, and the message for a bad one
    // (nullptr for none).
    struct Query
    {
        const char *command;
        Test isGood;
        const char *message;
    };

    std::int32_t ask(const Query &query, const Store &store);
    std::int32_t judgeEcho(const QString &reply, const QString &sent, const char *message,
                           const Store &store);
    std::int32_t judgeSwitch(const QString &reply, bool on, const char *message, bool &member);
    std::int32_t judgeFailure(const QString &reply, const char *message);
    bool isRefused(const QString &reply, std::int32_t &status);
    void complain(const char *message);
    void logBadReply() const;
    void finish(std::int32_t status); // keeps the status and raises StatusChange
    void readSetup();
    void readFineTuning();
    void writeFactory(const char *source, const QString &command, double value);
    void raiseFreqChange(std::int32_t step);
    void judgeStepReply(const QString &reply, std::int32_t step);
    double askStartFreq();
    std::int32_t askMaxStep();
    void askOptions(const char *source, const char *command, std::int32_t &word);
    void askAOPT();
    void askCOPT();
    bool optionBit(std::int32_t mask, std::int32_t &word, void (clsKeldoX::*query)());
    void askHasBypass();
    bool hasNewOptionC();
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
    void onHungUp();

    std::int32_t m_connection = NoTransport;
    std::int16_t m_addr = 0;
    bool m_initialized = false;
    bool m_initializing = false;
    bool m_readingSetup = false;
    bool m_setupIsGood = false; // every set-up value had a good reply
    bool m_deviceFound = false;
    bool m_displayErrors = true;
    bool m_raiseErrorEvents = false;
    bool m_complained = false; // while initializing: one box tells of a unit that fell silent
    QString m_id;
    QString m_firmware;
    QString m_lastReply;
    QString m_debugInfo;
    std::int32_t m_lastStatus = Good;
    std::int32_t m_optionA = -1; // -1: not asked yet, every option reads as present
    std::int32_t m_optionC = -1;

    double m_startFreq = 0;
    double m_stopFreq = 0;
    double m_centerFreq = 0;
    double m_currentFreq = 0;
    double m_ifFreq = 0;
    std::int32_t m_channelSpacing = 0;
    std::int32_t m_maxStep = 0;
    std::int32_t m_currentStep = 0;
    std::int32_t m_channelBandwidth = 0;
    bool m_quickFreq = false;

    bool m_agc = false;
    double m_atten = 0;
    std::int16_t m_maxAtten = 0;
    double m_attenStep = 0;
    double m_inputAtten = 0;
    double m_agcOffset = 0;
    bool m_bypass = false;
    std::int16_t m_inputLimitingMode = 0;

    bool m_hasBypass = false;
    bool m_hasPelltrim = false;
    std::int16_t m_pelltrim = 128;
    std::int16_t m_pelltrimCal = 128;
    std::int16_t m_rememberedPelltrim = 0;
    bool m_calMode = false;

    std::int32_t m_detectorReading = 0;
    std::int32_t m_inputDetectorReading = 0;
    std::int16_t m_deadBand = 0;
    std::int16_t m_startOfAGCTable = 0;
    std::int16_t m_agcData = 0;

    std::shared_ptr<clsCommPort> m_port;
};
