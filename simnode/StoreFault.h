// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "simnode/Ending.h"

#include <QStringView>

#include <optional>

namespace tidewick::sim {

struct NodeConfiguration;

/// A fault of the node's store.
enum class StoreFault : char {
    None,
    /// A file of the ledger store is truncated.
    Damaged,
    /// A database beside the ledgers holds garbage.
    DamagedIndex,
    /// The node supports only the stores of a stock node.
    Stock,
};

/// The fault that a scenario calls by this name, such as "damaged-index".
std::optional<StoreFault> storeFaultNamed(QStringView name);

/// The end of a node that cannot use its store.
struct StoreFailure
{
    /// Printed to standard error, followed by a line feed.
    const char *text;
    Ending ending;
};

/// The failure that the fault causes with this configuration, or nothing if the node starts. A
/// damaged store fails only while its folder is not empty.
std::optional<StoreFailure> storeFailureOf(StoreFault fault,
                                           const NodeConfiguration &configuration);

} // namespace tidewick::sim
