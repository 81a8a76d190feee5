// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/StorageStatus.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QJsonDocument>

#include <optional>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

const WallClock::time_point now{std::chrono::hours(500'000)};

/// A report on a store that has grown by this much since the last trim.
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

/// Tests what the storage line derives from earlier reports: the duration of rebuilds and the
/// growth rate of the store.
class TestStorageLearning : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void estimatesFromTheLastBuild_data();
    void estimatesFromTheLastBuild();
    void learnsFromSuccess_data();
    void learnsFromSuccess();
    void learnsTheLastSecondsSeen();
    void learnsOncePerBuild();
    void remembersAcrossRuns();
    void remembersEachOperationSeparately();
    void doesNotRememberLongNames();
    void growthNeedsTime_data();
    void growthNeedsTime();
    void growthRestartsAfterATrim();
    void growthIsMeasuredFromTheFirstReport();
    void infiniteGrowth();

private:
    QString describe(const QByteArray &object, WallClock::time_point at = now)
    {
        return m_status->describe(QJsonDocument::fromJson(object).object(), at);
    }
    Defaults defaults() const { return Defaults(m_folder->path() / "settings.ini"); }

    std::optional<TemporaryFolder> m_folder;
    std::optional<StorageStatus> m_status;
};

void TestStorageLearning::init()
{
    m_folder.emplace();
    m_status.emplace(defaults());
}

void TestStorageLearning::estimatesFromTheLastBuild_data()
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

void TestStorageLearning::estimatesFromTheLastBuild()
{
    QFETCH(double, last);
    QFETCH(QString, expected);
    defaults().setReal(QStringLiteral("lastBuildSeconds.major"), last);
    QCOMPARE(describe(R"({"phase":"building","operation":"major","phase_seconds":300})"), expected);
}

void TestStorageLearning::learnsFromSuccess_data()
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

void TestStorageLearning::learnsFromSuccess()
{
    QFETCH(QByteArray, next);
    QFETCH(bool, learns);
    const QString key = QStringLiteral("lastBuildSeconds.round");
    describe(R"({"phase":"building","operation":"round","phase_seconds":1200})");
    QVERIFY(!defaults().contains(key));
    describe(next);
    QCOMPARE(defaults().real(key), learns ? 1200.0 : 0.0);
    // That rebuild is now settled, whatever its outcome.
    describe(R"({"last_outcome":"success"})");
    QCOMPARE(defaults().contains(key), learns);
}

void TestStorageLearning::learnsTheLastSecondsSeen()
{
    for (const char *seconds : {"10", "20.5", "31.25"}) {
        describe(R"({"phase":"building","operation":"major","phase_seconds":)" + QByteArray(seconds)
                 + '}');
    }
    describe(R"({"last_outcome":"success"})");
    QCOMPARE(defaults().real(QStringLiteral("lastBuildSeconds.major")), 31.25);
}

void TestStorageLearning::learnsOncePerBuild()
{
    const QString key = QStringLiteral("lastBuildSeconds.major");
    describe(R"({"phase":"building","operation":"major","phase_seconds":10})");
    describe(R"({"last_outcome":"success"})");
    defaults().remove(key);
    describe(R"({"last_outcome":"success"})");
    QVERIFY(!defaults().contains(key));
}

void TestStorageLearning::remembersAcrossRuns()
{
    describe(R"({"phase":"building","operation":"major","phase_seconds":900})");
    describe(R"({"last_outcome":"success"})");
    m_status.emplace(defaults());
    QCOMPARE(describe(R"({"phase":"building","operation":"major","phase_seconds":300})"),
             QStringLiteral("Storage: rewriting the store · 5m so far, about 10m left"));
}

void TestStorageLearning::remembersEachOperationSeparately()
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

/// Arbitrary names sent by a node must not fill up the settings.
void TestStorageLearning::doesNotRememberLongNames()
{
    const auto learns = [this](qsizetype length) {
        const QByteArray name(length, 'x');
        describe(R"({"phase":"building","phase_seconds":600,"operation":")" + name + "\"}");
        describe(R"({"last_outcome":"success"})");
        return defaults().contains(QLatin1String("lastBuildSeconds.") + QString::fromLatin1(name));
    };
    QVERIFY(learns(64));
    const auto size = std::filesystem::file_size(defaults().file());
    QVERIFY(!learns(65));
    QVERIFY(!learns(1'000'000));
    QCOMPARE(std::filesystem::file_size(defaults().file()), size);
}

void TestStorageLearning::growthNeedsTime_data()
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

void TestStorageLearning::growthNeedsTime()
{
    QFETCH(qint64, seconds);
    QFETCH(double, grown);
    QFETCH(QString, expected);
    QCOMPARE(describe(grownTo(1)),
             QStringLiteral("Storage: next trim after 4.0 GB (1.0 GB so far)"));
    QCOMPARE(describe(grownTo(grown), now + std::chrono::seconds(seconds)), expected);
}

void TestStorageLearning::growthRestartsAfterATrim()
{
    describe(grownTo(3));
    describe(grownTo(0.5), now + 3000s);
    QCOMPARE(describe(grownTo(1), now + 3500s),
             QStringLiteral("Storage: next trim after 4.0 GB (1.0 GB so far)"));
    QCOMPARE(describe(grownTo(1.5), now + 4000s),
             QStringLiteral("Storage: next trim after 4.0 GB (1.5 GB so far, about 41m)"));
}

void TestStorageLearning::growthIsMeasuredFromTheFirstReport()
{
    describe(grownTo(1));
    for (int i = 1; i <= 6; ++i)
        describe(grownTo(1 + i * 0.1), now + i * 100s);
    // Other phases in between do not disturb the measurement.
    describe(R"({"phase":"building"})", now + 650s);
    QCOMPARE(describe(grownTo(2), now + 1000s),
             QStringLiteral("Storage: next trim after 4.0 GB (2.0 GB so far, about 33m)"));
}

/// Nothing can be estimated from infinite sizes.
void TestStorageLearning::infiniteGrowth()
{
    const QByteArray next = R"({"next":{"operation":"round","growth_bytes":"1e999",
                                        "grown_by_bytes":"%1"}})";
    describe(QByteArray(next).replace("%1", "1"));
    QCOMPARE(describe(QByteArray(next).replace("%1", "1e999"), now + 700s),
             QStringLiteral("Storage: next trim after inf GB (inf GB so far, under a minute)"));
}

TIDEWICK_TEST_MAIN(TestStorageLearning)
#include "tst_storagelearning.moc"
