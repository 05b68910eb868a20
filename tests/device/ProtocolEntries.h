// Each command of the protocol, as the program's own code sends it, and with a number that no unit
// takes.
#pragma once

#include "device/clsKeldoX.h"
#include "discovery/clsSeeker.h"

using Unit = clsKeldoX;

struct Entry
{
    const char *command;
    std::function<void(Unit &)> send;
    const char *tooFar = nullptr;                // the same with a number that no unit takes
    std::function<void(Unit &)> sendTooFar = {}; // by the program, where a property lets it out
    const char *firmware = "3.38";
    int address = 0; // of the unit
};

inline const QList<Entry> &identity()
{
    static const QList<Entry> all = {
        {"*ID?", [](Unit &u) { u.ID(); }},
        {.command = ">LISTEN05", .send = [](Unit &u) { u.LISTEN(5); }, .address = 5},
        {.command = ">UNLISTEN", .send = [](Unit &u) { u.UNLISTEN(); }, .address = 5},
        {"!ADDR 5", [](Unit &u) { u.setAddr(5); }, "!ADDR 100", [](Unit &u) { u.setAddr(100); }},
        {"ID",
         [](Unit &) {
             clsSeeker seeker;
             seeker.Init(1);
             seeker.ItsAnAORRadio();
         }},
        {"PASSWORD secret", [](Unit &u) { u.deviceWrite(QStringLiteral("PASSWORD secret")); }},
        {"*REVISION?", [](Unit &u) { u.FirmwareRevision(); }},
        {"*LOCK?", [](Unit &u) { u.Locked(); }},
        {"*AOPT?", [](Unit &u) { u.AOPT(); }},
        {"!AOPT 10", [](Unit &u) { u.setAOPT(10); }, "!AOPT 256", [](Unit &u) { u.setAOPT(256); }},
        {.command = "*BOPT?", .send = [](Unit &u) { u.COPT(); }, .firmware = "3.17"},
        {"OPTC?", [](Unit &u) { u.COPT(); }},
        {"!BOPT 2", [](Unit &u) { u.setCOPT(2); }, "!BOPT 256", [](Unit &u) { u.setCOPT(256); },
         "3.17"},
        {"OPTC 2", [](Unit &u) { u.setCOPT(2); }, "OPTC 256", [](Unit &u) { u.setCOPT(256); }},
        {"!AGC 1", [](Unit &u) { u.setHasAGC(true); }, "!AGC 2"},
        {"*BYP_?", [](Unit &u) { u.HasBypass(); }},
        {"!BYP_ 1", [](Unit &u) { u.setHasBypass(true); }, "!BYP_ 2"},
    };
    return all;
}

inline const QList<Entry> &plan()
{
    static const QList<Entry> all = {
        {"*START FREQ?", [](Unit &u) { u.StartFreq(); }},
        {"!SFRQ 100000000", [](Unit &u) { u.setStartFreq(100); }, "!SFRQ 30000000000",
         [](Unit &u) { u.setStartFreq(30000); }},
        {"*MAX STEP?", [](Unit &u) { u.MaxStep(); }},
        {"!MXST 4000", [](Unit &u) { u.setMaxStep(4000); }, "!MXST 0",
         [](Unit &u) { u.setMaxStep(0); }},
        {"*CHAN SPACE?", [](Unit &u) { u.ChannelSpacing(); }},
        {"!CHSP 25000", [](Unit &u) { u.setChannelSpacing(25000); }, "!CHSP 0",
         [](Unit &u) { u.setChannelSpacing(0); }},
        {"*IFRQ?", [](Unit &u) { u.IFfreq(); }},
        {"!IFRQ 21000000", [](Unit &u) { u.setIFfreq(21); }, "!IFRQ 0",
         [](Unit &u) { u.setIFfreq(0); }},
        {"*BNDW?", [](Unit &u) { u.ChanBW(); }},
        {"!BNDW 25000", [](Unit &u) { u.setChanBW(25000); }, "!BNDW-1",
         [](Unit &u) { u.setChanBW(-1); }},
        {"*STEP?", [](Unit &u) { u.CurrentStep(); }},
        {"*STEP 250", [](Unit &u) { u.setCurrentStep(250); }, "*STEP 4001"},
        {"*PRSC?", [](Unit &u) { u.preScaler(); }},
        {"!PRSC 64", [](Unit &u) { u.setPreScaler(64); }, "!PRSC 65"},
    };
    return all;
}

inline const QList<Entry> &levels()
{
    static const QList<Entry> all = {
        {"*AGC_?", [](Unit &u) { u.AGC(); }},
        {"*AGC_ 1", [](Unit &u) { u.setAGC(true); }, "*AGC_ 2"},
        {"*ATTN?", [](Unit &u) { u.atten(); }},
        {"*ATTN 10.5", [](Unit &u) { u.setAtten(10.5); }, "*ATTN 51",
         [](Unit &u) { u.setAtten(51); }},
        {"*MXAT?", [](Unit &u) { u.MaxAtten(); }},
        {"*ATT STEP? ", [](Unit &u) { u.attenStep(); }},
        {"INPUT ATTN?", [](Unit &u) { u.InputAtten(); }},
        {"INPUT ATTN 3", [](Unit &u) { u.setInputAtten(3); }, "INPUT ATTN 32",
         [](Unit &u) { u.setInputAtten(32); }},
        {.command = "*AOFF?", .send = [](Unit &u) { u.attenOffset(); }, .firmware = "3.17"},
        {.command = "!AOFF -3",
         .send = [](Unit &u) { u.setAttenOffset(-3); },
         .tooFar = "!AOFF -51",
         .firmware = "3.17"},
        {"*ACT_?", [](Unit &u) { u.Bypass(); }},
        {"*ACT_ 1", [](Unit &u) { u.setBypass(true); }, "*ACT_ 2"},
        {"InputLimitMode?", [](Unit &u) { u.InputLimitingMode(); }},
        {"InputLimitMode 1", [](Unit &u) { u.setInputLimitingMode(1); }, "InputLimitMode 5",
         [](Unit &u) { u.setInputLimitingMode(5); }},
    };
    return all;
}

inline const QList<Entry> &tuningAndDetectors()
{
    static const QList<Entry> all = {
        {"*ZNSE?", [](Unit &u) { u.Pelltrim(); }},
        {"*ZNSE 140", [](Unit &u) { u.setPelltrim(140); }, "*ZNSE 256",
         [](Unit &u) { u.setPelltrim(256); }},
        {"*ZNCA?", [](Unit &u) { u.PelltrimCal(); }},
        {"!ZNCA 130", [](Unit &u) { u.setPelltrimCal(130); }, "!ZNCA 256",
         [](Unit &u) { u.setPelltrimCal(256); }},
        {"*ZNCM?", [](Unit &u) { u.ZN_calMode(); }},
        {"*ZNCM 1", [](Unit &u) { u.setZN_calMode(true); }, "*ZNCM 2"},
        {"DETA?", [](Unit &u) { u.DetectorReading(); }},
        {"DETB?", [](Unit &u) { u.InputDetectorReading(); }},
        {"*DBND?", [](Unit &u) { u.deadBand(); }},
        {"!DBND 3", [](Unit &u) { u.setDeadBand(3); }, "!DBND 256",
         [](Unit &u) { u.setDeadBand(256); }},
        {"*ATAB?", [](Unit &u) { u.StartOfAGCTable(); }},
        {"!SRCE 86", [](Unit &u) { u.setAGCaddr(86); }, "!SRCE 256",
         [](Unit &u) { u.setAGCaddr(256); }},
        {"*DATA?", [](Unit &u) { u.AGCdata(); }},
        {"!WDAT 40", [](Unit &u) { u.setAGCdata(40); }, "!WDAT 256",
         [](Unit &u) { u.setAGCdata(256); }},
        {"!ATAB 86", [](Unit &u) { u.StoreADCvalue(86); }, "!ATAB 256",
         [](Unit &u) { u.StoreADCvalue(256); }},
    };
    return all;
}

inline const QList<Entry> &entries()
{
    static const QList<Entry> all = identity() + plan() + levels() + tuningAndDetectors();
    return all;
}
