// The pseudo-terminal over POSIX; on Linux it also watches who opens and closes it.
#include "sim/PseudoTerminal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/inotify.h>
#endif

namespace sim {

namespace {

int checked(int result, const char *what)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

void makeRaw(int terminal)
{
    termios mode{};
    checked(tcgetattr(terminal, &mode), "tcgetattr");
    cfmakeraw(&mode);
    checked(tcsetattr(terminal, TCSANOW, &mode), "tcsetattr");
}

int watchOf([[maybe_unused]] const std::string &device)
{
#ifdef __linux__
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (watch >= 0)
        inotify_add_watch(watch, device.c_str(), IN_OPEN | IN_CLOSE);
    return watch; // without one a killed program leaves its lock behind, and all else works
#else
    return -1;
#endif
}

void closeIfOpen(int &descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

std::string deviceOf(int master)
{
    std::array<char, 256> name{};
    if (const int error = ptsname_r(master, name.data(), name.size()))
        throw std::system_error(error, std::generic_category(), "ptsname_r");
    return name.data();
}

bool hasLockFile(const std::string &device)
{
    std::string lock = "LCK.." + device.substr(std::strlen("/dev/"));
    std::replace(lock.begin(), lock.end(), '/', '_');
    const std::array folders{"/var/lock/", "/run/lock/", "/tmp/"};
    return std::any_of(folders.begin(), folders.end(), [&](const std::string &folder) {
        return access((folder + lock).c_str(), F_OK) == 0;
    });
}

constexpr std::size_t mostPassedOver = 64; // killed programs' locks stay for as long as nobody asks

// A program closes a port first and removes its lock file then: in between the number is free, and
// a new terminal of that number would be found in use. One that a killed program left behind is
// passed over too.
int openMaster()
{
    std::vector<int> masters;
    do
        masters.push_back(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    while (masters.back() >= 0 && hasLockFile(deviceOf(masters.back())) &&
           masters.size() < mostPassedOver);
    const int taken = checked(masters.back(), "posix_openpt");
    masters.pop_back();
    for (int &passedOver : masters) // kept until now, so that nobody got their numbers
        closeIfOpen(passedOver);
    return taken;
}

} // namespace

PseudoTerminal::PseudoTerminal()
{
    try {
        master_ = openMaster();
        checked(grantpt(master_), "grantpt");
        checked(unlockpt(master_), "unlockpt");
        device_ = deviceOf(master_);
        // Without a slave side that stays open the master reads errors while no program is there.
        slave_ = checked(::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), "open");
        makeRaw(slave_);
        checked(fcntl(master_, F_SETFL, O_NONBLOCK), "fcntl");
        watch_ = watchOf(device_);
    } catch (...) {
        closeAll();
        throw;
    }
}

PseudoTerminal::~PseudoTerminal()
{
    closeAll();
}

std::string PseudoTerminal::read() const
{
    std::string bytes;
    std::array<char, 4096> piece{};
    while (master_ >= 0) {
        const ssize_t count = ::read(master_, piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

std::size_t PseudoTerminal::write(const std::string &bytes) const
{
    std::size_t done = 0;
    while (master_ >= 0 && done < bytes.size()) {
        const ssize_t count = ::write(master_, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

// The own slave side stays open: as long as it does, the system gives the number to no other
// terminal, and a program that waits for this device to come back does not meet a stranger's.
void PseudoTerminal::hangUp()
{
    closeIfOpen(watch_);
    closeIfOpen(master_);
}

void PseudoTerminal::closeAll()
{
    hangUp();
    closeIfOpen(slave_);
}

void PseudoTerminal::readWatch()
{
#ifdef __linux__
    alignas(inotify_event) std::array<char, 4096> events{};
    ssize_t count = 0;
    while (watch_ >= 0 && (count = ::read(watch_, events.data(), events.size())) > 0) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            inotify_event event{};
            std::memcpy(&event, events.data() + at, sizeof event);
            at += sizeof event + event.len;
            openCount_ += (event.mask & IN_OPEN) ? 1 : 0;
            openCount_ -= (event.mask & IN_CLOSE) ? 1 : 0;
            if ((event.mask & IN_CLOSE) && openCount_ <= 0)
                ioctl(slave_, TIOCNXCL);
        }
    }
#endif
}

} // namespace sim
