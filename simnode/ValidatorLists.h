// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Seconds.h"

#include <QJsonObject>
#include <QStringView>

#include <optional>

namespace tidewick::sim {

/// The state of the node's two lists of validators.
enum class ListState : char {
    /// Both are valid for a long time to come.
    Active,
    /// The second one was never fetched.
    None,
    /// The second one has expired and is not fetched again.
    Expired,
    /// Both are valid, but only for a few more days.
    Expiring,
};

/// The state that a scenario calls by this name, such as "expiring".
std::optional<ListState> listStateNamed(QStringView name);

/// Whether the node trusts enough validators to validate anything, which takes both lists.
bool permitsValidation(ListState state);

/// A node's answers about the lists of validators that it trusts. A value.
class ValidatorLists
{
public:
    /// Expiry dates are relative to `begin`, so that they do not move while the node runs.
    ValidatorLists(ListState state, WallTime begin) : m_state(state), m_begin(begin) {}

    /// The members "validation_quorum" and "validator_list" of server_info.
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
