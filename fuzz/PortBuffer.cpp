// The serial object's buffer: any bytes in any pieces. It stays bounded, a wait ends, and a
// complete reply is what stood before the first carriage return.
#include "Fuzz.h"

#include "core/Message.h"
#include "port/clsCommPort.h"
#include "support/MemoryLine.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const auto unit = std::make_shared<MemoryUnit>();
    QByteArray sent;
    unit->answer = [&](const QByteArray &) {
        QList<QByteArray> pieces;
        for (int count = input.choice(6); count > 0; --count)
            pieces.append(input.piece());
        sent = pieces.join();
        return pieces;
    };
    MemoryLine::install(unit);
    TestHooks::shortenTimers(1);
    TestHooks::settleWithin(1);
    installMessageDoor(
        [](const QString &, int, const QString &) { return MessageBox::Answer::Ok; });

    clsCommPort port;
    port.setPortNumber(1);
    port.setPortMode(input.choice(2));
    PROMISE(port.InitializePort());
    while (!input.atEnd()) {
        sent.clear();
        const bool arrived = port.WriteAndWaitForCr(QStringLiteral("*ID?\r"));
        PROMISE(port.Buffer().size() <= clsCommPort::longestReply + sent.size());
        PROMISE(arrived == port.Buffer().contains(QLatin1Char('\r')));
        PROMISE(!arrived || !port.BufferStart().contains(QLatin1Char('\r')));
        PROMISE(!port.isBusy());
        port.CleanUpBuffer();
    }
    return 0;
}
