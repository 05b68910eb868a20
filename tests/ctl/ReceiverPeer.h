// A receiver's end of the network protocol, as well or as badly as a test wants it: it listens on a
// port of this machine, on a thread of its own, and answers one client at a time.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

class ReceiverPeer
{
public:
    // What is sent for a line that came, as it stands; nothing is silence.
    using Responder = std::function<std::optional<std::string>(const std::string &line)>;

    ReceiverPeer();
    ~ReceiverPeer();
    ReceiverPeer(const ReceiverPeer &) = delete;
    ReceiverPeer &operator=(const ReceiverPeer &) = delete;

    int port() const { return m_port; }
    void setResponder(Responder responder);
    void answer(const std::string &text); // to every line
    void tune(double hertz);
    void hangUp(); // on the present client; the next one may come
    void goAway(); // and nobody may come
    void comeBack();
    int clients() const { return m_clients; } // so far
    int questions() const { return m_questions; }

private:
    void serve();
    void serveClient();
    bool listenOn(int port);
    static bool waitFor(int descriptor);
    void closeClient();

    std::mutex m_mutex;
    Responder m_responder;
    std::atomic<int> m_listener = -1;
    std::atomic<int> m_client = -1;
    int m_port = 0;
    std::atomic<int> m_clients = 0;
    std::atomic<int> m_questions = 0;
    std::atomic<bool> m_hangUp = false;
    std::atomic<bool> m_isAway = false;
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};
