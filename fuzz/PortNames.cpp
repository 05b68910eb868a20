// The ports folder: any names, and links that lead anywhere. A number is above 0 and has one
// device.
#include "Fuzz.h"

#include "platform/PortDirectory.h"
#include "platform/TestHooks.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    const QString folder = PortDirectory::linkFolder();
    PROMISE(folder.startsWith(home.path()));
    QDir().mkpath(folder);
    while (!input.atEnd()) {
        QByteArray name = input.piece();
        name.replace('/', '_').replace('\0', '_');
        QByteArray target = input.piece();
        target.replace('\0', '_');
        QFile::link(QFile::decodeName(target), folder + QLatin1Char('/') + QFile::decodeName(name));
    }
    TestHooks::listPorts([] { return QList<PortDirectory::Device>(); });
    PortDirectory &directory = PortDirectory::instance();
    directory.refresh();
    int found = 0;
    for (int number = -1; number <= PortDirectory::lastNumber + 1; ++number) {
        const auto device = directory.find(number);
        PROMISE(!device || number >= 1); // a search ends at 255; a link may go beyond
        PROMISE(device || !directory.isPresent(number));
        PROMISE(directory.isPresent(number) || !directory.isUsable(number));
        directory.describe(number);
        found += device ? 1 : 0;
    }
    PROMISE(found <=
            QDir(folder)
                .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
                .size());
    return 0;
}
