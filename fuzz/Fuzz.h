// What every fuzz target shares: its input as a stream of choices, and how a broken promise ends
// it.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Takes one input; ends the program when a promise is broken.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// A broken promise: a line that says which, and the end.
#define PROMISE(condition)                                                                         \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #condition);           \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
    {
    }

    bool atEnd() const { return m_at >= m_bytes.size(); }
    std::uint8_t byte() { return atEnd() ? 0 : static_cast<std::uint8_t>(m_bytes.at(m_at++)); }
    // 0 to count - 1.
    int choice(int count) { return byte() % count; }
    int number() { return byte() * 256 + byte(); }
    // As many bytes as the next byte says.
    QByteArray piece()
    {
        const int length = byte();
        const QByteArray bytes = m_bytes.mid(m_at, length);
        m_at += bytes.size();
        return bytes;
    }
    QByteArray rest() { return m_bytes.mid(std::exchange(m_at, m_bytes.size())); }
    QString text() { return QString::fromUtf8(rest()); }

private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};
