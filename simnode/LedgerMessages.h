// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/LedgerSchedule.h"
#include "simnode/LedgerSource.h"
#include "simnode/Reply.h"

#include <QJsonObject>

#include <optional>

namespace tidewick::sim {

/// The ledgers a node has, both ends included.
struct LedgerRange
{
    quint32 first;
    quint32 last;

    /// "2-12", as in "complete_ledgers".
    QString text() const;
};

/// The two forms in which transactions and ledgers are told; a client chooses by "api_version".
enum class ApiForm { Classic, Newer };

/// The form that a request asks for; the classic one without a wish.
ApiForm apiFormOf(const QJsonObject &request);

/// Everything that is said of ledgers, in the form of the recorded messages.
class LedgerMessages
{
public:
    LedgerMessages(LedgerSource source, LedgerSchedule schedule);

    const LedgerSchedule &schedule() const { return m_schedule; }
    Ledger ledger(quint32 index) const { return m_source.ledger(index); }

    /// The result of a subscription to the ledgers.
    QJsonObject subscribed(LedgerRange validated) const;

    /// The stream's message on a closed ledger.
    QJsonObject closed(const Ledger &ledger, LedgerRange validated) const;

    /// The stream's message on one of the ledger's transactions.
    QJsonObject transaction(const Ledger &ledger, std::size_t position, ApiForm form) const;

    /// Answers the command "ledger"; there is none to tell of before one was validated.
    Reply answer(const QJsonObject &request, std::optional<LedgerRange> validated) const;

private:
    QJsonObject describe(quint32 index, const QJsonObject &request) const;

    LedgerSource m_source;
    LedgerSchedule m_schedule;
};

} // namespace tidewick::sim
