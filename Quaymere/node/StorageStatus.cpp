// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/StorageStatus.h"

#include "node/Format.h"
#include "platform/json/JsonRead.h"
#include "platform/text/NumberText.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace tidewick {

namespace {

QString textOf(const QJsonObject &object, QStringView key, const QString &fallback = {})
{
    return JsonRead::string(object[key]).value_or(fallback);
}

double numberOf(const QJsonObject &object, QStringView key)
{
    return StorageStatus::number(object[key]).value_or(0);
}

/// In UTF-16 units. Names of operations are words; anything longer does not belong in the settings.
constexpr qsizetype longestOperation = 64;

/// The label of a rebuild step; a step without a label is shown by its own name.
QString stepLabel(const QString &name)
{
    static const QHash<QString, QString> labels{
        {QStringLiteral("mark"), QStringLiteral("finding live data")},
        {QStringLiteral("copy"), QStringLiteral("copying")},
        {QStringLiteral("tail"), QStringLiteral("copying new data")},
        {QStringLiteral("drain"), QStringLiteral("writing the index")},
        {QStringLiteral("index"), QStringLiteral("indexing")},
        {QStringLiteral("swap"), QStringLiteral("switching")},
    };
    return labels.value(name, name);
}

/// GB of 2^30 bytes.
QString size(double bytes)
{
    constexpr double bytesPerGB = 1073741824;
    return NumberText::fixed(bytes / bytesPerGB, 1) + QLatin1String(" GB");
}

QString durationOf(double seconds)
{
    return Format::duration(std::chrono::seconds(NumberText::truncated(seconds)));
}

/// The remaining time: "about 10m", or "under a minute".
QString estimate(double seconds)
{
    const QString span = StorageStatus::span(seconds);
    return seconds >= 60 ? QLatin1String("about ") + span : span;
}

QString learnedKey(const QString &operation)
{
    return QLatin1String("lastBuildSeconds.") + operation;
}

QString describeSwitched(const QJsonObject &next)
{
    const auto ledgers = StorageStatus::number(next[u"ledgers"]);
    const auto needed = StorageStatus::number(next[u"ledgers_needed"]);
    if (!ledgers || !needed || !(*needed > *ledgers))
        return QStringLiteral("Storage: tidied up; the old copy goes shortly");
    return QStringLiteral("Storage: tidied up; the old copy goes in %1 ledgers")
        .arg(NumberText::truncated(*needed - *ledgers));
}

QString describeFirstTidyUp(const QJsonObject &next)
{
    // A fixed length of one ledger interval; the real one varies between 3 and 5 seconds.
    constexpr double secondsPerLedger = 3.9;
    const double ledgersToGo = numberOf(next, u"ledgers_needed") - numberOf(next, u"ledgers");
    const double secondsToGo = numberOf(next, u"full_needed") - numberOf(next, u"full_seconds");
    // fmax ignores NaN, such as infinity minus infinity.
    const double eta = std::fmax(ledgersToGo * secondsPerLedger, secondsToGo);
    if (!(eta >= 30))
        return QStringLiteral("Storage: first tidy-up starting");
    return QLatin1String("Storage: first tidy-up in ") + estimate(eta);
}

} // namespace

StorageStatus::StorageStatus(Defaults defaults) : m_defaults(std::move(defaults)) {}

std::optional<double> StorageStatus::number(const QJsonValue &value)
{
    return value.isString() ? NumberText::real(value.toString()) : JsonRead::number(value);
}

std::optional<QString> StorageStatus::step(const std::optional<QString> &progress)
{
    if (!progress)
        return std::nullopt;
    const auto object = JsonRead::parseObject(progress->toUtf8());
    if (!object)
        return std::nullopt;
    const auto name = JsonRead::string((*object)[u"phase"]);
    if (!name)
        return std::nullopt;
    const QString label = stepLabel(*name);
    const auto done = number((*object)[u"done"]);
    const auto total = number((*object)[u"total"]);
    if (!done || !total || !(*total > 0))
        return label;
    const double percentage = *done * 100 / *total;
    return std::isfinite(percentage) ? label + u' ' + NumberText::fixed(percentage, 0) + u'%'
                                     : label;
}

QString StorageStatus::span(double seconds)
{
    return seconds >= 60 ? durationOf(seconds) : QStringLiteral("under a minute");
}

QString StorageStatus::describe(const QJsonObject &object, WallClock::time_point now)
{
    const QString phase = textOf(object, u"phase", QStringLiteral("unknown"));
    if (phase == u"building")
        return describeBuilding(object);

    settleBuilding(object);
    const QJsonObject next = object[u"next"].toObject();
    if (phase == u"switched")
        return describeSwitched(next);
    if (phase == u"retiring")
        return QStringLiteral("Storage: removing the old copy");
    if (phase == u"blocked")
        return QLatin1String("Storage needs attention: ")
               + textOf(object, u"blocked", QStringLiteral("see the log"));
    if (phase == u"starting")
        return QStringLiteral("Storage: starting");
    return describeIdle(object, next, now);
}

QString StorageStatus::describeBuilding(const QJsonObject &object)
{
    const QString operation = textOf(object, u"operation");
    const double seconds = numberOf(object, u"phase_seconds");
    m_building = Building{operation, seconds};

    QString line = operation == u"major" ? QStringLiteral("Storage: rewriting the store")
                                         : QStringLiteral("Storage: trimming the store");
    const QLatin1String soFar(" so far");
    if (const auto text = step(JsonRead::string(object[u"progress"])))
        line += QStringLiteral(" · ") + *text;
    line += QStringLiteral(" · ") + span(seconds) + soFar;
    const double last = m_defaults.real(learnedKey(operation));
    if (last > seconds)
        line += QLatin1String(", ") + estimate(last - seconds) + QLatin1String(" left");
    return line;
}

/// Remembers how long a rebuild took if it has been observed, is over and has succeeded.
void StorageStatus::settleBuilding(const QJsonObject &object)
{
    if (m_building && m_building->operation.size() <= longestOperation
        && textOf(object, u"last_outcome") == u"success")
        m_defaults.setReal(learnedKey(m_building->operation), m_building->seconds);
    m_building.reset();
}

QString StorageStatus::describeIdle(const QJsonObject &object, const QJsonObject &next,
                                    WallClock::time_point now)
{
    const auto outcome = JsonRead::string(object[u"last_outcome"]);
    const auto retry = JsonRead::integer(object[u"next_attempt_seconds"]);
    if (outcome && *outcome != u"success" && retry)
        return QStringLiteral("Storage: %1; retrying in %2")
            .arg(*outcome, Format::duration(std::chrono::seconds(*retry)));
    if (textOf(next, u"waiting_for") == u"full")
        return QStringLiteral("Storage: tidies up once the node is in sync");

    const QString operation = textOf(next, u"operation");
    if (operation == u"major")
        return describeFirstTidyUp(next);
    if (operation == u"round")
        return describeNextTrim(next, now);
    return QStringLiteral("Storage: up to date");
}

QString StorageStatus::describeNextTrim(const QJsonObject &next, WallClock::time_point now)
{
    // In seconds. A rate over a shorter time says little.
    constexpr double sampledEnough = 600;
    const auto grown = number(next[u"grown_by_bytes"]);
    const auto growth = number(next[u"growth_bytes"]);
    if (!grown || !growth)
        return QStringLiteral("Storage: up to date");

    if (!m_growthFrom || *grown < m_growthFrom->bytes)
        m_growthFrom = GrowthSample{*grown, now};

    QString line =
        QStringLiteral("Storage: next trim after %1 (%2 so far").arg(size(*growth), size(*grown));
    const double elapsed = std::chrono::duration<double>(now - m_growthFrom->at).count();
    if (elapsed >= sampledEnough && *grown > m_growthFrom->bytes) {
        const double rate = (*grown - m_growthFrom->bytes) / elapsed;
        const double remaining = std::max(*growth - *grown, 0.0);
        line += QLatin1String(", ") + estimate(remaining / rate);
    }
    return line + u')';
}

} // namespace tidewick
