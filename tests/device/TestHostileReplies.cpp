// Hostile replies to any sequence of operations on a unit's object, in virtual time: whatever
// comes, a frequency that is shown lies on a step of a plan that the unit has told, bad replies
// change nothing, the buffer stays bounded and every exchange ends.
#include "HostileUnit.h"
#include "support/TestMain.h"

#include <random>

class TestHostileReplies : public QObject
{
    Q_OBJECT

private slots:
    void nothingUntrueIsEverShown();
};

// The same in every run, unless KELDOX_HOSTILE_SEED says otherwise. KELDOX_HOSTILE_REPLIES asks for
// more of them.
void TestHostileReplies::nothingUntrueIsEverShown()
{
    const int wanted = std::max(qEnvironmentVariableIntValue("KELDOX_HOSTILE_REPLIES"), 5000);
    std::mt19937 random(
        static_cast<std::uint32_t>(qEnvironmentVariableIntValue("KELDOX_HOSTILE_SEED")));
    const auto choose = [&](int count) {
        return static_cast<int>(random() % static_cast<std::uint32_t>(std::max(count, 1)));
    };
    const auto piece = [&] {
        QByteArray bytes(choose(40), Qt::Uninitialized);
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        return bytes;
    };
    int replies = 0;
    while (replies < wanted) {
        HostileUnit unit({choose, piece});
        unit.connectUnit();
        for (int operation = 0; operation < 500; ++operation) {
            const QString complaint = unit.operate();
            QVERIFY2(complaint.isEmpty(), qPrintable(QStringLiteral("after %1 replies: %2")
                                                         .arg(replies + unit.commands())
                                                         .arg(complaint)));
        }
        replies += unit.commands();
    }
    qInfo("%d hostile replies", replies);
}

KELDOX_TEST(TestHostileReplies)
#include "TestHostileReplies.moc"
