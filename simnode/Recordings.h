// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <optional>
#include <vector>

/// Messages recorded from a real node, on which the simulated ones are modelled. They are built
/// into the program.
namespace tidewick::sim::Recordings {

/// One transaction as announced to the two kinds of clients.
struct TransactionMessage
{
    /// With the member "transaction", which contains "hash".
    QJsonObject classic;
    /// With the members "tx_json" and "hash" side by side.
    QJsonObject newer;
};

/// The unchanged content of a recording.
QByteArray text(const QString &file);

/// The member "result" of an answer recorded over HTTP, without its status.
QJsonObject result(const QString &file);

/// The body of the answer recorded over HTTP for this method, byte for byte: from a node that has
/// just started or, if `later`, from the same node after 9 s. Nothing if there is no recording.
std::optional<QByteArray> answer(const QString &method, bool later);

/// All recorded transactions, without duplicates. Read on the first call.
const std::vector<TransactionMessage> &transactions();

/// The member "result" of the first answer in the recorded WebSocket session that describes an
/// ordinary closed ledger.
QJsonObject ledgerResult();

/// The first message about a closed ledger in the recorded session.
QJsonObject ledgerClosed();

} // namespace tidewick::sim::Recordings
