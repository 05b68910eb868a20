// COM numbers of simulated lines: links named com<n> in the user's ports folder, where the program
// looks for the devices behind its port numbers.
#pragma once

#include <string>
#include <vector>

namespace sim {

/// keldo-x/ports in the user's data folder; it need not exist.
std::string portsFolder();
std::string portLinkPath(int number);
/// Numbers that have a link, also a stale one, in rising order.
std::vector<int> linkedNumbers();
/// Removes what a simulator that was killed left behind: links to terminals that are gone, or that
/// have been given to somebody else since. Links to other devices stay. Returns their numbers.
std::vector<int> removeStaleLinks();
/// The lowest number from the first one on that has no link; 0 when none is left up to 255.
int freeNumber(int first, const std::vector<int> &alsoTaken = {});

/// Registers a device under a number, and takes the link away again if it is still its own.
class ComPortLink
{
public:
    /// Makes the folder when need be. Throws std::system_error: file_exists when the number is
    /// taken, std::errc::invalid_argument when it is not within 1 to 255.
    ComPortLink(int number, std::string device);
    ~ComPortLink();
    ComPortLink(ComPortLink &&other) noexcept;
    ComPortLink &operator=(ComPortLink &&) = delete;
    ComPortLink(const ComPortLink &) = delete;
    ComPortLink &operator=(const ComPortLink &) = delete;

    int number() const { return number_; }
    std::string path() const { return path_; }

private:
    int number_;
    std::string device_;
    std::string path_; ///< as made: the folder may not be asked for anew when the link goes
};

} // namespace sim
