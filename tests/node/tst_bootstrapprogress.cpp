// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/BootstrapProgress.h"
#include "support/Surroundings.h"

#include <QJsonDocument>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

const SuspendingClock::time_point start{1h};

QJsonObject counts(const QByteArray &bootstrap)
{
    return QJsonDocument::fromJson("{\"stream_bootstrap\":" + bootstrap + '}').object();
}

BootstrapProgress after(const QByteArray &bootstrap)
{
    BootstrapProgress progress;
    progress.update(counts(bootstrap), start);
    return progress;
}

} // namespace

class TestBootstrapProgress : public QObject
{
    Q_OBJECT

private slots:
    void detail_data();
    void detail();
    void covers_data();
    void covers();
    void rate_data();
    void rate();
    void rateUsesTheLastSample();
    void shrinkingKeepsTheRate();
    void answersWithoutBootstrap();
};

void TestBootstrapProgress::detail_data()
{
    QTest::addColumn<QByteArray>("bootstrap");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *bootstrap, const char *expected) {
        QTest::newRow(bootstrap) << QByteArray(bootstrap) << QString::fromUtf8(expected);
    };
    row("{}", "");
    row(R"({"phase":"acquiring"})", "acquiring");
    row(R"({"phase":"catching_up_now"})", "catching up now");
    row(R"({"phase":7})", "");
    row(R"({"phase":"x","completed_passes":"0"})", "x");
    row(R"({"phase":"x","completed_passes":"2"})", "x · 2 passes");
    row(R"({"phase":"x","completed_passes":""})", "x ·  passes");
    row(R"({"phase":"x","completed_passes":2})", "x");
    row(R"({"phase":"x","ledgers_behind":120})", "x · 120 ledgers behind");
    row(R"({"phase":"x","ledgers_behind":0})", "x · 0 ledgers behind");
    row(R"({"phase":"x","ledgers_behind":12.5})", "x");
    row(R"({"phase":"x","ledgers_behind":"120"})", "x");
    row(R"({"completed_passes":"2","ledgers_behind":120})", " · 2 passes · 120 ledgers behind");
    row(R"({"phase":"a%1b","completed_passes":"%2"})", "a%1b · %2 passes");
}

void TestBootstrapProgress::detail()
{
    QFETCH(QByteArray, bootstrap);
    QFETCH(QString, expected);
    QCOMPARE(after(bootstrap).detail(), expected);
}

void TestBootstrapProgress::covers_data()
{
    QTest::addColumn<QByteArray>("bootstrap");
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *bootstrap, const char *state, bool expected) {
        QTest::addRow("%s %s", bootstrap, state)
            << QByteArray(bootstrap) << QString::fromLatin1(state) << expected;
    };
    for (const char *state : {"waiting_quorum", "acquiring", "catching_up"}) {
        row(R"({"enabled":true})", state, true);
        row(R"({"enabled":1})", state, true);
        row(R"({"enabled":false})", state, false);
        row(R"({"enabled":"true"})", state, false);
        row(R"({})", state, false);
        row(R"([])", state, false);
    }
    row(R"({"enabled":true})", "full", false);
    row(R"({"enabled":true})", "connected", false);
}

void TestBootstrapProgress::covers()
{
    QFETCH(QByteArray, bootstrap);
    QFETCH(QString, state);
    QFETCH(bool, expected);
    QCOMPARE(after(bootstrap).covers(state), expected);
}

void TestBootstrapProgress::rate_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<QString>("expected"); // empty for none
    const auto row = [](const char *name, const char *first, const char *second, qint64 ms,
                        const char *expected) {
        QTest::newRow(name) << QByteArray(first) << QByteArray(second) << ms
                            << QString::fromLatin1(expected);
    };
    row("ten seconds", "0", "31000000", 10'000, "3.1 MB/s");
    row("texts", "\"1000\"", "\"2000\"", 1'000, "1 KB/s");
    row("nothing grew", "5", "5", 10'000, "Zero KB/s");
    row("whole seconds count", "0", "2000000", 1'999, "2 MB/s");
    row("too soon", "0", "1000", 999, "");
    row("truncated", "0", "1999", 2'000, "999 bytes/s");
    row("shrunk", "1000", "999", 10'000, "");
    row("not a number", "0", "null", 10'000, "");
    row("beyond 64 bits", "0", "\"1e300\"", 1'000, "9.22 EB/s");
}

void TestBootstrapProgress::rate()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(qint64, milliseconds);
    QFETCH(QString, expected);
    BootstrapProgress progress = after("{\"phase\":\"x\",\"total_stored_bytes\":" + first + '}');
    QCOMPARE(progress.rate(), std::nullopt);
    progress.update(counts("{\"phase\":\"x\",\"total_stored_bytes\":" + second + '}'),
                    start + std::chrono::milliseconds(milliseconds));
    QCOMPARE(progress.rate().value_or(QString()), expected);
    QCOMPARE(progress.detail(),
             expected.isEmpty() ? QStringLiteral("x") : QStringLiteral("x · ") + expected);
}

void TestBootstrapProgress::rateUsesTheLastSample()
{
    BootstrapProgress progress = after(R"({"total_stored_bytes":0})");
    progress.update(counts(R"({"total_stored_bytes":1000000})"), start + 10s);
    progress.update(counts(R"({"total_stored_bytes":4000000})"), start + 11s);
    QCOMPARE(progress.rate(), std::optional(QStringLiteral("3 MB/s")));
}

void TestBootstrapProgress::shrinkingKeepsTheRate()
{
    BootstrapProgress progress = after(R"({"total_stored_bytes":0})");
    progress.update(counts(R"({"total_stored_bytes":10000})"), start + 10s);
    progress.update(counts(R"({"total_stored_bytes":5000})"), start + 20s);
    QCOMPARE(progress.rate(), std::optional(QStringLiteral("1 KB/s")));
    // The smaller value is nevertheless the new starting point.
    progress.update(counts(R"({"total_stored_bytes":25000})"), start + 30s);
    QCOMPARE(progress.rate(), std::optional(QStringLiteral("2 KB/s")));
}

void TestBootstrapProgress::answersWithoutBootstrap()
{
    BootstrapProgress progress = after(R"({"enabled":true,"phase":"x"})");
    QVERIFY(progress.covers(QStringLiteral("acquiring")));
    progress.update(QJsonObject(), start + 10s);
    QVERIFY(!progress.covers(QStringLiteral("acquiring")));
    QCOMPARE(progress.detail(), QString());
}

TIDEWICK_TEST_MAIN(TestBootstrapProgress)
#include "tst_bootstrapprogress.moc"
