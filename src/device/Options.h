// What the unit is and what it can do: firmware revision, option words and availability flags.
#pragma once

#include "device/Exchange.h"
#include "device/OptionBits.h"

// The flags ask the unit while it is not initialized. On a closed port they test the untouched
// word: before the first query every option reads as present.
class Options
{
public:
    explicit Options(Exchange &exchange) : m_exchange(exchange) {}

    QString FirmwareRevision(); // *REVISION?; the raw reply, also when it is an error word
    double firmwareNumber();    // the revision's last four characters; 0 when not known
    // Forgets the revision and asks for it, as a part of the set-up.
    void rereadFirmware();

    std::int32_t AOPT(); // *AOPT?
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

    // The largest attenuation by option word A, dB.
    std::int16_t maxAttenByOptions();
    // HasPelltrim by the word as it stands: never asks.
    bool knowsPelltrim() const;

private:
    std::int32_t wordA();
    bool hasNewOptionC();
    void askOptions(const char *source, const char *command, std::int32_t &word);
    void askAOPT();
    void askCOPT();
    void askHasBypass();

    Exchange &m_exchange;
    QString m_firmware;
    std::int32_t m_optionA = allOptions;
    std::int32_t m_optionC = allOptions;
    bool m_hasBypass = false;
};
