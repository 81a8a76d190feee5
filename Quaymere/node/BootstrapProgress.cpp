// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/BootstrapProgress.h"

#include "node/StorageStatus.h"
#include "platform/json/JsonRead.h"
#include "platform/text/ByteCount.h"
#include "platform/text/NumberText.h"

#include <QStringList>

namespace tidewick {

void BootstrapProgress::update(const QJsonObject &counts, SuspendingClock::time_point now)
{
    m_last = JsonRead::object(counts[u"stream_bootstrap"]);
    sampleRate(now);
}

void BootstrapProgress::sampleRate(SuspendingClock::time_point now)
{
    if (!m_last)
        return;
    const auto bytes = StorageStatus::number((*m_last)[u"total_stored_bytes"]);
    if (!bytes)
        return;
    if (m_sample && m_sample->bytes <= *bytes) {
        const auto elapsed = std::chrono::floor<std::chrono::seconds>(now - m_sample->at);
        if (elapsed >= std::chrono::seconds(1)) {
            const double perSecond =
                (*bytes - m_sample->bytes) / static_cast<double>(elapsed.count());
            m_rate = ByteCount::text(NumberText::truncated(perSecond)) + QLatin1String("/s");
        }
    }
    m_sample = Sample{*bytes, now};
}

bool BootstrapProgress::covers(const QString &serverState) const
{
    static const QStringList states{QStringLiteral("waiting_quorum"), QStringLiteral("acquiring"),
                                    QStringLiteral("catching_up")};
    return m_last && JsonRead::boolean((*m_last)[u"enabled"]) == true
           && states.contains(serverState);
}

QString BootstrapProgress::detail() const
{
    const QJsonObject last = m_last.value_or(QJsonObject());
    QStringList parts{last[u"phase"].toString().replace(u'_', u' ')};
    if (m_rate)
        parts += *m_rate;
    const auto passes = JsonRead::string(last[u"completed_passes"]);
    if (passes && passes != QLatin1String("0"))
        parts += *passes + QLatin1String(" passes");
    if (const auto behind = JsonRead::integer(last[u"ledgers_behind"]))
        parts += QString::number(*behind) + QLatin1String(" ledgers behind");
    return parts.join(QStringLiteral(" · "));
}

} // namespace tidewick
