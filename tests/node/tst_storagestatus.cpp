// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/StorageStatus.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

using namespace tidewick;

namespace {

QJsonObject objectOf(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        qFatal("Not an object: %s", text.constData());
    return document.object();
}

} // namespace

/// Tests the storage line as far as it follows from a single report.
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

private:
    std::optional<TemporaryFolder> m_folder;
    std::optional<StorageStatus> m_status;
};

void TestStorageStatus::init()
{
    m_folder.emplace();
    m_status.emplace(Defaults(m_folder->path() / "settings.ini"));
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

    // During a rebuild.
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
    row(R"({"phase":"building","phase_seconds":-5})", // negative, and no earlier rebuild is known
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
    row(R"({"phase":"switched","next":{"ledgers":"1e999","ledgers_needed":"1e999"}})",
        "Storage: tidied up; the old copy goes shortly");
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

    // Idle before the next rebuild.
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
    row(R"({"next":{"operation":"major","ledgers_needed":"1e999","ledgers":"1e999"}})",
        "Storage: first tidy-up starting"); // infinity from infinity
    row(R"({"next":{"operation":"major","full_needed":"1e999","full_seconds":"1e999",
                    "ledgers_needed":100}})",
        "Storage: first tidy-up in about 6m");

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
    const WallClock::time_point now{std::chrono::hours(500'000)};
    QCOMPARE(m_status->describe(objectOf(object), now), expected);
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
    row(R"({"phase":"copy","done":42.5,"total":100})", "copying 42%"); // ties round to even
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
    row(R"({"phase":"copy","done":"1e999","total":100})", "copying");
    row(R"({"phase":"copy","done":"1e999","total":"1e999"})", "copying");
    row(R"({"phase":"copy","done":1e308,"total":1})",
        "copying"); // overflows when multiplied by 100
    row(R"({"phase":"copy","done":1,"total":"1e999"})", "copying 0%");
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
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN()
                                  << QStringLiteral("under a minute");
    QTest::newRow("infinite") << infinite << QStringLiteral("2562047788015215h 30m");
}

void TestStorageStatus::span()
{
    QFETCH(double, seconds);
    QFETCH(QString, expected);
    QCOMPARE(StorageStatus::span(seconds), expected);
}

TIDEWICK_TEST_MAIN(TestStorageStatus)
#include "tst_storagestatus.moc"
