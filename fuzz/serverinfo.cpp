// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ServerInfo.h"

#include "Checks.h"
#include "node/NodeRPC.h"
#include "platform/json/JsonRead.h"

using namespace tidewick;
using namespace std::chrono_literals;
using Fuzzing::require;

namespace {

/// The longest text that is made of numbers only.
constexpr qsizetype longestFigure = 60;

void requireSound(const NodeStatus &status, qsizetype told)
{
    require(status.phase == Phase::Bootstrapping || status.phase == Phase::Connecting
                || status.phase == Phase::Syncing || status.phase == Phase::Full,
            "a node that answers is in one of these phases");
    require(status.ledger.startsWith(u'#') == status.ledgerSeq.has_value(),
            "the ledger is shown if it is known");
    for (const QString &figure : {status.ledger, status.uptime, status.memory})
        require(figure.size() <= longestFigure, "a figure is short");
    require(status.detail.size() <= told + longestFigure,
            "the detail is in proportion to the input");
    Fuzzing::requireShowable(status.detail);
}

NodeStatus readAll(const QByteArrayList &bodies)
{
    NodeStatus status;
    BootstrapProgress progress;
    SuspendingClock::time_point now{1h};
    qsizetype told = 0;
    for (const QByteArray &body : bodies) {
        now += 2s;
        told += body.size();
        const auto result = NodeRPC::resultOf(body);
        if (!result)
            continue;
        if (const auto info = JsonRead::object((*result)[u"info"])) {
            ServerInfo::update(status, *info, progress);
            requireSound(status, told);
            const NodeStatus before = status;
            ServerInfo::update(status, *info, progress);
            require(status == before, "the same report changes nothing");
        } else {
            progress.update(*result, now);
            status.memory = ServerInfo::reportedMemory(*result).value_or(status.memory);
        }
    }
    return status;
}

} // namespace

/// Fuzzes the bodies of answers to server_info and get_counts, one per line, as successive polls
/// receive them.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayList bodies = Fuzzing::bytesOf(data, size).split('\n');
    require(readAll(bodies) == readAll(bodies), "the same each time");
    return 0;
}
