// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeRPC.h"

#include <QJsonObject>

#include <chrono>
#include <optional>

namespace tidewick {

/// The outcome of a single JSON-RPC call; empty while the call is pending.
class RpcCall
{
public:
    /// Longer than any call may take.
    static constexpr std::chrono::milliseconds patience{9'000};

    RpcCall(NodeRPC &rpc, const QString &method) { run(rpc, method); }

    bool finished() const { return m_finished; }
    const std::optional<QJsonObject> &result() const { return m_result; }
    std::chrono::milliseconds elapsed() const { return m_elapsed; }

private:
    QCoro::Task<> run(NodeRPC &rpc, QString method);

    bool m_finished = false;
    std::optional<QJsonObject> m_result;
    std::chrono::milliseconds m_elapsed{0};
};

/// Calls the method on this loopback port, waits for the call to finish, and returns its result.
std::optional<QJsonObject> rpcResult(quint16 port,
                                     const QString &method = QStringLiteral("server_info"));

} // namespace tidewick
