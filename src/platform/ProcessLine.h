// A line to a process that stands behind a port.
#pragma once

#include "platform/PortProcess.h"
#include "platform/SerialLine.h"

class ProcessLine : public SerialLine
{
    Q_OBJECT

public:
    explicit ProcessLine(std::shared_ptr<PortProcess> process);
    ~ProcessLine() override;

    // The process knows no speed.
    void open(const QString &location, const Settings &settings) override;
    void close() override;
    bool isOpen() const override { return m_open; }

    QByteArray readAll() override { return m_open ? m_process->readAll() : QByteArray(); }
    void write(const QByteArray &bytes) override { m_process->write(bytes); }
    qint64 bytesToWrite() const override { return m_process->bytesToWrite(); }

    void clearInput() override { m_process->readAll(); }
    void clearOutput() override { m_process->clearOutput(); }
    bool holdsInput() const override { return m_process->holdsInput(); }

    void setDataTerminalReady(bool /*on*/) override {}
    void setRequestToSend(bool /*on*/) override {}

private:
    std::shared_ptr<PortProcess> m_process;
    bool m_open = false;
};
