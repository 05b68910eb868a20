// The short form of fuzzing, for the tests: every input of the corpus once, then a number of
// mutations of them, the same in every run.
// usage: fuzz_<target>_replay CORPUS-FOLDER MUTATIONS
#include "Fuzz.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <random>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

static void run(const QByteArray &input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                           static_cast<std::size_t>(input.size()));
}

static void mutate(QByteArray &input, std::mt19937 &random, const QList<QByteArray> &corpus)
{
    const auto below = [&](qsizetype count) {
        return static_cast<qsizetype>(random() % static_cast<std::uint32_t>(count));
    };
    switch (random() % 4) {
    case 0:
        input.insert(below(input.size() + 1), static_cast<char>(random()));
        break;
    case 1:
        if (!input.isEmpty())
            input[below(input.size())] = static_cast<char>(random());
        break;
    case 2:
        if (!input.isEmpty())
            input.remove(below(input.size()), 1 + below(8));
        break;
    default:
        const QByteArray &other = corpus.at(below(corpus.size()));
        input.insert(below(input.size() + 1), other.mid(below(other.size() + 1), 1 + below(16)));
    }
}

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 3)
        return 2;
    QList<QByteArray> corpus;
    const QDir folder(words.at(1));
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            corpus.append(file.readAll());
    }
    if (corpus.isEmpty()) {
        std::fprintf(stderr, "no corpus in %s\n", qPrintable(folder.path()));
        return 2;
    }
    for (const QByteArray &input : std::as_const(corpus))
        run(input);
    std::mt19937 random(20'260'101); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
    const int mutations = words.at(2).toInt();
    for (int round = 0; round < mutations; ++round) {
        QByteArray input = corpus.at(random() % static_cast<std::uint32_t>(corpus.size()));
        for (auto edits = 1 + random() % 8; edits > 0; --edits)
            mutate(input, random, corpus);
        run(input);
    }
    std::printf("%d inputs, %d mutations\n", static_cast<int>(corpus.size()), mutations);
    return 0;
}
