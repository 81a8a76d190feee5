// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QJsonObject>
#include <QStringView>

#include <optional>

namespace tidewick::sim {

/// Which of the two lists of validators the node has.
enum class ListState : char {
    /// Both, for a long time to come.
    Active,
    /// The second one was never fetched.
    None,
    /// The second one has expired and is not fetched again.
    Expired,
    /// Both, but for a few days only.
    Expiring,
};

/// The state of this name in a scenario, such as "expiring".
std::optional<ListState> listStateNamed(QStringView name);

/// Whether the node trusts enough validators to validate anything: it takes both lists.
bool permitsValidation(ListState state);

/// What a node tells of the lists of validators that it trusts. A value.
class ValidatorLists
{
public:
    /// The dates on which lists expire are reckoned from `begin`, so that they do not move while
    /// the node runs.
    ValidatorLists(ListState state, WallTime begin) : m_state(state), m_begin(begin) {}

    /// Members of server_info: "validation_quorum" and "validator_list".
    qint64 quorum() const;
    QJsonObject summary() const;

    /// The results of "validator_list_sites" and of "validators".
    QJsonObject sites(WallTime now) const;
    QJsonObject validators() const;

private:
    QJsonObject publisher(const QJsonObject &recorded, qsizetype number) const;
    bool lacks(qsizetype number) const;

    ListState m_state;
    WallTime m_begin;
};

} // namespace tidewick::sim
