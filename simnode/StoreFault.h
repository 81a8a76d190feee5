// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Ending.h"

#include <QStringView>

#include <optional>

namespace tidewick::sim {

struct NodeConfiguration;

/// What is wrong with the node's store.
enum class StoreFault : char {
    None,
    /// A file of the ledger store is cut off.
    Damaged,
    /// A database beside the ledgers holds garbage.
    DamagedIndex,
    /// The node knows the stores of a stock node only.
    Stock,
};

/// The fault of this name in a scenario, such as "damaged-index".
std::optional<StoreFault> storeFaultNamed(QStringView name);

/// How a node ends that cannot use its store.
struct StoreFailure
{
    /// What it prints to standard error, without the last line feed.
    const char *text;
    Ending ending;
};

/// The failure that the fault leads to with this configuration; nothing if the node comes up. A
/// damaged store fails only as long as there is something in its folder.
std::optional<StoreFailure> storeFailureOf(StoreFault fault,
                                           const NodeConfiguration &configuration);

} // namespace tidewick::sim
