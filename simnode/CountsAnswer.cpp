// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ProcessMemory.h"
#include "simnode/Answers.h"
#include "simnode/Recordings.h"

#include <QStringList>

#include <array>

#include <unistd.h>

namespace tidewick::sim {

namespace {

QJsonObject bootstrapObject(const Bootstrap &bootstrap)
{
    return {{QStringLiteral("enabled"), bootstrap.enabled},
            {QStringLiteral("phase"), bootstrap.phase},
            {QStringLiteral("completed_passes"), QString::number(bootstrap.completedPasses)},
            {QStringLiteral("ledgers_behind"), bootstrap.ledgersBehind},
            {QStringLiteral("total_stored_bytes"), bootstrap.storedBytes}};
}

QJsonObject memoryObject(const ProcessMemory &memory)
{
    return {{QStringLiteral("footprint"), QString::number(memory.footprint)},
            {QStringLiteral("peak_footprint"), QString::number(memory.peakFootprint)}};
}

} // namespace

QString uptimeText(std::chrono::seconds uptime)
{
    struct Unit
    {
        const char *name;
        qint64 seconds;
    };
    static constexpr auto units =
        std::to_array<Unit>({{"day", 86400}, {"hour", 3600}, {"minute", 60}, {"second", 1}});

    QStringList parts;
    qint64 rest = uptime.count();
    for (const Unit &unit : units) {
        const qint64 count = rest / unit.seconds;
        rest %= unit.seconds;
        if (count > 0) {
            parts += QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(unit.name),
                                                   QLatin1String(count == 1 ? "" : "s"));
        }
    }
    return parts.join(QStringLiteral(", "));
}

QJsonObject Answers::counts(const NodeTime &time) const
{
    static const QJsonObject recorded = Recordings::result(QStringLiteral("get_counts_later.json"));
    constexpr qint64 bytesPerKB = 1024;
    const Moment moment = m_course.at(time.elapsed);
    const qint64 closed = time.newestLedger - m_ledgers.schedule().firstIndex();

    QJsonObject counts = recorded;
    counts[u"uptime"] = uptimeText(std::chrono::floor<std::chrono::seconds>(time.elapsed));
    counts[u"dbKBTotal"] = time.storeBytes / bytesPerKB;
    counts[u"node_writes"] = QString::number(closed * 1000);
    counts[u"node_written_bytes"] = QString::number(moment.bootstrap.storedBytes);

    if (m_configuration.isStock())
        return counts;
    if (m_scenario.countsBootstrap)
        counts[u"stream_bootstrap"] = bootstrapObject(moment.bootstrap);
    if (m_scenario.countsMaintenance) {
        counts[u"mossgrid_maintenance"] =
            MaintenanceCourse::report(m_maintenance.at(time.elapsed, moment.full),
                                      m_configuration.roundGrowthBytes, m_scenario.ledgerInterval);
    }
    const auto memory = ProcessMemory::of(::getpid());
    if (m_scenario.countsProcess && memory)
        counts[u"process"] = memoryObject(*memory);
    return counts;
}

} // namespace tidewick::sim
