// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonRead.h"
#include "simnode/Course.h"
#include "simnode/MaintenanceCourse.h"
#include "support/Surroundings.h"

#include <algorithm>
#include <vector>

using namespace tidewick;
using namespace tidewick::sim;

namespace {

constexpr Seconds step(0.25);
constexpr qint64 growth = 2'000'000'000;

/// The values at each step up to this time, with consecutive duplicates removed.
template <typename Value>
std::vector<Value> walk(Seconds until, const std::function<Value(Seconds)> &valueAt)
{
    std::vector<Value> values;
    for (Seconds elapsed(0); elapsed < until; elapsed += step) {
        Value value = valueAt(elapsed);
        if (values.empty() || values.back() != value)
            values.push_back(std::move(value));
    }
    return values;
}

QJsonObject reportAt(Seconds elapsed)
{
    const Moment moment = Course().at(elapsed);
    return MaintenanceCourse::report(MaintenanceCourse().at(elapsed, moment.full), growth,
                                     Seconds(4));
}

std::vector<QString> asTexts(std::initializer_list<const char *> names)
{
    std::vector<QString> texts;
    for (const char *name : names)
        texts.push_back(QString::fromLatin1(name));
    return texts;
}

QJsonObject progressOf(const QJsonObject &report)
{
    return JsonRead::parseObject(report[u"progress"].toString().toUtf8()).value_or(QJsonObject());
}

} // namespace

class TestSimCourse : public QObject
{
    Q_OBJECT

private slots:
    void goesThroughAllStates();
    void findsPeers();
    void bootstraps();
    void validatesWhenTracking();
    void accountsForItsTime();
    void stockNodeHasOnlyTheCoarseStates();
    void pinsAState_data();
    void pinsAState();
    void pinsPeers();

    void maintainsInOrder();
    void maintenanceRepeats();
    void namesTheSteps();
    void reportsProgressOnlyWhileBuilding();
    void countsDown();
    void waitsToRetry();
    void reportsWhyItIsBlocked();
    void grows();
    void pinsAStage_data();
    void pinsAStage();
};

void TestSimCourse::goesThroughAllStates()
{
    const Course course;
    const auto states =
        walk<QString>(Seconds(31), [&](Seconds elapsed) { return course.at(elapsed).state; });
    QCOMPARE(states, asTexts({"waiting_quorum", "acquiring", "catching_up", "syncing", "tracking",
                              "full"}));
    QCOMPARE(course.at(Seconds(1e6)).state, QStringLiteral("full"));
    QCOMPARE(course.at(Seconds(13.5)).inState, Seconds(1.5));
    QCOMPARE(course.statesUntil(Seconds(13)),
             (QStringList{QStringLiteral("waiting_quorum"), QStringLiteral("acquiring"),
                          QStringLiteral("catching_up")}));
    QVERIFY(!course.at(Seconds(29)).full);
    QCOMPARE(course.at(Seconds(42)).full, Seconds(12));
}

void TestSimCourse::findsPeers()
{
    const Course course;
    const auto early = walk<int>(Seconds(30), [&](Seconds t) { return course.at(t).peers; });
    QCOMPARE(early.front(), 0);
    QVERIFY(std::is_sorted(early.begin(), early.end()));
    const auto later =
        walk<int>(Seconds(600), [&](Seconds t) { return course.at(t + Seconds(30)).peers; });
    QVERIFY(later.size() > 5);
    QVERIFY(*std::min_element(later.begin(), later.end()) >= 10);
    QVERIFY(*std::max_element(later.begin(), later.end()) <= 15);
}

void TestSimCourse::bootstraps()
{
    const Course course;
    for (const char *state : {"waiting_quorum", "acquiring", "catching_up"}) {
        const Bootstrap bootstrap = Course(QString::fromLatin1(state)).at(Seconds(1)).bootstrap;
        QVERIFY(bootstrap.enabled);
        QCOMPARE(bootstrap.phase, QString::fromLatin1(state));
    }
    QVERIFY(!course.at(Seconds(20)).bootstrap.enabled);

    const auto bytes =
        walk<qint64>(Seconds(60), [&](Seconds t) { return course.at(t).bootstrap.storedBytes; });
    QVERIFY(std::is_sorted(bytes.begin(), bytes.end()));
    QVERIFY(bytes.size() > 200);
    const auto behind =
        walk<int>(Seconds(60), [&](Seconds t) { return -course.at(t).bootstrap.ledgersBehind; });
    QVERIFY(std::is_sorted(behind.begin(), behind.end()));
    QVERIFY(behind.front() < -1000);
    QCOMPARE(behind.back(), 0);
    const auto passes =
        walk<int>(Seconds(60), [&](Seconds t) { return course.at(t).bootstrap.completedPasses; });
    QCOMPARE(passes, (std::vector<int>{0, 1, 2, 3}));
}

void TestSimCourse::validatesWhenTracking()
{
    const Course course;
    QVERIFY(course.at(Seconds(0)).waitsForNetwork);
    QVERIFY(!course.at(Seconds(13)).waitsForNetwork);
    QVERIFY(!course.at(Seconds(24)).validates);
    QVERIFY(course.at(Seconds(25)).validates);
    QVERIFY(course.at(Seconds(31)).validates);
}

void TestSimCourse::accountsForItsTime()
{
    std::map<QString, StateAccount> accounts = Course().accounts(Seconds(33));
    QCOMPARE(accounts.size(), std::size_t{5});
    QCOMPARE(accounts[QStringLiteral("disconnected")].duration, Seconds(5));
    QCOMPARE(accounts[QStringLiteral("connected")].duration, Seconds(15));
    QCOMPARE(accounts[QStringLiteral("syncing")].duration, Seconds(5));
    QCOMPARE(accounts[QStringLiteral("tracking")].duration, Seconds(5));
    QCOMPARE(accounts[QStringLiteral("full")].duration, Seconds(3));
    QCOMPARE(accounts[QStringLiteral("full")].transitions, 1);

    accounts = Course().accounts(Seconds(6));
    QCOMPARE(accounts[QStringLiteral("connected")].duration, Seconds(1));
    QCOMPARE(accounts[QStringLiteral("full")].transitions, 0);

    accounts = Course(QStringLiteral("odd")).accounts(Seconds(6));
    QCOMPARE(accounts[QStringLiteral("connected")].duration, Seconds(6));
}

void TestSimCourse::stockNodeHasOnlyTheCoarseStates()
{
    const Course stock({}, {}, Course::Kind::Stock);
    const auto states =
        walk<QString>(Seconds(31), [&](Seconds elapsed) { return stock.at(elapsed).state; });
    QCOMPARE(states, asTexts({"disconnected", "connected", "syncing", "tracking", "full"}));
    QCOMPARE(stock.statesUntil(Seconds(13)),
             (QStringList{QStringLiteral("disconnected"), QStringLiteral("connected")}));
    QCOMPARE(stock.at(Seconds(13)).inState, Seconds(8));
    QVERIFY(stock.at(Seconds(0)).waitsForNetwork);
    QVERIFY(!stock.at(Seconds(13)).bootstrap.enabled);
    QCOMPARE(stock.at(Seconds(42)).full, Seconds(12));

    std::map<QString, StateAccount> accounts = stock.accounts(Seconds(33));
    std::map<QString, StateAccount> others = Course().accounts(Seconds(33));
    for (const auto &[state, account] : others)
        QCOMPARE(accounts[state].duration, account.duration);
}

void TestSimCourse::pinsAState_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("bootstraps");
    QTest::addColumn<bool>("validates");
    QTest::addColumn<bool>("full");
    const auto row = [](const char *state, bool bootstraps, bool validates, bool full) {
        QTest::newRow(state) << QString::fromLatin1(state) << bootstraps << validates << full;
    };
    row("waiting_quorum", true, false, false);
    row("catching_up", true, false, false);
    row("syncing", false, false, false);
    row("tracking", false, true, false);
    row("full", false, true, true);
    row("proposing", false, true, true);
    row("validating", false, true, true);
    row("disconnected", false, false, false);
    row("odd", false, false, false);
}

void TestSimCourse::pinsAState()
{
    QFETCH(QString, state);
    QFETCH(bool, bootstraps);
    QFETCH(bool, validates);
    QFETCH(bool, full);
    const Course course(state);
    qint64 bytes = -1;
    for (const Seconds elapsed : {Seconds(0), Seconds(10), Seconds(40), Seconds(4000)}) {
        const Moment moment = course.at(elapsed);
        QCOMPARE(moment.state, state);
        QCOMPARE(course.statesUntil(elapsed), QStringList{state});
        QCOMPARE(moment.inState, elapsed);
        QCOMPARE(moment.bootstrap.enabled, bootstraps);
        QCOMPARE(moment.validates, validates);
        QCOMPARE(moment.full.has_value(), full);
        QVERIFY(moment.bootstrap.storedBytes > bytes);
        bytes = moment.bootstrap.storedBytes;
    }
}

void TestSimCourse::pinsPeers()
{
    const Course course(std::nullopt, 7);
    QCOMPARE(course.at(Seconds(0)).peers, 7);
    QCOMPARE(course.at(Seconds(100)).peers, 7);
}

void TestSimCourse::maintainsInOrder()
{
    const auto stages = walk<QString>(Seconds(600), [](Seconds elapsed) {
        const QJsonObject report = reportAt(elapsed);
        const QStringList words{report[u"phase"].toString(), report[u"operation"].toString(),
                                report[u"next"][u"waiting_for"].toString()};
        return words.join(u' ').simplified();
    });
    QCOMPARE(stages, asTexts({"starting full", "idle full", "idle", "building major", "switched",
                              "retiring", "idle", "building round", "switched", "retiring", "idle",
                              "building round", "idle", "building round", "switched", "retiring",
                              "idle", "blocked", "idle"}));
}

void TestSimCourse::maintenanceRepeats()
{
    const MaintenanceCourse course;
    const MaintenanceMoment first = course.at(Seconds(1000), Seconds(200));
    QCOMPARE(QString::fromLatin1(MaintenanceCourse::stage(first.number).name),
             QStringLiteral("idle"));
    // Stages are numbered consecutively, even after a year.
    int last = 0;
    for (Seconds full(0); full < Seconds(3000); full += step) {
        const int number = course.at(full + Seconds(30), full).number;
        QVERIFY(number == last || number == last + 1 || last == 0);
        last = number;
    }
    QVERIFY(last > 80);
    QVERIFY(course.at(Seconds(31e6), Seconds(31e6)).number > 1'000'000);
}

void TestSimCourse::namesTheSteps()
{
    // The first tidy-up begins 45 s after the node is in sync, and takes 90 s.
    const auto steps = walk<QString>(Seconds(90), [](Seconds t) {
        return progressOf(reportAt(t + Seconds(75)))[u"phase"].toString();
    });
    QCOMPARE(steps, asTexts({"mark", "copy", "tail", "drain", "index", "swap"}));

    qint64 done = -1;
    for (Seconds elapsed(90); elapsed < Seconds(120); elapsed += step) {
        const QJsonObject progress = progressOf(reportAt(elapsed));
        QVERIFY(progress[u"done"].toInteger(-1) > done);
        done = progress[u"done"].toInteger();
        QVERIFY(done <= progress[u"total"].toInteger());
    }
}

void TestSimCourse::reportsProgressOnlyWhileBuilding()
{
    for (Seconds elapsed(0); elapsed < Seconds(600); elapsed += step) {
        const QJsonObject report = reportAt(elapsed);
        const bool building = report[u"phase"] == QLatin1String("building");
        QCOMPARE(report.contains(u"progress"), building);
        QCOMPARE(report.contains(u"operation"), building);
        QCOMPARE(progressOf(report).isEmpty(), !building);
        QVERIFY(report[u"phase_seconds"].isDouble());
        QCOMPARE(report.contains(u"blocked"), report[u"phase"] == QLatin1String("blocked"));
        QCOMPARE(report.contains(u"last_outcome"), elapsed >= Seconds(30 + 45 + 90));
    }
}

void TestSimCourse::countsDown()
{
    const QJsonObject first = reportAt(Seconds(31))[u"next"].toObject();
    QCOMPARE(first[u"operation"].toString(), QStringLiteral("major"));
    QCOMPARE(first[u"full_needed"].toInt(), 45);
    QCOMPARE(first[u"full_seconds"].toInt(), 1);
    QCOMPARE(first[u"ledgers_needed"].toInt(), 12);
    QCOMPARE(first[u"ledgers"].toInt(), 0);
    const QJsonObject last = reportAt(Seconds(74.5))[u"next"].toObject();
    QCOMPARE(last[u"full_seconds"].toInt(), 44);
    QCOMPARE(last[u"ledgers"].toInt(), 11);

    // The old copy is removed after this many ledgers.
    const QJsonObject switched = reportAt(Seconds(165))[u"next"].toObject();
    QCOMPARE(switched[u"ledgers_needed"].toInt(), 8);
    QCOMPARE(switched[u"ledgers"].toInt(), 0);
    QCOMPARE(switched[u"operation"].toString(), QStringLiteral("round"));
}

void TestSimCourse::waitsToRetry()
{
    const auto waits = walk<qint64>(Seconds(600), [](Seconds elapsed) {
        return reportAt(elapsed)[u"next_attempt_seconds"].toInteger(0);
    });
    QCOMPARE(waits.size(), std::size_t{32}); // none, then 30 down to 1, then none
    QCOMPARE(waits[1], 30);
    QCOMPARE(waits[30], 1);
}

void TestSimCourse::reportsWhyItIsBlocked()
{
    const QJsonObject report = MaintenanceCourse::report(
        MaintenanceCourse(QStringLiteral("blocked")).at(Seconds(1), std::nullopt), growth,
        Seconds(4));
    QVERIFY(!report[u"blocked"].toString().isEmpty());
}

void TestSimCourse::grows()
{
    // Between the first tidy-up and the first trim.
    const auto grown = walk<double>(Seconds(50), [](Seconds elapsed) {
        return reportAt(elapsed + Seconds(207))[u"next"][u"grown_by_bytes"].toDouble();
    });
    QCOMPARE(grown.front(), 0.0);
    QVERIFY(grown.size() > 100);
    QVERIFY(std::is_sorted(grown.begin(), grown.end()));
    QVERIFY(grown.back() < growth);
    QCOMPARE(reportAt(Seconds(207))[u"next"][u"growth_bytes"].toInteger(), growth);
}

void TestSimCourse::pinsAStage_data()
{
    QTest::addColumn<QString>("stage");
    QTest::addColumn<QString>("phase");
    const auto row = [](const char *stage, const char *phase) {
        QTest::newRow(stage) << QString::fromLatin1(stage) << QString::fromLatin1(phase);
    };
    row("starting", "starting");
    row("waiting", "idle");
    row("countdown", "idle");
    row("building", "building");
    row("switched", "switched");
    row("retiring", "retiring");
    row("idle", "idle");
    row("trimming", "building");
    row("failing", "building");
    row("failed", "idle");
    row("blocked", "blocked");
}

void TestSimCourse::pinsAStage()
{
    QFETCH(QString, stage);
    QFETCH(QString, phase);
    QVERIFY(MaintenanceCourse::knows(stage));
    const MaintenanceCourse course(stage);
    for (Seconds elapsed(0); elapsed < Seconds(200); elapsed += step) {
        const MaintenanceMoment moment = course.at(elapsed, std::nullopt);
        const QJsonObject report = MaintenanceCourse::report(moment, growth, Seconds(4));
        QCOMPARE(report[u"phase"].toString(), phase);
        QVERIFY(report[u"phase_seconds"].toDouble() <= elapsed.count());
    }
}

TIDEWICK_TEST_MAIN(TestSimCourse)
#include "tst_simcourse.moc"
