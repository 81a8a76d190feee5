// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "platform/process/ProcessMemory.h"
#include "support/Surroundings.h"

#include <unistd.h>

using namespace tidewick;
using namespace tidewick::sim;

namespace {

QJsonObject overHttp(const Answers &answers, const char *method, Seconds elapsed)
{
    const QString name = QString::fromLatin1(method);
    return httpEnvelope(answers.answer(name, {}, timeAt(answers, elapsed)), name, {});
}

QJsonObject infoAt(const Answers &answers, Seconds elapsed)
{
    return overHttp(answers, "server_info", elapsed)[u"result"][u"info"].toObject();
}

QJsonObject countsAt(const Answers &answers, Seconds elapsed)
{
    return overHttp(answers, "get_counts", elapsed)[u"result"].toObject();
}

} // namespace

class TestSimMessages : public QObject
{
    Q_OBJECT

private slots:
    void serverInfo_data();
    void serverInfo();
    void serverInfoFigures();
    void serverInfoOddities();
    void counts_data();
    void counts();
    void countsFigures();
    void countsExtras_data();
    void countsExtras();
    void uptimes_data();
    void uptimes();
    void shortAnswers();
};

void TestSimMessages::serverInfo_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("elapsed");
    for (const QString &file :
         {QStringLiteral("server_info.json"), QStringLiteral("server_info_later.json")}) {
        for (const int elapsed : {0, 7, 15, 22, 27, 40, 100'000})
            QTest::addRow("%s at %d", qPrintable(file), elapsed) << file << elapsed;
    }
}

void TestSimMessages::serverInfo()
{
    QFETCH(QString, file);
    QFETCH(int, elapsed);
    QJsonObject served = overHttp(answersOf(), "server_info", Seconds(elapsed));
    QJsonObject result = served[u"result"].toObject();
    QJsonObject info = result[u"info"].toObject();

    // A node that has not validated a ledger yet reports the last closed ledger in the same form.
    const bool validates = elapsed >= 25;
    QCOMPARE(info.contains(u"validated_ledger"), validates);
    QCOMPARE(info.contains(u"closed_ledger"), !validates);
    if (!validates)
        info[u"validated_ledger"] = info.take(u"closed_ledger");
    QCOMPARE(info.take(u"network_ledger").toString(),
             elapsed < 12 ? QStringLiteral("waiting") : QString());
    result[u"info"] = info;
    served[u"result"] = result;
    QCOMPARE(shapeOf(served), shapeOf(recorded(qPrintable(file))));
}

void TestSimMessages::serverInfoFigures()
{
    const Answers answers = answersOf();
    const QJsonObject early = infoAt(answers, Seconds(1));
    QCOMPARE(early[u"server_state"].toString(), QStringLiteral("waiting_quorum"));
    QCOMPARE(early[u"complete_ledgers"].toString(), QStringLiteral("empty"));
    QCOMPARE(early[u"peers"].toInt(-1), 0);

    const QJsonObject info = infoAt(answers, Seconds(42.5));
    QCOMPARE(info[u"build_version"].toString(), QStringLiteral("2.3.0-simulated"));
    QCOMPARE(info[u"server_state"].toString(), QStringLiteral("full"));
    QCOMPARE(info[u"uptime"].toInt(), 42);
    QCOMPARE(info[u"time"].toString(), QStringLiteral("2026-Nov-20 19:48:22.500000 UTC"));
    QCOMPARE(info[u"node_size"].toString(), QStringLiteral("small"));
    QCOMPARE(info[u"server_state_duration_us"].toString(), QStringLiteral("12500000"));
    QCOMPARE(info[u"initial_sync_duration_us"].toString(), QStringLiteral("30000000"));
    QCOMPARE(info[u"ports"][1][u"port"].toString(), QStringLiteral("16006"));
    QCOMPARE(info[u"ports"][1][u"protocol"][0].toString(), QStringLiteral("ws"));

    const quint32 first = answers.ledgers().schedule().firstIndex();
    const QJsonObject ledger = info[u"validated_ledger"].toObject();
    QCOMPARE(ledger[u"seq"].toInteger(), first + 10LL);
    QCOMPARE(ledger[u"age"].toInt(), 2);
    QCOMPARE(ledger[u"hash"].toString(), answers.ledgers().ledger(first + 10).hash);
    QCOMPARE(info[u"complete_ledgers"].toString(),
             QStringLiteral("%1-%2").arg(first - 255).arg(first + 10));
}

void TestSimMessages::serverInfoOddities()
{
    Scenario scenario;
    scenario.amendmentBlocked = true;
    scenario.peers = 3;
    scenario.state = QStringLiteral("odd");
    const QJsonObject info = infoAt(answersOf(scenario), Seconds(100));
    QCOMPARE(info[u"amendment_blocked"], QJsonValue(true));
    QCOMPARE(info[u"peers"].toInt(), 3);
    QCOMPARE(info[u"server_state"].toString(), QStringLiteral("odd"));
    QVERIFY(!infoAt(answersOf(), Seconds(100)).contains(u"amendment_blocked"));
}

void TestSimMessages::counts_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("elapsed");
    for (const QString &file :
         {QStringLiteral("get_counts.json"), QStringLiteral("get_counts_later.json")}) {
        for (const int elapsed : {0, 40})
            QTest::addRow("%s at %d", qPrintable(file), elapsed) << file << elapsed;
    }
}

void TestSimMessages::counts()
{
    QFETCH(QString, file);
    QFETCH(int, elapsed);
    const Answers stock = answersOf({}, NodeConfiguration::Store::NuDB);
    QCOMPARE(shapeOf(overHttp(stock, "get_counts", Seconds(elapsed))),
             shapeOf(recorded(qPrintable(file))));
}

void TestSimMessages::countsFigures()
{
    const QJsonObject counts = countsAt(answersOf(), Seconds(13));
    QCOMPARE(counts[u"uptime"].toString(), QStringLiteral("13 seconds"));
    QCOMPARE(counts[u"dbKBTotal"].toInt(), 5'000'000 / 1024);

    const QJsonObject bootstrap = counts[u"stream_bootstrap"].toObject();
    QCOMPARE(
        shapeOf(bootstrap),
        (QStringList{QStringLiteral(" object"), QStringLiteral(".completed_passes text"),
                     QStringLiteral(".enabled bool"), QStringLiteral(".ledgers_behind number"),
                     QStringLiteral(".phase text"), QStringLiteral(".total_stored_bytes number")}));
    QCOMPARE(bootstrap[u"phase"].toString(), QStringLiteral("catching_up"));
    QCOMPARE(countsAt(answersOf(), Seconds(21))[u"stream_bootstrap"][u"enabled"],
             QJsonValue(false));

    const QJsonObject process = counts[u"process"].toObject();
    const auto memory = ProcessMemory::of(::getpid());
    QVERIFY(process[u"footprint"].toString().toLongLong() > 0);
    QVERIFY(process[u"peak_footprint"].toString().toLongLong() <= memory->peakFootprint);
    QCOMPARE(counts[u"mossgrid_maintenance"][u"next"][u"growth_bytes"].toInt(), 1024);
}

void TestSimMessages::countsExtras_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<bool>("bootstrap");
    QTest::addColumn<bool>("maintenance");
    QTest::addColumn<bool>("process");
    QTest::newRow("usual") << QString() << true << true << true;
    QTest::newRow("plain") << QStringLiteral("counts=plain") << false << false << false;
    QTest::newRow("no process") << QStringLiteral("process=no") << true << true << false;
    QTest::newRow("no bootstrap") << QStringLiteral("bootstrap=no") << false << true << true;
}

void TestSimMessages::countsExtras()
{
    QFETCH(QString, scenario);
    QFETCH(bool, bootstrap);
    QFETCH(bool, maintenance);
    QFETCH(bool, process);
    const QJsonObject counts = countsAt(answersOf(Scenario::parse(scenario)), Seconds(1));
    QCOMPARE(counts.contains(u"stream_bootstrap"), bootstrap);
    QCOMPARE(counts.contains(u"mossgrid_maintenance"), maintenance);
    QCOMPARE(counts.contains(u"process"), process);
}

void TestSimMessages::uptimes_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << QString();
    QTest::newRow("1") << 1 << QStringLiteral("1 second");
    QTest::newRow("9") << 9 << QStringLiteral("9 seconds");
    QTest::newRow("60") << 60 << QStringLiteral("1 minute");
    QTest::newRow("62") << 62 << QStringLiteral("1 minute, 2 seconds");
    QTest::newRow("7200") << 7200 << QStringLiteral("2 hours");
    QTest::newRow("90061") << 90'061 << QStringLiteral("1 day, 1 hour, 1 minute, 1 second");
}

void TestSimMessages::uptimes()
{
    QFETCH(int, seconds);
    QFETCH(QString, text);
    QCOMPARE(uptimeText(std::chrono::seconds(seconds)), text);
}

void TestSimMessages::shortAnswers()
{
    const Answers answers = answersOf();
    QCOMPARE(overHttp(answers, "stop", Seconds(1)), recorded("stop.json"));
    QCOMPARE(overHttp(answers, "no_such_method", Seconds(1)), recorded("unknown_method.json"));
}

TIDEWICK_TEST_MAIN(TestSimMessages)
#include "tst_simmessages.moc"
