// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ServerInfo.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonDocument>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

QJsonObject objectOf(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

NodeStatus after(const QByteArray &info, const BootstrapProgress &bootstrap = {})
{
    NodeStatus status;
    status.phase = Phase::Starting;
    ServerInfo::update(status, objectOf(info), bootstrap);
    return status;
}

QJsonObject recorded(const char *file)
{
    const std::filesystem::path path = std::filesystem::path(TIDEWICK_TEST_DATA) / "wire" / file;
    return objectOf(contentOf(path))[u"result"].toObject();
}

} // namespace

class TestServerInfo : public QObject
{
    Q_OBJECT

private slots:
    void phase_data();
    void phase();
    void bootstrapping();
    void figures_data();
    void figures();
    void absentFiguresAreKept();
    void absentPeersAreCleared();
    void recordedAnswers();
    void memory_data();
    void memory();
};

void TestServerInfo::phase_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("detail");
    const auto row = [](const char *info, Phase phase, const char *detail) {
        QTest::newRow(info) << QByteArray(info) << phase << QString::fromUtf8(detail);
    };
    for (const char *state : {"full", "proposing", "validating"}) {
        QTest::newRow(state) << QByteArray(R"({"server_state":")") + state + R"(","peers":3})"
                             << Phase::Full << QStringLiteral("Following mainnet");
    }
    row(R"({"server_state":"syncing"})", Phase::Syncing, "Catching up (syncing)");
    row(R"({"server_state":"tracking"})", Phase::Syncing, "Catching up (tracking)");
    row(R"({"server_state":"connected","peers":7})", Phase::Connecting, "7 peers (connected)");
    row(R"({"server_state":"disconnected"})", Phase::Connecting, "0 peers (disconnected)");
    row("{}", Phase::Connecting, "0 peers (unknown)");
    row(R"({"server_state":5,"peers":"7"})", Phase::Connecting, "0 peers (unknown)");
    row(R"({"server_state":null,"peers":1.5})", Phase::Connecting, "0 peers (unknown)");
    row(R"({"server_state":"","peers":-1})", Phase::Connecting, "-1 peers ()");
    row(R"({"server_state":"Full"})", Phase::Connecting, "0 peers (Full)");
    row(R"({"server_state":"a%1b %2 <b>"})", Phase::Connecting, "0 peers (a%1b %2 <b>)");
    row(R"({"server_state":"acquiring","peers":2})", Phase::Connecting, "2 peers (acquiring)");
    row(R"({"server_state":"connected","amendment_blocked":true,"peers":3})", Phase::Connecting,
        "Amendment blocked");
    row(R"({"amendment_blocked":1})", Phase::Connecting, "Amendment blocked");
    row(R"({"amendment_blocked":"true"})", Phase::Connecting, "0 peers (unknown)");
    row(R"({"server_state":"full","amendment_blocked":true})", Phase::Full, "Following mainnet");
}

void TestServerInfo::phase()
{
    QFETCH(QByteArray, info);
    QFETCH(Phase, phase);
    QFETCH(QString, detail);
    const NodeStatus status = after(info);
    QCOMPARE(status.phase, phase);
    QCOMPARE(status.detail, detail);
}

void TestServerInfo::bootstrapping()
{
    BootstrapProgress bootstrap;
    bootstrap.update(objectOf(R"({"stream_bootstrap":{"enabled":true,"phase":"catching_up",
        "completed_passes":"2","ledgers_behind":120,"total_stored_bytes":0}})"),
                     SuspendingClock::time_point(1h));
    bootstrap.update(objectOf(R"({"stream_bootstrap":{"enabled":true,"phase":"catching_up",
        "completed_passes":"2","ledgers_behind":120,"total_stored_bytes":31000000}})"),
                     SuspendingClock::time_point(1h + 10s));
    const NodeStatus status = after(R"({"server_state":"catching_up","peers":4})", bootstrap);
    QCOMPARE(status.phase, Phase::Bootstrapping);
    QCOMPARE(status.detail,
             QStringLiteral("catching up · 3.1 MB/s · 2 passes · 120 ledgers behind"));
    QCOMPARE(status.peers, std::optional<qint64>(4));
    QCOMPARE(after(R"({"server_state":"full"})", bootstrap).phase, Phase::Full);
}

void TestServerInfo::figures_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<QString>("ledger");
    QTest::addColumn<QString>("uptime");
    const auto row = [](const char *info, const char *ledger, const char *uptime) {
        QTest::newRow(info) << QByteArray(info) << QString::fromUtf8(ledger)
                            << QString::fromUtf8(uptime);
    };
    row(R"({"uptime":90000})", "–", "25h 0m");
    row(R"({"uptime":0})", "–", "0m");
    row(R"({"uptime":"9 seconds"})", "–", "–");
    row(R"({"uptime":59.5})", "–", "–");
    row(R"({"validated_ledger":{"seq":98765432,"age":3}})", "#98765432 (3s ago)", "–");
    row(R"({"validated_ledger":{"seq":98765432}})", "#98765432", "–");
    row(R"({"validated_ledger":{"seq":98765432,"age":"3"}})", "#98765432", "–");
    row(R"({"validated_ledger":{"seq":"98765432","age":3}})", "–", "–");
    row(R"({"validated_ledger":{"age":3}})", "–", "–");
    row(R"({"validated_ledger":[7]})", "–", "–");
    row(R"({"closed_ledger":{"seq":5,"age":3}})", "–", "–");
    row(R"({"validated_ledger":{"seq":9223372036854775808}})", "–", "–");
    row(R"({"validated_ledger":{"seq":9223372036854775807,"age":-1}})",
        "#9223372036854775807 (-1s ago)", "–");
}

void TestServerInfo::figures()
{
    QFETCH(QByteArray, info);
    QFETCH(QString, ledger);
    QFETCH(QString, uptime);
    const NodeStatus status = after(info);
    QCOMPARE(status.ledger, ledger);
    QCOMPARE(status.uptime, uptime);
    QCOMPARE(status.ledgerSeq.has_value(), ledger.startsWith(u'#'));
}

void TestServerInfo::absentFiguresAreKept()
{
    NodeStatus status = after(R"({"uptime":3600,"validated_ledger":{"seq":5,"age":1}})");
    ServerInfo::update(status, objectOf(R"({"server_state":"full"})"), {});
    QCOMPARE(status.uptime, QStringLiteral("1h 0m"));
    QCOMPARE(status.ledger, QStringLiteral("#5 (1s ago)"));
    QCOMPARE(status.ledgerSeq, std::optional<qint64>(5));
}

void TestServerInfo::absentPeersAreCleared()
{
    NodeStatus status = after(R"({"peers":5})");
    QCOMPARE(status.peers, std::optional<qint64>(5));
    ServerInfo::update(status, {}, {});
    QCOMPARE(status.peers, std::nullopt);
}

void TestServerInfo::recordedAnswers()
{
    NodeStatus status;
    ServerInfo::update(status, recorded("server_info.json")[u"info"].toObject(), {});
    QCOMPARE(status.phase, Phase::Full);
    QCOMPARE(status.ledger, QStringLiteral("#2 (0s ago)"));
    QCOMPARE(status.peers, std::optional<qint64>(0));
    QCOMPARE(status.uptime, QStringLiteral("0m"));
    ServerInfo::update(status, recorded("server_info_later.json")[u"info"].toObject(), {});
    QCOMPARE(status.ledger, QStringLiteral("#12 (0s ago)"));
    // The counts of a plain node contain none of the memory figures.
    QCOMPARE(ServerInfo::reportedMemory(recorded("get_counts_later.json")), std::nullopt);
}

void TestServerInfo::memory_data()
{
    QTest::addColumn<QByteArray>("counts");
    QTest::addColumn<QString>("expected"); // empty for none
    const auto row = [](const char *counts, const char *expected) {
        QTest::newRow(counts) << QByteArray(counts) << QString::fromUtf8(expected);
    };
    row(R"({"process":{"footprint":"1240000000","peak_footprint":"2310000000"}})",
        "1.24 GB · peak 2.31 GB");
    row(R"({"process":{"footprint":"0","peak_footprint":"+5"}})", "Zero KB · peak 5 bytes");
    row(R"({"process":{"footprint":"1","peak_footprint":"x"}})", "");
    row(R"({"process":{"footprint":" 1","peak_footprint":"1"}})", "");
    row(R"({"process":{"footprint":1,"peak_footprint":2}})", "");
    row(R"({"process":{"footprint":"1"}})", "");
    row(R"({"process":[]})", "");
    row("{}", "");
}

void TestServerInfo::memory()
{
    QFETCH(QByteArray, counts);
    QFETCH(QString, expected);
    QCOMPARE(ServerInfo::reportedMemory(objectOf(counts)).value_or(QString()), expected);
}

TIDEWICK_TEST_MAIN(TestServerInfo)
#include "tst_serverinfo.moc"
