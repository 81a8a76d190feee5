// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/LedgerSchedule.h"
#include "simnode/LedgerSource.h"
#include "simnode/Reply.h"

#include <QJsonObject>

#include <optional>

namespace tidewick::sim {

/// The range of ledgers that a node has, including both ends.
struct LedgerRange
{
    quint32 first;
    quint32 last;

    /// "2-12", as in "complete_ledgers".
    QString text() const;
};

/// The two formats of transactions and ledgers. A client chooses one by "api_version".
enum class ApiForm { Classic, Newer };

/// The format that a request asks for, by default the classic one.
ApiForm apiFormOf(const QJsonObject &request);

/// All messages about ledgers, modelled on the recorded ones.
class LedgerMessages
{
public:
    LedgerMessages(LedgerSource source, LedgerSchedule schedule);

    const LedgerSchedule &schedule() const { return m_schedule; }
    Ledger ledger(quint32 index) const { return m_source.ledger(index); }

    /// The result of a subscription to the ledgers.
    QJsonObject subscribed(LedgerRange validated) const;

    /// The stream's message about a closed ledger.
    QJsonObject closed(const Ledger &ledger, LedgerRange validated) const;

    /// The stream's message about one of the ledger's transactions.
    QJsonObject transaction(const Ledger &ledger, std::size_t position, ApiForm form) const;

    /// Answers the command "ledger". The reply is an error until a ledger has been validated.
    Reply answer(const QJsonObject &request, std::optional<LedgerRange> validated) const;

private:
    QJsonObject describe(quint32 index, const QJsonObject &request) const;

    LedgerSource m_source;
    LedgerSchedule m_schedule;
};

} // namespace tidewick::sim
