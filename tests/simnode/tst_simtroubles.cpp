// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "support/Surroundings.h"

#include <QJsonArray>

using namespace tidewick;
using namespace tidewick::sim;

namespace {

constexpr double unreachableQuorum = 4'294'967'295;
/// Nodes are started at 2026-11-20 19:47:40 UTC.
const QString in60Days = QStringLiteral("2027-Jan-19 19:47:40.000000000 UTC");
const QString in5Days = QStringLiteral("2026-Nov-25 19:47:40.000000000 UTC");
const QString threeDaysAgo = QStringLiteral("2026-Nov-17 19:47:40.000000000 UTC");

QJsonObject served(const char *scenario, const char *method, Seconds elapsed = Seconds(40))
{
    const Answers answers = answersOf(Scenario::parse(QString::fromLatin1(scenario)));
    const QString name = QString::fromLatin1(method);
    return httpEnvelope(answers.answer(name, {}, timeAt(answers, elapsed)), name, {});
}

QJsonObject result(const char *scenario, const char *method, Seconds elapsed = Seconds(40))
{
    return served(scenario, method, elapsed)[u"result"].toObject();
}

QJsonObject info(const char *scenario, Seconds elapsed = Seconds(40))
{
    return result(scenario, "server_info", elapsed)[u"info"].toObject();
}

/// The shape of the member "info", without the members that are not simulated.
QStringList shapeOfInfo(QJsonObject info)
{
    for (const char *member : {"network_id", "published_ledger", "initial_sync_duration_us"})
        info.remove(QLatin1String(member));
    return shapeOf(info);
}

QList<int> warningIds(const QJsonObject &info)
{
    QList<int> ids;
    for (const QJsonValue warning : info[u"warnings"].toArray())
        ids.append(warning[u"id"].toInt());
    return ids;
}

} // namespace

/// Tests the answers of a node with problems.
class TestSimTroubles : public QObject
{
    Q_OBJECT

private slots:
    void lists_data();
    void lists();
    void listsAsRecorded_data();
    void listsAsRecorded();
    void datesStay();
    void sites_data();
    void sites();
    void validators_data();
    void validators();
    void warnings_data();
    void warnings();
    void warningTexts();
    void clockOffset_data();
    void clockOffset();
    void load();
    void heals();
};

void TestSimTroubles::lists_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("expiration");
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("valid");
    const auto row = [](const char *scenario, const char *status, const QString &expiration,
                        const char *state, bool valid) {
        QTest::newRow(scenario) << QByteArray(scenario) << QString::fromLatin1(status) << expiration
                                << QString::fromLatin1(state) << valid;
    };
    const QString unknown = QStringLiteral("unknown");
    row("", "active", in60Days, "full", true);
    row("lists=active", "active", in60Days, "full", true);
    row("lists=expiring", "active", in5Days, "full", true);
    row("lists=none", "unknown", unknown, "connected", false);
    row("lists=expired", "expired", threeDaysAgo, "connected", false);
    row("lists=active state=connected", "active", in60Days, "connected", true);
    row("lists=none state=syncing", "unknown", unknown, "syncing", false);
    row("lists=expired state=full", "expired", threeDaysAgo, "full", false);
}

void TestSimTroubles::lists()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, status);
    QFETCH(QString, expiration);
    QFETCH(QString, state);
    QFETCH(bool, valid);
    for (const Seconds elapsed : {Seconds(40), Seconds(4000)}) {
        const QJsonObject info = ::info(scenario, elapsed);
        QCOMPARE(info[u"validator_list"].toObject(),
                 (QJsonObject{{QStringLiteral("count"), 2},
                              {QStringLiteral("expiration"), expiration},
                              {QStringLiteral("status"), status}}));
        QCOMPARE(info[u"server_state"].toString(), state);
        QCOMPARE(info[u"validation_quorum"].toDouble(), valid ? 28 : unreachableQuorum);
        QCOMPARE(warningIds(info), valid ? QList<int>() : QList<int>{1003});
        QCOMPARE(info.contains(u"warnings"), !valid);
        QCOMPARE(info.contains(u"validated_ledger"), state == u"full");
    }
}

void TestSimTroubles::listsAsRecorded_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("active") << QByteArray("lists=active state=connected")
                            << QByteArray("server_info_full_with_lists.json");
    QTest::newRow("none") << QByteArray("lists=none") << QByteArray("server_info_no_list.json");
    QTest::newRow("expired") << QByteArray("lists=expired")
                             << QByteArray("server_info_list_expired.json");
}

void TestSimTroubles::listsAsRecorded()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QByteArray, file);
    const QJsonObject recording = recorded(file)[u"result"][u"info"].toObject();
    const QJsonObject info = ::info(scenario);
    QCOMPARE(shapeOfInfo(info), shapeOfInfo(recording));
    QCOMPARE(info[u"warnings"], recording[u"warnings"]);
    QCOMPARE(info[u"validator_list"][u"status"], recording[u"validator_list"][u"status"]);
}

void TestSimTroubles::datesStay()
{
    for (const char *scenario :
         {"lists=expiring", "lists=expired", "warnings=amendment-majority"}) {
        const QJsonObject early = info(scenario, Seconds(1));
        const QJsonObject late = info(scenario, Seconds(100'000));
        QVERIFY(early[u"time"] != late[u"time"]);
        QCOMPARE(early[u"validator_list"], late[u"validator_list"]);
        QCOMPARE(early[u"warnings"], late[u"warnings"]);
    }
}

void TestSimTroubles::sites_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<bool>("reached");
    QTest::newRow("usual") << QByteArray() << true;
    QTest::newRow("active") << QByteArray("lists=active") << true;
    QTest::newRow("expiring") << QByteArray("lists=expiring") << true;
    QTest::newRow("none") << QByteArray("lists=none") << false;
    QTest::newRow("expired") << QByteArray("lists=expired state=full") << false;
}

void TestSimTroubles::sites()
{
    QFETCH(QByteArray, scenario);
    QFETCH(bool, reached);
    const QJsonObject answer = served(scenario, "validator_list_sites");
    const QJsonArray sites = answer[u"result"][u"validator_sites"].toArray();
    QCOMPARE(sites.size(), 2);
    QCOMPARE(sites[0][u"uri"].toString(), QStringLiteral("https://vl.ripple.com"));
    QCOMPARE(sites[1][u"uri"].toString(), QStringLiteral("https://unl.xrplf.org"));
    for (const QJsonValue site : sites) {
        QCOMPARE(site[u"last_refresh_time"].toString(),
                 QStringLiteral("2026-Nov-20 19:48:20.000000000 UTC"));
        QCOMPARE(site[u"next_refresh_time"].toString(),
                 QStringLiteral("2026-Nov-20 19:53:20.000000000 UTC"));
        QCOMPARE(site[u"refresh_interval_min"].toInt(), 5);
    }
    QCOMPARE(sites[0][u"last_refresh_status"].toString(), QStringLiteral("accepted"));
    QVERIFY(!sites[0].toObject().contains(u"last_refresh_message"));
    QCOMPARE(sites[1][u"last_refresh_status"].toString(),
             reached ? QStringLiteral("accepted") : QStringLiteral("invalid"));
    QCOMPARE(sites[1][u"last_refresh_message"].toString(),
             reached ? QString() : QStringLiteral("fetch error"));
    if (!reached)
        QCOMPARE(shapeOf(answer), shapeOf(recorded("validator_list_sites.json")));
}

void TestSimTroubles::validators_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("valid");
    QTest::newRow("usual") << QByteArray() << in60Days << in60Days << true;
    QTest::newRow("expiring") << QByteArray("lists=expiring") << in5Days << in5Days << true;
    QTest::newRow("none") << QByteArray("lists=none") << in60Days << QStringLiteral("unknown")
                          << false;
    QTest::newRow("expired") << QByteArray("lists=expired") << in60Days << threeDaysAgo << false;
}

void TestSimTroubles::validators()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(bool, valid);
    const QJsonObject result = ::result(scenario, "validators");
    const QJsonValue lists = result[u"publisher_lists"];
    QCOMPARE(lists.toArray().size(), 2);
    QCOMPARE(lists[0][u"uri"].toString(), QStringLiteral("https://vl.ripple.com"));
    QCOMPARE(lists[0][u"available"], QJsonValue(true));
    QCOMPARE(lists[0][u"expiration"].toString(), first);
    QCOMPARE(lists[0][u"list"].toArray().size(), 1);
    QCOMPARE(lists[1][u"uri"].toString(), QStringLiteral("https://unl.xrplf.org"));
    QCOMPARE(lists[1][u"available"], QJsonValue(valid));
    QCOMPARE(lists[1][u"expiration"].toString(), second);
    QCOMPARE(lists[1][u"list"].toArray().size(), valid ? 1 : 0);

    const QJsonObject info = ::info(scenario);
    QCOMPARE(result[u"validator_list"], info[u"validator_list"]);
    QCOMPARE(result[u"validation_quorum"], info[u"validation_quorum"]);
    QCOMPARE(shapeOf(served(scenario, "validators")), shapeOf(recorded("validators.json")));
}

void TestSimTroubles::warnings_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QList<int>>("ids");
    QTest::addColumn<bool>("blocked");
    const auto row = [](const char *scenario, const QList<int> &ids, bool blocked) {
        QTest::newRow(scenario) << QByteArray(scenario) << ids << blocked;
    };
    row("", {}, false);
    row("warnings=amendment-majority", {1001}, false);
    row("warnings=amendment-blocked", {1002}, false);
    row("warnings=other", {1999}, false);
    row("amendment-blocked=yes", {1002}, true);
    row("amendment-blocked=yes warnings=amendment-blocked", {1002}, true);
    row("warnings=other+amendment-majority+amendment-blocked", {1002, 1001, 1999}, false);
    row("lists=none amendment-blocked=yes warnings=amendment-majority", {1002, 1003, 1001}, true);
}

void TestSimTroubles::warnings()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QList<int>, ids);
    QFETCH(bool, blocked);
    const QJsonObject info = ::info(scenario);
    QCOMPARE(warningIds(info), ids);
    QCOMPARE(info.contains(u"warnings"), !ids.isEmpty());
    QCOMPARE(info.contains(u"amendment_blocked"), blocked);
    for (const QJsonValue warning : info[u"warnings"].toArray()) {
        QVERIFY(!warning[u"message"].toString().isEmpty());
        QCOMPARE(warning.toObject().contains(u"details"), warning[u"id"] == 1001);
    }
}

void TestSimTroubles::warningTexts()
{
    const QJsonValue all = info("warnings=amendment-majority+other")[u"warnings"];
    const QJsonObject details = all[0][u"details"].toObject();
    // 2026-11-29 19:47:40 UTC minus 2000-01-01 00:00:00 UTC.
    QCOMPARE(details[u"expected_date"].toInteger(), 849'296'860);
    QCOMPARE(details[u"expected_date_UTC"].toString(),
             QStringLiteral("2026-Nov-29 19:47:40.0000000 UTC"));
    QCOMPARE(all[1][u"message"].toString(), QStringLiteral("This server is <b>unusual</b>."));
}

void TestSimTroubles::clockOffset_data()
{
    QTest::addColumn<QByteArray>("offset");
    // Negative if absent.
    QTest::addColumn<qint64>("told");
    const auto row = [](const char *offset, qint64 told) {
        QTest::newRow(offset) << QByteArray(offset) << told;
    };
    row("0", -1);
    row("59", -1);
    row("60", 60);
    row("3600", 3600);
    row("100000000", 100'000'000);
    row("-59", -1);
    row("-60", 4'294'967'236);
    row("-100000000", 4'194'967'296);
}

void TestSimTroubles::clockOffset()
{
    QFETCH(QByteArray, offset);
    QFETCH(qint64, told);
    for (const char *state : {"connected", "full"}) {
        const QJsonObject info = ::info("clock-offset=" + offset + " state=" + state);
        const QJsonObject ledger =
            info[state == QByteArray("full") ? u"validated_ledger" : u"closed_ledger"].toObject();
        QVERIFY(ledger[u"seq"].toInt() > 0);
        QCOMPARE(ledger[u"close_time_offset"].toInteger(-1), told);
    }
}

void TestSimTroubles::heals()
{
    Answers answers = answersOf(Scenario::parse(QStringLiteral(
        "state=connected peers=0 lists=expired warnings=other clock-offset=90 load=9 "
        "io-latency=750 amendment-blocked=yes")));
    answers.heal();
    const QString method = QStringLiteral("server_info");
    const QJsonObject healed =
        httpEnvelope(answers.answer(method, {}, timeAt(answers, Seconds(40))), method,
                     {})[u"result"][u"info"]
            .toObject();
    QCOMPARE(shapeOfInfo(healed), shapeOfInfo(info("")));
    QCOMPARE(healed[u"server_state"], QStringLiteral("full"));
    QVERIFY(healed[u"peers"].toInt() > 0);
    QCOMPARE(healed[u"validator_list"], info("")[u"validator_list"]);
}

void TestSimTroubles::load()
{
    const QJsonObject usual = info("");
    QCOMPARE(usual[u"io_latency_ms"].toInt(), 1);
    QCOMPARE(usual[u"load_factor"].toDouble(), 1.0);
    QVERIFY(!usual.contains(u"load_factor_local"));

    const QJsonObject loaded = info("io-latency=750 load=12.5");
    QCOMPARE(loaded[u"io_latency_ms"].toInt(), 750);
    QCOMPARE(loaded[u"load_factor"].toDouble(), 12.5);
    QCOMPARE(loaded[u"load_factor_local"].toDouble(), 12.5);
}

TIDEWICK_TEST_MAIN(TestSimTroubles)
#include "tst_simtroubles.moc"
