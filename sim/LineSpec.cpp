// Reading the description of a line, and building the line from it.
#include "sim/LineSpec.h"

#include "sim/UnitText.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string_view>

namespace sim {

namespace {

[[noreturn]] void bad(const std::string &text)
{
    throw std::invalid_argument(text);
}

double number(const std::string &key, const std::string &value, double lowest, double highest)
{
    const auto read = numberIn(value);
    if (!read || *read < lowest || *read > highest)
        bad(key + " must be a number from " + numberText(lowest) + " to " + numberText(highest) +
            ", not \"" + value + "\"");
    return *read;
}

int whole(const std::string &key, const std::string &value, int lowest, int highest)
{
    const double read = number(key, value, lowest, highest);
    if (read != std::floor(read))
        bad(key + " must be a whole number, not \"" + value + "\"");
    return static_cast<int>(read);
}

// Lists are joined by "+" inside a line's description, by "," as an option of their own.
std::vector<std::string> listIn(const std::string &value, std::string_view separators)
{
    std::vector<std::string> parts(1);
    for (const char c : value)
        if (separators.find(c) == std::string_view::npos)
            parts.back() += c;
        else
            parts.emplace_back();
    return parts;
}

void setKind(LineSpec &spec, const std::string &, const std::string &value)
{
    if (value != "keldo-x" && value != "tovin-r")
        bad("kind must be keldo-x or tovin-r, not \"" + value + "\"");
    spec.unit.identity = value == "keldo-x" ? "KELDO-X" : "TOVIN-R";
}

void setAddresses(LineSpec &spec, const std::string &key, const std::string &value)
{
    std::vector<int> addresses;
    for (const std::string &part : listIn(value, "+,")) {
        const int address = whole(key, part, 1, 99);
        if (std::find(addresses.begin(), addresses.end(), address) != addresses.end())
            bad("address " + part + " is given twice");
        addresses.push_back(address);
    }
    if (addresses.size() > 8)
        bad("a line has room for eight units");
    spec.addresses = addresses;
}

// The program reads the last four characters, so a bare number must fit there.
void setFirmware(LineSpec &spec, const std::string &key, const std::string &value)
{
    if (value.empty() || (numberIn(value) && value.size() > 4))
        bad(key + " must be a number of at most four characters, like 3.38, or a text");
    spec.firmware = value;
}

void setWithout(LineSpec &spec, const std::string &, const std::string &value)
{
    for (const std::string &part : listIn(value, "+,")) {
        if (part == "agc")
            spec.unit.optionA &= ~OptionAgc;
        else if (part == "atten") // the AGC works through the attenuator
            spec.unit.optionA &=
                ~(OptionAttenuator15 | OptionAgc | OptionAttenuatorA | OptionAttenuatorB);
        else if (part == "input-atten")
            spec.unit.optionA &= ~OptionInputAttenuator;
        else if (part == "bypass")
            spec.unit.hasBypass = false;
        else if (part == "pelltrim")
            spec.unit.optionC &= ~OptionFineTuning;
        else
            bad("without takes agc, atten, input-atten, bypass and pelltrim, not \"" + part + "\"");
    }
}

void setPaced(LineSpec &spec, const std::string &, const std::string &value)
{
    if (value != "yes" && value != "no" && !value.empty())
        bad("paced must be yes or no, not \"" + value + "\"");
    spec.paced = value != "no";
}

void setTerminator(LineSpec &spec, const std::string &, const std::string &value)
{
    if (value != "cr" && value != "crlf")
        bad("terminator must be cr or crlf, not \"" + value + "\"");
    spec.terminator = value == "cr" ? "\r" : "\r\n";
}

void setFault(LineSpec &spec, const std::string &, const std::string &value)
{
    const auto parts = listIn(value, ":");
    const auto fault = faultByName(parts[0]);
    if (!fault) {
        std::string all;
        for (const std::string &name : faultNames())
            all += (all.empty() ? "" : ", ") + name;
        bad("there is no fault \"" + parts[0] + "\", only " + all);
    }
    if (parts.size() > 3)
        bad("a fault is name, name:command or name:command:times, not \"" + value + "\"");
    spec.fault = *fault;
    spec.faultPrefix = parts.size() > 1 ? parts[1] : std::string();
    spec.faultTimes = parts.size() > 2 ? whole("the fault's times", parts[2], 1, 1'000'000) : -1;
}

struct Key
{
    std::string_view name;
    void (*set)(LineSpec &, const std::string &key, const std::string &value);
};

using Text = const std::string &;

constexpr Key keys[] = {
    {"kind", setKind},
    {"addresses", setAddresses},
    {"firmware", setFirmware},
    {"without", setWithout},
    {"paced", setPaced},
    {"terminator", setTerminator},
    {"fault", setFault},
    {"aopt", [](LineSpec &s, Text k, Text v) { s.unit.optionA = whole(k, v, 0, 255); }},
    {"copt", [](LineSpec &s, Text k, Text v) { s.unit.optionC = whole(k, v, 0, 255); }},
    {"password", [](LineSpec &s, Text, Text v) { s.unit.password = v; }},
    {"start", [](LineSpec &s, Text k, Text v) { s.unit.startMHz = number(k, v, 0, 20000); }},
    {"if", [](LineSpec &s, Text k, Text v) { s.unit.ifMHz = number(k, v, 0, 20000); }},
    {"spacing",
     [](LineSpec &s, Text k, Text v) { s.unit.channelSpacingHz = whole(k, v, 1, 100'000'000); }},
    {"max-step",
     [](LineSpec &s, Text k, Text v) { s.unit.maxStep = whole(k, v, 1, 2'000'000'000); }},
    {"bandwidth",
     [](LineSpec &s, Text k, Text v) { s.unit.bandwidthHz = whole(k, v, 0, 2'000'000'000); }},
    {"max-atten",
     [](LineSpec &s, Text k, Text v) { s.unit.maxAttenuation = number(k, v, 0, 1000); }},
    {"atten-step",
     [](LineSpec &s, Text k, Text v) { s.unit.attenuationStep = number(k, v, 0, 100); }},
    {"com", [](LineSpec &s, Text k, Text v) { s.com = whole(k, v, 1, 255); }},
    {"late-by", [](LineSpec &s, Text k,
                   Text v) { s.lateBy = std::chrono::milliseconds(whole(k, v, 0, 1'000'000)); }},
};

std::string padded(const std::string &text, std::size_t width)
{
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

} // namespace

std::vector<int> LineSpec::unitAddresses() const
{
    if (!addresses.empty())
        return addresses;
    return {unit.identity == "TOVIN-R" ? 1 : 0};
}

std::string LineSpec::firmwareText() const
{
    const std::string number = firmware.empty() ? "3.38" : firmware;
    return numberIn(number) ? unit.identity + " REV " + padded(number, 4) : number;
}

std::string LineSpec::describe() const
{
    std::string text = unit.identity + " firmware " + numberText(firmwareNumber(firmwareText()));
    const auto units = unitAddresses();
    if (units != std::vector{0}) {
        text += units.size() > 1 ? " addresses" : " address";
        for (const int address : units)
            text.append(1, ' ').append(std::to_string(address));
    }
    if (fault != Fault::None)
        text += ", fault " + faultName(fault);
    return text;
}

void setLineValue(LineSpec &spec, const std::string &key, const std::string &value)
{
    for (const Key &known : keys)
        if (known.name == key) {
            known.set(spec, key, value);
            return;
        }
    bad("a line has no \"" + key + "\"");
}

LineSpec parseLineSpec(const std::string &text, const LineSpec &defaults)
{
    LineSpec spec = defaults;
    for (const std::string &part : listIn(text, ",")) {
        const auto equals = part.find('=');
        const bool bare = equals == std::string::npos;
        if (bare && part != "paced")
            bad('"' + part + "\" is not of the form name=value");
        setLineValue(spec, part.substr(0, equals), bare ? std::string() : part.substr(equals + 1));
    }
    return spec;
}

std::unique_ptr<SimulatedLine> makeLine(const LineSpec &spec, std::unique_ptr<Wire> wire)
{
    auto line = std::make_unique<SimulatedLine>(std::move(wire));
    for (const int address : spec.unitAddresses()) {
        UnitSettings unit = spec.unit;
        unit.address = address;
        unit.firmware = spec.firmwareText();
        line->addUnit(std::make_shared<SimulatedUnit>(unit));
    }
    line->setPaced(spec.paced);
    line->setTerminator(spec.terminator);
    line->setLateBy(spec.lateBy);
    line->setFault(spec.fault, spec.faultPrefix, spec.faultTimes);
    return line;
}

} // namespace sim
