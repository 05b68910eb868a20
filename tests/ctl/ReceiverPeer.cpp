// The peer's thread and its sockets.
#include "ReceiverPeer.h"

#include <array>
#include <cstdint>
#include <system_error>

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

ReceiverPeer::ReceiverPeer()
{
    if (!listenOn(0))
        throw std::system_error(errno, std::generic_category());
    m_thread = std::thread([this] { serve(); });
}

ReceiverPeer::~ReceiverPeer()
{
    m_ends = true;
    m_thread.join();
    closeClient();
    if (m_listener >= 0)
        ::close(m_listener);
}

bool ReceiverPeer::listenOn(int port)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (::bind(descriptor, generic, size) != 0 || ::listen(descriptor, 4) != 0 ||
        ::getsockname(descriptor, generic, &size) != 0) {
        ::close(descriptor);
        return false;
    }
    m_port = ntohs(address.sin_port);
    m_listener = descriptor;
    return true;
}

void ReceiverPeer::setResponder(Responder responder)
{
    const std::lock_guard lock(m_mutex);
    m_responder = std::move(responder);
}

void ReceiverPeer::answer(const std::string &text)
{
    setResponder([text](const std::string &) { return text; });
}

void ReceiverPeer::tune(double hertz)
{
    answer(std::to_string(static_cast<long long>(hertz)) + '\n');
}

void ReceiverPeer::hangUp()
{
    m_hangUp = true;
}

void ReceiverPeer::goAway()
{
    m_isAway = true;
}

void ReceiverPeer::comeBack()
{
    m_isAway = false;
}

bool ReceiverPeer::waitFor(int descriptor)
{
    constexpr int tick = 5; // ms
    pollfd wait{descriptor, POLLIN, 0};
    return ::poll(&wait, 1, tick) > 0;
}

void ReceiverPeer::closeClient()
{
    if (m_client >= 0)
        ::close(m_client.exchange(-1));
}

void ReceiverPeer::serve()
{
    while (!m_ends) {
        if (m_hangUp.exchange(false) || m_isAway)
            closeClient();
        if (m_isAway && m_listener >= 0)
            ::close(m_listener.exchange(-1));
        else if (!m_isAway && m_listener < 0)
            listenOn(m_port);
        if (m_client >= 0) {
            serveClient();
        } else if (waitFor(m_listener)) {
            m_client = ::accept(m_listener, nullptr, nullptr);
            ++m_clients;
        }
    }
}

void ReceiverPeer::serveClient()
{
    if (!waitFor(m_client))
        return;
    std::array<char, 256> bytes{};
    const auto count = ::recv(m_client, bytes.data(), bytes.size(), 0);
    if (count <= 0) {
        closeClient();
        return;
    }
    std::string line(bytes.data(), static_cast<std::size_t>(count));
    while (!line.empty() && line.back() == '\n')
        line.pop_back();
    ++m_questions;
    std::optional<std::string> reply;
    {
        const std::lock_guard lock(m_mutex);
        reply = m_responder ? m_responder(line) : std::nullopt;
    }
    if (reply)
        ::send(m_client, reply->data(), reply->size(), MSG_NOSIGNAL);
}
