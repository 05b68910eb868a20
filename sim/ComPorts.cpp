// The links in the ports folder.
#include "sim/ComPorts.h"

#include <QStandardPaths>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace sim {

namespace {

namespace fs = std::filesystem;

constexpr int highestNumber = 255;
constexpr std::string_view linkPrefix = "com";

std::optional<int> numberOf(const std::string &name)
{
    if (!name.starts_with(linkPrefix) || name.size() == linkPrefix.size())
        return std::nullopt;
    int number = 0;
    const char *end = name.data() + name.size();
    const auto result = std::from_chars(name.data() + linkPrefix.size(), end, number);
    if (result.ec != std::errc{} || result.ptr != end || number < 1)
        return std::nullopt;
    return number;
}

bool later(const timespec &a, const timespec &b)
{
    return std::pair(a.tv_sec, a.tv_nsec) > std::pair(b.tv_sec, b.tv_nsec);
}

// The system hands the names of pseudo-terminals out again: one that is younger than the link is
// somebody else's terminal.
bool isStale(const std::string &path)
{
    struct stat link = {};
    struct stat device = {};
    if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
        return false;
    if (stat(path.c_str(), &device) != 0)
        return errno == ENOENT;
    std::error_code ignored;
    const std::string target = fs::read_symlink(path, ignored).string();
    return target.starts_with("/dev/pts/") && later(device.st_ctim, link.st_mtim);
}

} // namespace

std::string portsFolder()
{
    return (QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            QStringLiteral("/keldo-x/ports"))
        .toStdString();
}

std::string portLinkPath(int number)
{
    return portsFolder() + '/' + std::string(linkPrefix) + std::to_string(number);
}

std::vector<int> linkedNumbers()
{
    std::vector<int> numbers;
    std::error_code noFolder;
    for (const auto &entry : fs::directory_iterator(portsFolder(), noFolder))
        if (const auto number = numberOf(entry.path().filename().string()))
            numbers.push_back(*number);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<int> removeStaleLinks()
{
    std::vector<int> removed;
    for (const int number : linkedNumbers()) {
        std::error_code failed;
        if (isStale(portLinkPath(number)) && fs::remove(portLinkPath(number), failed))
            removed.push_back(number);
    }
    return removed;
}

int freeNumber(int first, const std::vector<int> &alsoTaken)
{
    const std::vector<int> linked = linkedNumbers();
    const auto holds = [](const std::vector<int> &list, int number) {
        return std::find(list.begin(), list.end(), number) != list.end();
    };
    for (int number = std::max(first, 1); number <= highestNumber; ++number)
        if (!holds(linked, number) && !holds(alsoTaken, number))
            return number;
    return 0;
}

ComPortLink::ComPortLink(int number, std::string device)
    : number_(number), device_(std::move(device)), path_(portLinkPath(number))
{
    if (number < 1 || number > highestNumber)
        throw std::system_error(std::make_error_code(std::errc::invalid_argument),
                                "COM" + std::to_string(number));
    fs::create_directories(portsFolder());
    std::error_code failed;
    fs::create_symlink(device_, path_, failed);
    if (failed)
        throw std::system_error(failed, path_);
}

ComPortLink::ComPortLink(ComPortLink &&other) noexcept
    : number_(other.number_),
      device_(std::move(other.device_)),
      path_(std::exchange(other.path_, {}))
{
}

ComPortLink::~ComPortLink()
{
    if (path_.empty())
        return;
    std::error_code gone;
    if (fs::read_symlink(path_, gone).string() == device_)
        fs::remove(path_, gone);
}

} // namespace sim
