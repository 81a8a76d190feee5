// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <optional>
#include <vector>

/// Messages of a real node, recorded, which the simulated ones are modelled on. They are built into
/// the program.
namespace tidewick::sim::Recordings {

/// One transaction as it was announced to the two kinds of clients.
struct TransactionMessage
{
    /// With the members "transaction" and "hash" in it.
    QJsonObject classic;
    /// With the members "tx_json" and, beside it, "hash".
    QJsonObject newer;
};

/// The recording as it is.
QByteArray text(const QString &file);

/// The member "result" of a recorded answer over HTTP, without its status.
QJsonObject result(const QString &file);

/// The body of a recorded answer over HTTP to this method, byte for byte: of the node that has just
/// started, or of the same one 9 s later. Nothing for a method of which there is none.
std::optional<QByteArray> answer(const QString &method, bool later);

/// All recorded transactions, each once. Read with the first call.
const std::vector<TransactionMessage> &transactions();

/// The first answer of the recorded WebSocket session that tells of a ledger closed in the usual
/// way: the member "result" of it.
QJsonObject ledgerResult();

/// The first message of the recorded session on a closed ledger.
QJsonObject ledgerClosed();

} // namespace tidewick::sim::Recordings
