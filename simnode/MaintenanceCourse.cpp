// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/MaintenanceCourse.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cmath>

namespace tidewick::sim {

namespace {

constexpr Seconds countdownLength(45);
constexpr Seconds majorLength(90);
constexpr Seconds roundLength(45);
constexpr const char *success = "success";

constexpr auto stages = std::to_array<MaintenanceStage>({
    {"starting", "starting", "major", Seconds(4), nullptr},
    // Until the node is in sync.
    {"waiting", "idle", "major", Seconds(26), nullptr},
    // The first tidy-up.
    {"countdown", "idle", "major", countdownLength, nullptr},
    {"building", "building", "major", majorLength, nullptr},
    {"switched", "switched", "round", Seconds(32), success},
    {"retiring", "retiring", "round", Seconds(10), success},
    // From here on, the stages repeat.
    {"idle", "idle", "round", Seconds(50), success},
    {"trimming", "building", "round", roundLength, success},
    {"switched", "switched", "round", Seconds(32), success},
    {"retiring", "retiring", "round", Seconds(10), success},
    {"idle", "idle", "round", Seconds(40), success},
    {"failing", "building", "round", Seconds(20), success},
    {"failed", "idle", "round", Seconds(30), "disk full"},
    {"trimming", "building", "round", roundLength, "disk full"},
    {"switched", "switched", "round", Seconds(32), success},
    {"retiring", "retiring", "round", Seconds(10), success},
    {"idle", "idle", "round", Seconds(20), success},
    {"blocked", "blocked", "round", Seconds(20), success},
});

constexpr int starting = 0;
constexpr int waiting = 1;
constexpr int firstInSync = 2;
constexpr int firstRepeated = 6;
constexpr int repeated = static_cast<int>(stages.size()) - firstRepeated;

struct Step
{
    const char *name;
    /// As a share of the duration of a rebuild.
    double share;
};

constexpr auto steps = std::to_array<Step>({{"mark", 0.15},
                                            {"copy", 0.4},
                                            {"tail", 0.15},
                                            {"drain", 0.1},
                                            {"index", 0.15},
                                            {"swap", 0.05}});

Seconds lengthOf(int first, int end)
{
    Seconds sum(0);
    for (int number = first; number < end; ++number)
        sum += MaintenanceCourse::stage(number).length;
    return sum;
}

bool is(const MaintenanceStage &stage, const char *name)
{
    return QLatin1String(stage.name) == QLatin1String(name);
}

Seconds usualLength(const MaintenanceStage &building)
{
    return QLatin1String(building.operation) == QLatin1String("major") ? majorLength : roundLength;
}

/// The JSON text of the member "progress" once this share of a rebuild is done.
QString progressText(double done)
{
    constexpr int total = 100'000;
    const Step *step = steps.data();
    while (step != &steps.back() && done >= step->share) {
        done -= step->share;
        ++step;
    }
    const double part = std::min(done / step->share, 1.0);
    const QJsonObject object{{QStringLiteral("phase"), QString::fromLatin1(step->name)},
                             {QStringLiteral("done"), static_cast<int>(part * total)},
                             {QStringLiteral("total"), total}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// The growth of the store since the last trim, as a share of the growth that triggers the next
/// one.
double grownShare(const MaintenanceStage &stage, Seconds inStage)
{
    if (is(stage, "idle"))
        return inStage / stage.length;
    return is(stage, "trimming") || is(stage, "failing") || is(stage, "failed") ? 1 : 0;
}

QJsonObject nextOf(const MaintenanceMoment &moment, qint64 growthBytes, Seconds ledgerInterval)
{
    const MaintenanceStage &stage = MaintenanceCourse::stage(moment.number);
    const bool countsLedgers = is(stage, "countdown") || is(stage, "switched");
    const Seconds counted = countsLedgers ? moment.inStage : Seconds(0);
    const Seconds span = countsLedgers ? stage.length : countdownLength;

    QJsonObject next{
        {QStringLiteral("operation"), QString::fromLatin1(stage.operation)},
        {QStringLiteral("full_needed"), static_cast<qint64>(countdownLength.count())},
        {QStringLiteral("full_seconds"),
         is(stage, "countdown") ? std::floor(moment.inStage.count()) : 0},
        {QStringLiteral("ledgers_needed"), std::ceil(span / ledgerInterval)},
        {QStringLiteral("ledgers"), std::floor(counted / ledgerInterval)},
        {QStringLiteral("growth_bytes"), growthBytes},
        {QStringLiteral("grown_by_bytes"),
         static_cast<qint64>(static_cast<double>(growthBytes) * grownShare(stage, moment.inStage))},
    };
    if (moment.number == starting || moment.number == waiting)
        next[u"waiting_for"] = QStringLiteral("full");
    return next;
}

} // namespace

bool MaintenanceStage::isInPhase(const char *which) const
{
    return QLatin1String(phase) == QLatin1String(which);
}

MaintenanceCourse::MaintenanceCourse(const std::optional<QString> &pinnedStage)
{
    if (!pinnedStage)
        return;
    const auto *stage =
        std::find_if(stages.begin(), stages.end(), [&pinnedStage](const MaintenanceStage &known) {
            return *pinnedStage == QLatin1String(known.name);
        });
    m_pinned = static_cast<int>(stage - stages.begin());
}

bool MaintenanceCourse::knows(const QString &name)
{
    return std::any_of(stages.begin(), stages.end(), [&name](const MaintenanceStage &stage) {
        return name == QLatin1String(stage.name);
    });
}

const MaintenanceStage &MaintenanceCourse::stage(int number)
{
    const int place =
        number < firstRepeated ? number : firstRepeated + (number - firstRepeated) % repeated;
    return stages.at(static_cast<std::size_t>(place));
}

MaintenanceMoment MaintenanceCourse::at(Seconds elapsed, std::optional<Seconds> full) const
{
    if (m_pinned)
        return {*m_pinned, Seconds(std::fmod(elapsed.count(), stage(*m_pinned).length.count()))};
    if (elapsed < stages[starting].length)
        return {starting, elapsed};
    if (!full)
        return {waiting, elapsed - stages[starting].length};

    static const Seconds once = lengthOf(firstInSync, firstRepeated);
    static const Seconds round = lengthOf(firstRepeated, firstRepeated + repeated);
    MaintenanceMoment moment{firstInSync, *full};
    if (moment.inStage >= once) {
        const double rounds = std::floor((moment.inStage - once) / round);
        moment = {firstRepeated + static_cast<int>(rounds) * repeated,
                  moment.inStage - once - rounds * round};
    }
    while (moment.inStage >= stage(moment.number).length) {
        moment.inStage -= stage(moment.number).length;
        ++moment.number;
    }
    return moment;
}

QJsonObject MaintenanceCourse::report(const MaintenanceMoment &moment, qint64 growthBytes,
                                      Seconds ledgerInterval)
{
    const MaintenanceStage &now = stage(moment.number);
    QJsonObject report{
        {QStringLiteral("phase"), QString::fromLatin1(now.phase)},
        {QStringLiteral("phase_seconds"), std::floor(moment.inStage.count())},
        {QStringLiteral("next"), nextOf(moment, growthBytes, ledgerInterval)},
    };
    if (now.outcome != nullptr)
        report[u"last_outcome"] = QString::fromLatin1(now.outcome);
    if (now.isInPhase("building")) {
        report[u"operation"] = QString::fromLatin1(now.operation);
        report[u"progress"] = progressText(moment.inStage / usualLength(now));
    } else if (is(now, "failed")) {
        report[u"next_attempt_seconds"] = std::ceil((now.length - moment.inStage).count());
    } else if (is(now, "blocked")) {
        report[u"blocked"] = QStringLiteral("the volume is nearly full");
    }
    return report;
}

} // namespace tidewick::sim
