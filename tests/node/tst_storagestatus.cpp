// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/StorageStatus.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

const WallClock::time_point now{std::chrono::hours(500'000)};

QJsonObject objectOf(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        qFatal("Not an object: %s", text.constData());
    return document.object();
}

} // namespace

class TestStorageStatus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void line_data();
    void line();
    void number_data();
    void number();
    void step_data();
    void step();
    void span_data();
    void span();
    void estimatesFromTheLastBuild_data();
    void estimatesFromTheLastBuild();
    void learnsFromSuccess_data();
    void learnsFromSuccess();
    void learnsTheLastSecondsSeen();
    void learnsOncePerBuild();
    void remembersAcrossRuns();
    void remembersEachOperationByItself();
    void growthNeedsTime_data();
    void growthNeedsTime();
    void growthStartsAnewAfterATrim();
    void growthIsReckonedFromTheFirstSight();

private:
    QString describe(const QByteArray &object, WallClock::time_point at = now)
    {
        return m_status->describe(objectOf(object), at);
    }
    Defaults defaults() const { return Defaults(m_folder->path() / "settings.ini"); }

    std::optional<TemporaryFolder> m_folder;
    std::optional<StorageStatus> m_status;
};

void TestStorageStatus::init()
{
    m_folder.emplace();
    m_status.emplace(defaults());
}

void TestStorageStatus::line_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *object, const char *expected) {
        QTest::newRow(object) << QByteArray(object) << QString::fromUtf8(expected);
    };
    const char *upToDate = "Storage: up to date";

    row("{}", upToDate);
    row(R"({"phase":"idle"})", upToDate);
    row(R"({"phase":7})", upToDate);
    row(R"({"phase":"Building"})", upToDate);

    // A rebuild under way.
    row(R"({"phase":"building","operation":"major","phase_seconds":30})",
        "Storage: rewriting the store · under a minute so far");
    row(R"({"phase":"building","operation":"round","phase_seconds":180})",
        "Storage: trimming the store · 3m so far");
    row(R"({"phase":"building"})", "Storage: trimming the store · under a minute so far");
    row(R"({"phase":"building","operation":["major"],"phase_seconds":"3900"})",
        "Storage: trimming the store · 1h 5m so far");
    row(R"({"phase":"building","phase_seconds":"soon"})",
        "Storage: trimming the store · under a minute so far");
    row(R"({"phase":"building","operation":"major","phase_seconds":30,
            "progress":"{\"phase\":\"tail\",\"done\":42,\"total\":100}"})",
        "Storage: rewriting the store · copying new data 42% · under a minute so far");
    row(R"({"phase":"building","progress":{"phase":"tail"}})",
        "Storage: trimming the store · under a minute so far");
    row(R"({"phase":"building","progress":"not JSON"})",
        "Storage: trimming the store · under a minute so far");
    row(R"({"phase":"building","phase_seconds":-5})", // less than no memory of an earlier one
        "Storage: trimming the store · under a minute so far, under a minute left");
    row(R"({"phase":"building","phase_seconds":59.999})",
        "Storage: trimming the store · under a minute so far");
    row(R"({"phase":"building","phase_seconds":60})", "Storage: trimming the store · 1m so far");
    row(R"({"phase":"building","phase_seconds":1e300})",
        "Storage: trimming the store · 2562047788015215h 30m so far");

    // After a rebuild.
    row(R"({"phase":"switched","next":{"ledgers":100,"ledgers_needed":356}})",
        "Storage: tidied up; the old copy goes in 256 ledgers");
    row(R"({"phase":"switched","next":{"ledgers":"100.5","ledgers_needed":"103"}})",
        "Storage: tidied up; the old copy goes in 2 ledgers");
    row(R"({"phase":"switched","next":{"ledgers":100,"ledgers_needed":100}})",
        "Storage: tidied up; the old copy goes shortly");
    row(R"({"phase":"switched","next":{"ledgers":100,"ledgers_needed":99}})",
        "Storage: tidied up; the old copy goes shortly");
    row(R"({"phase":"switched","next":{"ledgers":100}})",
        "Storage: tidied up; the old copy goes shortly");
    row(R"({"phase":"switched","next":{"ledgers_needed":100}})",
        "Storage: tidied up; the old copy goes shortly");
    row(R"({"phase":"switched"})", "Storage: tidied up; the old copy goes shortly");
    row(R"({"phase":"switched","next":{"ledgers":0,"ledgers_needed":"1e400"}})",
        "Storage: tidied up; the old copy goes in 9223372036854775807 ledgers");
    row(R"({"phase":"retiring"})", "Storage: removing the old copy");
    row(R"({"phase":"blocked","blocked":"the disk is full"})",
        "Storage needs attention: the disk is full");
    row(R"({"phase":"blocked"})", "Storage needs attention: see the log");
    row(R"({"phase":"blocked","blocked":5})", "Storage needs attention: see the log");
    row(R"({"phase":"starting"})", "Storage: starting");

    // Idle after a failure.
    row(R"({"last_outcome":"disk full","next_attempt_seconds":90})",
        "Storage: disk full; retrying in 1m");
    row(R"({"last_outcome":"%1 & %2","next_attempt_seconds":3600})",
        "Storage: %1 & %2; retrying in 1h 0m");
    row(R"({"last_outcome":"disk full","next_attempt_seconds":-1})",
        "Storage: disk full; retrying in 0m");
    row(R"({"last_outcome":"disk full","next_attempt_seconds":90.5})", upToDate);
    row(R"({"last_outcome":"disk full"})", upToDate);
    row(R"({"last_outcome":"success","next_attempt_seconds":90})", upToDate);
    row(R"({"last_outcome":"disk full","next":{"waiting_for":"full"}})",
        "Storage: tidies up once the node is in sync");

    // Idle before the next.
    row(R"({"next":{"waiting_for":"full","operation":"major"}})",
        "Storage: tidies up once the node is in sync");
    row(R"({"next":{"waiting_for":"ledgers"}})", upToDate);
    row(R"({"next":{"operation":5}})", upToDate);
    row(R"({"next":{"operation":"other"}})", upToDate);
    row(R"({"next":[]})", upToDate);

    row(R"({"next":{"operation":"major","ledgers_needed":10,"ledgers":5}})",
        "Storage: first tidy-up starting"); // 19.5 s
    row(R"({"next":{"operation":"major","ledgers_needed":100,"ledgers":0}})",
        "Storage: first tidy-up in about 6m"); // 390 s
    row(R"({"next":{"operation":"major"}})", "Storage: first tidy-up starting");
    row(R"({"next":{"operation":"major","full_needed":30}})",
        "Storage: first tidy-up in under a minute");
    row(R"({"next":{"operation":"major","full_needed":29.9}})", "Storage: first tidy-up starting");
    row(R"({"next":{"operation":"major","full_needed":59.9}})",
        "Storage: first tidy-up in under a minute");
    row(R"({"next":{"operation":"major","full_needed":60}})", "Storage: first tidy-up in about 1m");
    row(R"({"next":{"operation":"major","full_needed":7200,"full_seconds":600,
                    "ledgers_needed":256,"ledgers":250}})",
        "Storage: first tidy-up in about 1h 50m");
    row(R"({"next":{"operation":"major","full_needed":10,"full_seconds":600}})",
        "Storage: first tidy-up starting");

    row(R"({"next":{"operation":"round","growth_bytes":4294967296,"grown_by_bytes":1288490188.8}})",
        "Storage: next trim after 4.0 GB (1.2 GB so far)");
    row(R"({"next":{"operation":"round","growth_bytes":"4294967296","grown_by_bytes":"0"}})",
        "Storage: next trim after 4.0 GB (0.0 GB so far)");
    row(R"({"next":{"operation":"round","growth_bytes":4294967296}})", upToDate);
    row(R"({"next":{"operation":"round","grown_by_bytes":4294967296}})", upToDate);
    row(R"({"next":{"operation":"round","growth_bytes":"x","grown_by_bytes":1}})", upToDate);
}

void TestStorageStatus::line()
{
    QFETCH(QByteArray, object);
    QFETCH(QString, expected);
    QCOMPARE(describe(object), expected);
}

void TestStorageStatus::number_data()
{
    using Number = std::optional<double>;
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Number>("expected");
    const auto row = [](const char *json, Number expected) {
        QTest::newRow(json) << QByteArray(json) << expected;
    };
    row("5", 5);
    row("-1.5", -1.5);
    row("true", 1);
    row("false", 0);
    row("\"5\"", 5);
    row("\"1e3\"", 1000);
    row("\" 5\"", {});
    row("\"5 \"", {});
    row("\"\"", {});
    row("\"five\"", {});
    row("\"true\"", {});
    row("null", {});
    row("[]", {});
    row("{}", {});
}

void TestStorageStatus::number()
{
    QFETCH(QByteArray, json);
    QFETCH(std::optional<double>, expected);
    const QJsonValue value = QJsonDocument::fromJson('[' + json + ']').array()[0];
    QCOMPARE(StorageStatus::number(value), expected);
    QCOMPARE(StorageStatus::number(QJsonValue::Undefined), std::nullopt);
}

void TestStorageStatus::step_data()
{
    QTest::addColumn<QString>("progress");
    QTest::addColumn<QString>("expected"); // empty for none
    const auto row = [](const char *progress, const char *expected) {
        QTest::newRow(progress) << QString::fromUtf8(progress) << QString::fromUtf8(expected);
    };
    row(R"({"phase":"mark"})", "finding live data");
    row(R"({"phase":"copy"})", "copying");
    row(R"({"phase":"tail"})", "copying new data");
    row(R"({"phase":"drain"})", "writing the index");
    row(R"({"phase":"index"})", "indexing");
    row(R"({"phase":"swap"})", "switching");
    row(R"({"phase":"sweep"})", "sweep");
    row(R"({"phase":"copy","done":42.5,"total":100})", "copying 42%"); // a tie goes to even
    row(R"({"phase":"copy","done":43.5,"total":100})", "copying 44%");
    row(R"({"phase":"copy","done":"1","total":"3"})", "copying 33%");
    row(R"({"phase":"copy","done":250,"total":100})", "copying 250%");
    row(R"({"phase":"copy","done":-1,"total":100})", "copying -1%");
    row(R"({"phase":"copy","done":0,"total":100})", "copying 0%");
    row(R"({"phase":"copy","done":1,"total":0})", "copying");
    row(R"({"phase":"copy","done":1,"total":-5})", "copying");
    row(R"({"phase":"copy","done":1})", "copying");
    row(R"({"phase":"copy","total":100})", "copying");
    row(R"({"phase":"a%1b","done":1,"total":2})", "a%1b 50%");
    row(R"({"done":1,"total":2})", "");
    row(R"({"phase":5})", "");
    row(R"(["phase"])", "");
    row("{", "");
    row("", "");
}

void TestStorageStatus::step()
{
    QFETCH(QString, progress);
    QFETCH(QString, expected);
    QCOMPARE(StorageStatus::step(progress).value_or(QString()), expected);
    QCOMPARE(StorageStatus::step(std::nullopt), std::nullopt);
}

void TestStorageStatus::span_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("expected");
    const double infinite = std::numeric_limits<double>::infinity();
    QTest::newRow("none") << 0.0 << QStringLiteral("under a minute");
    QTest::newRow("negative") << -100.0 << QStringLiteral("under a minute");
    QTest::newRow("just under") << 59.99 << QStringLiteral("under a minute");
    QTest::newRow("a minute") << 60.0 << QStringLiteral("1m");
    QTest::newRow("truncated") << 119.99 << QStringLiteral("1m");
    QTest::newRow("ten minutes") << 600.0 << QStringLiteral("10m");
    QTest::newRow("hours") << 3900.0 << QStringLiteral("1h 5m");
    QTest::newRow("infinite") << infinite << QStringLiteral("2562047788015215h 30m");
}

void TestStorageStatus::span()
{
    QFETCH(double, seconds);
    QFETCH(QString, expected);
    QCOMPARE(StorageStatus::span(seconds), expected);
}

void TestStorageStatus::estimatesFromTheLastBuild_data()
{
    QTest::addColumn<double>("last");
    QTest::addColumn<QString>("expected");
    const QString line = QStringLiteral("Storage: rewriting the store · 5m so far");
    QTest::newRow("ten minutes left") << 900.0 << line + QStringLiteral(", about 10m left");
    QTest::newRow("a minute left") << 360.0 << line + QStringLiteral(", about 1m left");
    QTest::newRow("half a minute left") << 330.0 << line + QStringLiteral(", under a minute left");
    QTest::newRow("as long as last time") << 300.0 << line;
    QTest::newRow("longer than last time") << 200.0 << line;
}

void TestStorageStatus::estimatesFromTheLastBuild()
{
    QFETCH(double, last);
    QFETCH(QString, expected);
    defaults().setReal(QStringLiteral("lastBuildSeconds.major"), last);
    QCOMPARE(describe(R"({"phase":"building","operation":"major","phase_seconds":300})"), expected);
}

void TestStorageStatus::learnsFromSuccess_data()
{
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<bool>("learns");
    const auto row = [](const char *next, bool learns) {
        QTest::newRow(next) << QByteArray(next) << learns;
    };
    row(R"({"last_outcome":"success"})", true);
    row(R"({"phase":"switched","last_outcome":"success"})", true);
    row(R"({"phase":"retiring","last_outcome":"success"})", true);
    row(R"({"phase":"blocked","last_outcome":"success"})", true);
    row(R"({"phase":"starting","last_outcome":"success"})", true);
    row(R"({"last_outcome":"disk full"})", false);
    row(R"({"last_outcome":true})", false);
    row("{}", false);
}

void TestStorageStatus::learnsFromSuccess()
{
    QFETCH(QByteArray, next);
    QFETCH(bool, learns);
    const QString key = QStringLiteral("lastBuildSeconds.round");
    describe(R"({"phase":"building","operation":"round","phase_seconds":1200})");
    QVERIFY(!defaults().contains(key));
    describe(next);
    QCOMPARE(defaults().real(key), learns ? 1200.0 : 0.0);
    // Whatever the outcome, that rebuild is settled.
    describe(R"({"last_outcome":"success"})");
    QCOMPARE(defaults().contains(key), learns);
}

void TestStorageStatus::learnsTheLastSecondsSeen()
{
    for (const char *seconds : {"10", "20.5", "31.25"}) {
        describe(R"({"phase":"building","operation":"major","phase_seconds":)" + QByteArray(seconds)
                 + '}');
    }
    describe(R"({"last_outcome":"success"})");
    QCOMPARE(defaults().real(QStringLiteral("lastBuildSeconds.major")), 31.25);
}

void TestStorageStatus::learnsOncePerBuild()
{
    const QString key = QStringLiteral("lastBuildSeconds.major");
    describe(R"({"phase":"building","operation":"major","phase_seconds":10})");
    describe(R"({"last_outcome":"success"})");
    defaults().remove(key);
    describe(R"({"last_outcome":"success"})");
    QVERIFY(!defaults().contains(key));
}

void TestStorageStatus::remembersAcrossRuns()
{
    describe(R"({"phase":"building","operation":"major","phase_seconds":900})");
    describe(R"({"last_outcome":"success"})");
    m_status.emplace(defaults());
    QCOMPARE(describe(R"({"phase":"building","operation":"major","phase_seconds":300})"),
             QStringLiteral("Storage: rewriting the store · 5m so far, about 10m left"));
}

void TestStorageStatus::remembersEachOperationByItself()
{
    for (const char *operation : {"", "round", "a/b", "ünï [x]=\\n"}) {
        const QByteArray building =
            QJsonDocument(QJsonObject{{QStringLiteral("phase"), QStringLiteral("building")},
                                      {QStringLiteral("operation"), QString::fromUtf8(operation)},
                                      {QStringLiteral("phase_seconds"), 600}})
                .toJson();
        QCOMPARE(describe(building), QStringLiteral("Storage: trimming the store · 10m so far"));
        describe(R"({"last_outcome":"success"})");
        QCOMPARE(defaults().real(QLatin1String("lastBuildSeconds.") + QString::fromUtf8(operation)),
                 600.0);
    }
}

void TestStorageStatus::growthNeedsTime_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<double>("grown"); // GB
    QTest::addColumn<QString>("expected");
    const QString line = QStringLiteral("Storage: next trim after 4.0 GB (");
    QTest::newRow("too soon") << qint64(599) << 2.0 << line + QStringLiteral("2.0 GB so far)");
    QTest::newRow("ten minutes") << qint64(600) << 2.0
                                 << line + QStringLiteral("2.0 GB so far, about 20m)");
    QTest::newRow("an hour") << qint64(3600) << 2.0
                             << line + QStringLiteral("2.0 GB so far, about 2h 0m)");
    QTest::newRow("no growth") << qint64(3600) << 1.0 << line + QStringLiteral("1.0 GB so far)");
    QTest::newRow("nearly there") << qint64(3000) << 3.95
                                  << line + QStringLiteral("4.0 GB so far, under a minute)");
    QTest::newRow("overdue") << qint64(3600) << 5.0
                             << line + QStringLiteral("5.0 GB so far, under a minute)");
    QTest::newRow("clock set back")
        << qint64(-50) << 2.0 << line + QStringLiteral("2.0 GB so far)");
}

namespace {

QByteArray grownTo(double grownGB)
{
    return QJsonDocument(
               QJsonObject{{QStringLiteral("next"),
                            QJsonObject{{QStringLiteral("operation"), QStringLiteral("round")},
                                        {QStringLiteral("growth_bytes"), 4294967296.0},
                                        {QStringLiteral("grown_by_bytes"), grownGB * 1073741824}}}})
        .toJson();
}

} // namespace

void TestStorageStatus::growthNeedsTime()
{
    QFETCH(qint64, seconds);
    QFETCH(double, grown);
    QFETCH(QString, expected);
    QCOMPARE(describe(grownTo(1)),
             QStringLiteral("Storage: next trim after 4.0 GB (1.0 GB so far)"));
    QCOMPARE(describe(grownTo(grown), now + std::chrono::seconds(seconds)), expected);
}

void TestStorageStatus::growthStartsAnewAfterATrim()
{
    describe(grownTo(3));
    describe(grownTo(0.5), now + 3000s);
    QCOMPARE(describe(grownTo(1), now + 3500s),
             QStringLiteral("Storage: next trim after 4.0 GB (1.0 GB so far)"));
    QCOMPARE(describe(grownTo(1.5), now + 4000s),
             QStringLiteral("Storage: next trim after 4.0 GB (1.5 GB so far, about 41m)"));
}

void TestStorageStatus::growthIsReckonedFromTheFirstSight()
{
    describe(grownTo(1));
    for (int i = 1; i <= 6; ++i)
        describe(grownTo(1 + i * 0.1), now + i * 100s);
    // Other phases between do not disturb it.
    describe(R"({"phase":"building"})", now + 650s);
    QCOMPARE(describe(grownTo(2), now + 1000s),
             QStringLiteral("Storage: next trim after 4.0 GB (2.0 GB so far, about 33m)"));
}

TIDEWICK_TEST_MAIN(TestStorageStatus)
#include "tst_storagestatus.moc"
