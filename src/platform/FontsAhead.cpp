// Reading the fonts ahead.
#include "platform/FontsAhead.h"

#include <QThread>

#ifndef Q_OS_WIN
#include <dlfcn.h>
#endif

// Fontconfig, if Qt has brought it: its first reading serves the whole process, and may be done by
// any thread.
FontsAhead::Reader FontsAhead::systemReader()
{
#ifndef Q_OS_WIN
    using Read = int (*)();
    if (const auto read = reinterpret_cast<Read>(::dlsym(RTLD_DEFAULT, "FcInit")))
        return [read] { read(); };
#endif
    return {};
}

FontsAhead::FontsAhead(const Reader &reader)
{
    if (!reader)
        return;
    m_thread.reset(QThread::create(reader));
    m_thread->start();
}

FontsAhead::~FontsAhead()
{
    wait();
}

void FontsAhead::wait()
{
    if (m_thread)
        m_thread->wait();
}
