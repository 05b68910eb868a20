// Measurements of the program beside references taken in the same run.
#pragma once

#include <string>

class Report
{
public:
    // A measured figure and what it is compared with.
    void figure(const std::string &what, double value, const std::string &unit,
                const std::string &reference, double referenceValue,
                const std::string &referenceUnit);
    void note(const std::string &what, double value, const std::string &unit);
    // Prints the value with its bound; a value above it is a failure.
    void bound(const std::string &what, double value, const std::string &unit, double most);
    void fail(const std::string &what);

    int failures() const { return m_failures; }

private:
    int m_failures = 0;
};

// Processor time that this process has used so far.
double processorMs();

// From now on a message box is a failure: nobody is there to answer it.
void failOnBoxes(Report &report);

void benchPacedSteps(Report &report);
void benchExchange(Report &report);
void benchSilentUnit(Report &report);
void benchEmptySearch(Report &report);
void benchEventDisplay(Report &report);
void benchHostileMonitor(Report &report);
void benchStart(Report &report);

// The two child runs of benchStart; each prints milliseconds since its start and peak KiB.
int runStartChild(int argc, char **argv);
int runEmptyWindowChild(int argc, char **argv);
