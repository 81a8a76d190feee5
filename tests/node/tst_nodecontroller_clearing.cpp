// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeController.h"
#include "platform/text/ByteCount.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"

#include <optional>

using namespace tidewick;
namespace fs = std::filesystem;

namespace {

/// A user who is asked for confirmation and answers when the test says so.
class User
{
public:
    explicit User(NodeController &node)
    {
        node.setConfirm([this](Confirmation question) { return ask(std::move(question)); });
    }

    int questions() const { return m_questions; }
    const Confirmation &last() const { return m_last; }
    void answer(bool yes) { m_answer->resolve(yes); }

private:
    QCoro::Task<bool> ask(Confirmation question)
    {
        ++m_questions;
        m_last = std::move(question);
        m_answer = std::make_shared<OneShot<bool>>();
        const auto answer = m_answer;
        co_return co_await *answer;
    }

    int m_questions = 0;
    Confirmation m_last;
    std::shared_ptr<OneShot<bool>> m_answer;
};

} // namespace

/// Tests clearing the node's storage.
class TestNodeControllerClearing : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_rig = std::make_unique<NodeRig>(); }
    void cleanup() { m_rig.reset(); }

    void clearAsks();
    void clearCancelled();
    void clearWithoutANode();
    void clearWithARunningNode();
    void clearWhileStopping();
    void clearFails();
    void clearInTheErrorPhase();
    void oneQuestionAtATime();
    void answerAfterDestruction();
    void nothingIsClearedWithoutConfirmation();

private:
    void fillStore() const
    {
        fs::create_directories(m_rig->data() / "db");
        writeFile(m_rig->data() / "db" / "file", QByteArray(409'600, 'x'));
        (void)allocatedBytes(m_rig->data() / "db" / "file"); // settles the size of the file
    }

    std::unique_ptr<NodeRig> m_rig;
};

void TestNodeControllerClearing::clearAsks()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 1);
    QCOMPARE(user.last().title, QStringLiteral("Clear Storage?"));
    QCOMPARE(user.last().text,
             QStringLiteral("This deletes %1 at")
                 .arg(ByteCount::text(allocatedBytes(m_rig->data() / "db" / "file"))));
    QCOMPARE(user.last().path, QString::fromStdString((m_rig->data() / "db").string()));
    QCOMPARE(user.last().consequence,
             QStringLiteral("The next Start downloads the ledger from the network again."));
    QCOMPARE(user.last().acceptLabel, QStringLiteral("Delete"));
    QCOMPARE(user.last().rejectLabel, QStringLiteral("Cancel"));
    user.answer(false);
}

void TestNodeControllerClearing::clearCancelled()
{
    User user(m_rig->node());
    fillStore();
    const NodeStatus before = m_rig->status();
    m_rig->node().clearStorage();
    user.answer(false);
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
    QVERIFY(m_rig->status() == before);
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 2);
    user.answer(false);
}

void TestNodeControllerClearing::clearWithoutANode()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    user.answer(true);
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().phase, Phase::Stopped);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
    QCOMPARE(m_rig->status().storeSize, QStringLiteral("Zero KB"));
}

void TestNodeControllerClearing::clearWithARunningNode()
{
    User user(m_rig->node());
    QVERIFY(m_rig->startUntil(Phase::Full));
    QVERIFY(m_rig->runUntil([&] { return fs::exists(m_rig->data() / "db"); }));
    m_rig->node().clearStorage();
    QCOMPARE(m_rig->status().phase, Phase::Full);
    user.answer(true);
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopped to clear storage"));
    QVERIFY(fs::exists(m_rig->data() / "db")); // not deleted while the node has it open
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
    // Only once: the next stop keeps the store.
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(fs::exists(m_rig->data() / "db"));
}

void TestNodeControllerClearing::clearWhileStopping()
{
    User user(m_rig->node());
    QVERIFY(m_rig->startUntil(Phase::Full));
    m_rig->node().stop(QStringLiteral("Enough"));
    m_rig->node().clearStorage();
    user.answer(true);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Enough"));
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
}

void TestNodeControllerClearing::clearFails()
{
    User user(m_rig->node());
    writeFile(m_rig->data(), "not a folder");
    m_rig->node().clearStorage();
    user.answer(true);
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(m_rig->status().detail,
             QStringLiteral("Could not clear storage: %1: Not a directory")
                 .arg(QString::fromStdString((m_rig->data() / "db").string())));
}

void TestNodeControllerClearing::clearInTheErrorPhase()
{
    User user(m_rig->node());
    m_rig->setScenario("exit=1");
    QVERIFY(m_rig->startUntil(Phase::Error));
    fillStore();
    const QString detail = m_rig->status().detail;
    m_rig->node().clearStorage();
    user.answer(true);
    QVERIFY(!fs::exists(m_rig->data() / "db"));
    QCOMPARE(m_rig->status().phase, Phase::Error);
    QCOMPARE(m_rig->status().detail, detail);
}

void TestNodeControllerClearing::oneQuestionAtATime()
{
    User user(m_rig->node());
    m_rig->node().clearStorage();
    m_rig->node().clearStorage();
    QCOMPARE(user.questions(), 1);
    user.answer(false);
}

void TestNodeControllerClearing::answerAfterDestruction()
{
    User user(m_rig->node());
    fillStore();
    m_rig->node().clearStorage();
    m_rig->destroyNode();
    user.answer(true);
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
}

void TestNodeControllerClearing::nothingIsClearedWithoutConfirmation()
{
    fillStore();
    m_rig->node().clearStorage();
    QVERIFY(fs::exists(m_rig->data() / "db" / "file"));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestNodeControllerClearing)
#include "tst_nodecontroller_clearing.moc"
