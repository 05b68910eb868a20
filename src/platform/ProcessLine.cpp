// The line to a process: one of several that may be made, of which one is open.
#include "platform/ProcessLine.h"

ProcessLine::ProcessLine(std::shared_ptr<PortProcess> process) : m_process(std::move(process))
{
    connect(m_process.get(), &PortProcess::Arrived, this, [this] {
        if (m_open)
            emit Arrived();
    });
    connect(m_process.get(), &PortProcess::Gone, this, [this] {
        if (m_open)
            emit Gone();
    });
}

ProcessLine::~ProcessLine()
{
    ProcessLine::close();
}

void ProcessLine::open(const QString &location, const Settings & /*settings*/)
{
    m_process->open(location);
    m_open = true;
}

void ProcessLine::close()
{
    if (std::exchange(m_open, false))
        m_process->close();
}
