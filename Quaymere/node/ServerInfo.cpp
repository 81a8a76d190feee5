// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ServerInfo.h"

#include "node/Format.h"
#include "platform/json/JsonRead.h"
#include "platform/text/ByteCount.h"
#include "platform/text/NumberText.h"

namespace tidewick::ServerInfo {

namespace {

void updateFigures(NodeStatus &status, const QJsonObject &info)
{
    status.peers = JsonRead::integer(info[u"peers"]);
    if (const auto uptime = JsonRead::integer(info[u"uptime"]))
        status.uptime = Format::duration(std::chrono::seconds(*uptime));

    const QJsonObject validated = info[u"validated_ledger"].toObject();
    if (const auto seq = JsonRead::integer(validated[u"seq"])) {
        status.ledgerSeq = seq;
        status.ledger = QStringLiteral("#%1").arg(*seq);
        if (const auto age = JsonRead::integer(validated[u"age"]))
            status.ledger += QStringLiteral(" (%1s ago)").arg(*age);
    }
}

} // namespace

void update(NodeStatus &status, const QJsonObject &info, const BootstrapProgress &bootstrap)
{
    updateFigures(status, info);

    const QString state =
        JsonRead::string(info[u"server_state"]).value_or(QStringLiteral("unknown"));
    if (bootstrap.covers(state)) {
        status.phase = Phase::Bootstrapping;
        status.detail = bootstrap.detail();
    } else if (state == u"full" || state == u"proposing" || state == u"validating") {
        status.phase = Phase::Full;
        status.detail = QStringLiteral("Following mainnet");
    } else if (state == u"syncing" || state == u"tracking") {
        status.phase = Phase::Syncing;
        status.detail = QStringLiteral("Catching up (%1)").arg(state);
    } else {
        status.phase = Phase::Connecting;
        status.detail = JsonRead::boolean(info[u"amendment_blocked"]) == true
                            ? QStringLiteral("Amendment blocked")
                            : QStringLiteral("%1 peers (%2)")
                                  .arg(QString::number(status.peers.value_or(0)), state);
    }
}

std::optional<QString> reportedMemory(const QJsonObject &counts)
{
    const QJsonObject process = counts[u"process"].toObject();
    const auto footprint = NumberText::integer(process[u"footprint"].toString());
    const auto peak = NumberText::integer(process[u"peak_footprint"].toString());
    if (!footprint || !peak)
        return std::nullopt;
    return memoryText(*footprint, *peak);
}

QString memoryText(qint64 footprint, qint64 peakFootprint)
{
    return QStringLiteral("%1 · peak %2")
        .arg(ByteCount::text(footprint), ByteCount::text(peakFootprint));
}

} // namespace tidewick::ServerInfo
