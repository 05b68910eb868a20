// The console tool following a receiver: the tool, a unit and the receiver's peer, and the tool's
// lines as they come.
#pragma once

#include "CtlBench.h"
#include "ReceiverPeer.h"

class FollowBench
{
public:
    FollowBench() { receiver.tune(146.5e6); }
    ~FollowBench()
    {
        if (tool)
            end();
    }

    void follow(const char *options = "");
    QString nextLine(int milliseconds = 10'000);
    QString nextText(int milliseconds = 10'000); // without its time
    bool isQuiet(int milliseconds = 400);        // much is asked meanwhile, and nothing said
    Outcome end();

    // "filter tuned to 146.5 MHz"
    static QString tuned(const char *megahertz)
    {
        return QStringLiteral("filter tuned to %1 MHz").arg(QLatin1String(megahertz));
    }

    CtlBench bench;
    ReceiverPeer receiver;
    std::unique_ptr<QProcess> tool;
};

#define FOLLOWS(options)                                                                           \
    do {                                                                                           \
        on->follow(options);                                                                       \
        QVERIFY(on->nextText().startsWith(QStringLiteral("following 127.0.0.1:")));                \
    } while (false)
