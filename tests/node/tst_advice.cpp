// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Advice.h"
#include "node/NodeDate.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonDocument>

#include <ctime>

using namespace tidewick;
using namespace std::chrono_literals;
using Cause = Advice::Cause;

Q_DECLARE_METATYPE(tidewick::RunningNode)
Q_DECLARE_METATYPE(tidewick::EndedNode)

namespace {

QJsonObject objectOf(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonObject recorded(const char *file)
{
    const std::filesystem::path path = std::filesystem::path(TIDEWICK_TEST_DATA) / "wire" / file;
    return objectOf(contentOf(path))[u"result"].toObject();
}

WallClock::time_point at(const char *date)
{
    return NodeDate::parse(QString::fromLatin1(date)).value();
}

/// A healthy node, on the day of the recordings.
RunningNode well()
{
    RunningNode node;
    node.info = objectOf(R"({"server_state":"full","peers":12,"uptime":4000,"io_latency_ms":1,
        "build_version":"2.3.0","load_factor":1,"validation_quorum":28,
        "validator_list":{"count":2,"status":"active",
                          "expiration":"2027-Jan-22 00:35:01.000000000 UTC"}})");
    node.now = at("2026-Nov-22 12:00:00 UTC");
    return node;
}

/// The same with these members in its answer.
RunningNode saying(const QByteArray &members)
{
    RunningNode node = well();
    const QJsonObject more = objectOf(members);
    for (auto member = more.begin(); member != more.end(); ++member)
        node.info->insert(member.key(), member.value());
    return node;
}

RunningNode after(std::chrono::seconds RunningNode::*length, std::chrono::seconds time)
{
    RunningNode node = well();
    node.*length = time;
    return node;
}

} // namespace

class TestAdvice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void running_data();
    void running();
    void texts_data();
    void texts();
    void precedence();
    void recordings();
    void foreignTextIsBounded();
    void ended_data();
    void ended();
    void load_data();
    void load();
};

void TestAdvice::initTestCase()
{
    qputenv("TZ", "UTC");
    ::tzset();
}

void TestAdvice::running_data()
{
    QTest::addColumn<RunningNode>("node");
    QTest::addColumn<std::optional<Cause>>("cause");
    const auto row = [](const char *name, const RunningNode &node,
                        std::optional<Cause> cause = std::nullopt) {
        QTest::newRow(name) << node << cause;
    };
    row("well", well());
    row("nothing known", RunningNode());
    row("wrong types", saying(R"({"warnings":{"id":1003},"validator_list":[],"peers":"0",
        "validation_quorum":"4294967295","load_factor":"9","uptime":null})"));
    row("warnings of wrong types", saying(R"({"warnings":[1003,"1003",null,{"id":"1003"},[]]})"));

    row("silent for 29 s", after(&RunningNode::unanswered, 29s));
    row("silent for 30 s", after(&RunningNode::unanswered, 30s), Cause::NoAnswer);
    row("blocked", saying(R"({"amendment_blocked":true})"), Cause::AmendmentBlocked);
    row("blocked, by warning", saying(R"({"warnings":[{"id":1002}]})"), Cause::AmendmentBlocked);
    row("clock 59 s off", saying(R"({"validated_ledger":{"close_time_offset":59}})"));
    row("clock 60 s off", saying(R"({"validated_ledger":{"close_time_offset":60}})"),
        Cause::WrongClock);
    row("clock 60 s off the other way",
        saying(R"({"closed_ledger":{"close_time_offset":4294967236}})"), Cause::WrongClock);
    row("clock 60 s off, signed", saying(R"({"closed_ledger":{"close_time_offset":-60}})"),
        Cause::WrongClock);
    row("alone for 299 s", after(&RunningNode::withoutPeers, 299s));
    row("alone for 5 min", after(&RunningNode::withoutPeers, 5min), Cause::NoPeers);
    row("no list", saying(R"({"warnings":[{"id":1003}]})"), Cause::NoValidatorList);
    row("no quorum", saying(R"({"validation_quorum":4294967295})"), Cause::NoValidatorList);
    row("no list yet", saying(R"({"warnings":[{"id":1003}],"uptime":29})"));
    row("no list, no peers", saying(R"({"warnings":[{"id":1003}],"peers":0})"));
    row("list expired", saying(R"({"warnings":[{"id":1003}],"uptime":3,"peers":0,"validator_list":
            {"status":"expired","expiration":"2026-Nov-20 00:35:01.000000000 UTC"}})"),
        Cause::NoValidatorList);
    row("list expires in 15 days",
        saying(R"({"validator_list":{"expiration":"2026-Dec-07 12:00:01 UTC"}})"));
    row("list expires in 14 days",
        saying(R"({"validator_list":{"expiration":"2026-Dec-06 12:00:00 UTC"}})"),
        Cause::ListExpires);
    row("list never expires", saying(R"({"validator_list":{"expiration":"never"}})"));
    row("new rules", saying(R"({"warnings":[{"id":1001}]})"), Cause::UpgradeNeeded);
    RunningNode company = well();
    company.hasCompany = true;
    row("two nodes", company, Cause::OtherNode);
    for (const auto length :
         {&RunningNode::outOfSync, &RunningNode::slowDisk, &RunningNode::overloaded}) {
        row("slow for 59 min", after(length, 59min));
        row("slow for an hour", after(length, 1h), Cause::TooSlow);
    }
    row("another warning", saying(R"({"warnings":[{"id":7,"message":"mind the gap"}]})"),
        Cause::OtherWarning);
    row("another warning without text", saying(R"({"warnings":[{"id":7,"message":" "},{}]})"));
}

void TestAdvice::running()
{
    QFETCH(RunningNode, node);
    QFETCH(std::optional<Cause>, cause);
    const auto advice = adviceOn(node);
    QCOMPARE(advice.has_value(), cause.has_value());
    if (advice)
        QCOMPARE(advice->cause, *cause);
}

void TestAdvice::texts_data()
{
    QTest::addColumn<RunningNode>("node");
    QTest::addColumn<QString>("text");
    const auto row = [](const RunningNode &node, const char *text) {
        QTest::newRow(text) << node << QString::fromUtf8(text);
    };
    row(after(&RunningNode::unanswered, 47s),
        "The node has not answered for 40 seconds; the figures are that old.");
    row(after(&RunningNode::unanswered, 61s),
        "The node has not answered for 1 minute; the figures are that old.");
    RunningNode fresh;
    fresh.unanswered = 2h;
    row(fresh, "The node has not answered in the 2 hours since its start. A large store takes a "
               "while to open; “Open Log” shows what the node is doing.");
    row(saying(R"({"amendment_blocked":true})"),
        "This node (version 2.3.0) is too old: the network has moved on to rules that it does not "
        "know. Install a newer xrpld, then start it.");
    row(saying(R"({"closed_ledger":{"close_time_offset":4294967000}})"),
        "This computer's clock is wrong by 4 minutes. Have the system set it over the network: a "
        "node with a wrong clock cannot follow it.");
    row(after(&RunningNode::withoutPeers, 11min),
        "The node has reached no other node for 11 minutes. Check this computer's network "
        "connection, and whether a firewall blocks outgoing connections of xrpld.");
    row(saying(R"({"validation_quorum":4294967295})"),
        "No valid list of validators. Its publisher cannot be reached, or the list is outdated; "
        "check your network or validators.txt.");
    row(saying(R"({"warnings":[{"id":1001,"details":
        {"expected_date_UTC":"2026-Dec-01 12:00:00.0000000 UTC"}}]})"),
        "The network changes its rules on 1 December. This node (version 2.3.0) does not know the "
        "new ones: install a newer xrpld before then.");
    row(saying(R"({"warnings":[{"id":1001}],"build_version":5})"),
        "The network changes its rules soon. This node does not know the new ones: install a newer "
        "xrpld before then.");
    row(saying(R"({"validator_list":{"expiration":"2026-Nov-27 01:00:00 UTC"}})"),
        "The list of validators expires on 27 November. If its publisher renews it by then, there "
        "is nothing to do; otherwise check your network or validators.txt.");
    RunningNode slow = saying(R"({"io_latency_ms":320})");
    slow.slowDisk = 65min;
    row(slow, "This computer or its disk is too slow: the node has to wait 320 ms for input and "
              "output, and has done so for 1 hour. A node needs at least a solid-state disk, 4 "
              "cores and 16 GB of memory.");
    RunningNode loaded = saying(R"({"load_factor_local":25.4})");
    loaded.overloaded = 3h;
    row(loaded,
        "This computer is too slow: the node's load is 25 times the usual, and has been high for 3 "
        "hours. A node needs at least a solid-state disk, 4 cores and 16 GB of memory.");
    row(after(&RunningNode::outOfSync, 2h),
        "The node has tried to catch up with the network for 2 hours: this computer, its disk or "
        "its connection is too slow. A node needs at least a solid-state disk, 4 cores and 16 GB "
        "of memory.");
    row(saying(R"({"warnings":[{"id":7,"message":" <b>mind</b>\nthe gap "}]})"),
        "The node warns: <b>mind</b> the gap");
}

void TestAdvice::texts()
{
    QFETCH(RunningNode, node);
    QFETCH(QString, text);
    const auto advice = adviceOn(node);
    QVERIFY(advice);
    QCOMPARE(advice->text, text);
}

/// The problem that has to be fixed first is reported first.
void TestAdvice::precedence()
{
    RunningNode node = saying(R"({"amendment_blocked":true,"closed_ledger":
        {"close_time_offset":90},"validator_list":{"expiration":"2026-Nov-27 01:00:00 UTC"},
        "validation_quorum":4294967295,
        "warnings":[{"id":7,"message":"mind the gap"},{"id":1001},{"id":1003}]})");
    node.unanswered = 40s;
    node.withoutPeers = 10min;
    node.outOfSync = 2h;
    node.hasCompany = true;
    const auto causeNow = [&node] { return adviceOn(node).value().cause; };
    QCOMPARE(causeNow(), Cause::NoAnswer);
    node.unanswered = 0s;
    QCOMPARE(causeNow(), Cause::AmendmentBlocked);
    node.info->remove(u"amendment_blocked");
    QCOMPARE(causeNow(), Cause::WrongClock);
    node.info->remove(u"closed_ledger");
    QCOMPARE(causeNow(), Cause::NoPeers);
    node.withoutPeers = 0s;
    QCOMPARE(causeNow(), Cause::NoValidatorList);
    node.info->insert(u"validation_quorum", 28);
    node.info->insert(u"warnings", objectOf(R"({"w":[{"id":7,"message":"x"},{"id":1001}]})")[u"w"]);
    QCOMPARE(causeNow(), Cause::OtherNode);
    node.hasCompany = false;
    QCOMPARE(causeNow(), Cause::TooSlow);
    node.outOfSync = 0s;
    QCOMPARE(causeNow(), Cause::UpgradeNeeded);
    node.info->insert(u"warnings", objectOf(R"({"w":[{"id":7,"message":"x"}]})")[u"w"]);
    QCOMPARE(causeNow(), Cause::ListExpires);
    node.info->remove(u"validator_list");
    QCOMPARE(causeNow(), Cause::OtherWarning);
}

/// Uses recorded answers of real nodes.
void TestAdvice::recordings()
{
    RunningNode node;
    node.now = at("2026-Nov-22 12:00:00 UTC");
    for (const char *file :
         {"server_info.json", "server_info_later.json", "server_info_full_with_lists.json"}) {
        node.info = recorded(file)[u"info"].toObject();
        QVERIFY2(!adviceOn(node), file);
    }
    node.info = recorded("server_info_no_list.json")[u"info"].toObject();
    QCOMPARE(adviceOn(node).value().text,
             QStringLiteral("No valid list of validators. Its publisher cannot be reached, or the "
                            "list is outdated; check your network or validators.txt."));
    node.listSites = recorded("validator_list_sites.json");
    QCOMPARE(adviceOn(node).value().text,
             QStringLiteral("No valid list of validators. file:///lists/B-missing.json cannot be "
                            "reached; check your network or validators.txt."));
    node.info = recorded("server_info_list_expired.json")[u"info"].toObject();
    node.listSites = objectOf(R"({"validator_sites":[{"uri":"https://a.example/"},
        {"uri":"https://b.example/list","last_refresh_message":"no"}]})");
    QCOMPARE(adviceOn(node).value().text,
             QStringLiteral("No valid list of validators since 22 November. b.example cannot be "
                            "reached; check your network or validators.txt."));
}

void TestAdvice::foreignTextIsBounded()
{
    const QByteArray endless(100'000, 'x');
    for (const QByteArray &members :
         {R"({"warnings":[{"id":7,"message":")" + endless + R"("}]})",
          R"({"amendment_blocked":true,"build_version":")" + endless + R"("})"}) {
        const auto advice = adviceOn(saying(members));
        QVERIFY(advice);
        QVERIFY2(advice->text.size() < 600, qPrintable(advice->text));
    }
}

void TestAdvice::ended_data()
{
    QTest::addColumn<EndedNode>("node");
    QTest::addColumn<QString>("text"); // empty for no advice
    const auto row = [](const char *name, const EndedNode &node, const char *text = "") {
        QTest::newRow(name) << node << QString::fromUtf8(text);
    };
    const auto with = [](const char *words, bool hasMossgrid = false) {
        EndedNode node;
        node.lastWords = QString::fromUtf8(words);
        node.hasMossgrid = hasMossgrid;
        return node;
    };
    const char *damaged = "The node's store is damaged. “Clear Storage…”, then “Start Node”, "
                          "repairs it: the node downloads the ledger again.";
    EndedNode missing;
    missing.executable = "/usr/bin/xrpld";
    missing.executableExists = false;
    row("missing", missing,
        "There is no node at /usr/bin/xrpld. Install the package “xrpld” from its publisher (see "
        "“man quaymere”), then start the node.");
    row("no output", with(""));
    row("ordinary error", with("Application:FTL port 15005 is taken"));
    row("truncated", with("Terminating thread: std::runtime_error: short read [nudb:3]\n"),
        damaged);
    row("index damaged", with("terminate\nState DB error: no such table\n"), damaged);
    row("damaged while running", [&] {
        EndedNode node = with("short read [nudb:3]");
        node.hasAnswered = true;
        return node;
    }());
    row("another store", with("Your xrpld.cfg is missing a [node_db] entry\n", true),
        "This node does not know the Mossgrid store, which Tidewick was built for. Rebuild or "
        "repackage Tidewick with TIDEWICK_STORE=NuDB.");
    row("another store, for NuDB", with("Your xrpld.cfg is missing a [node_db] entry\n"));
}

void TestAdvice::ended()
{
    QFETCH(EndedNode, node);
    QFETCH(QString, text);
    const auto advice = adviceOn(node);
    QCOMPARE(advice ? advice->text : QString(), text);
}

void TestAdvice::load_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<double>("load");
    const auto row = [](const char *info, double load) {
        QTest::newRow(info) << QByteArray(info) << load;
    };
    row("{}", 1);
    row(R"({"load_factor":9})", 9);
    row(R"({"load_factor":9,"load_factor_local":2.5})", 2.5);
    row(R"({"load_factor":900,"load_factor_fee_escalation":900})", 1);
    row(R"({"load_factor":900,"load_factor_net":900})", 1);
    row(R"({"load_factor":"900"})", 1);
}

void TestAdvice::load()
{
    QFETCH(QByteArray, info);
    QFETCH(double, load);
    QCOMPARE(nodeLoad(objectOf(info)), load);
}

TIDEWICK_TEST_MAIN(TestAdvice)
#include "tst_advice.moc"
