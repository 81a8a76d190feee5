// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/StoreFault.h"

#include "simnode/NodeConfiguration.h"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <csignal>

namespace tidewick::sim {

namespace fs = std::filesystem;

namespace {

struct KnownFault
{
    const char *name;
    StoreFault fault;
    StoreFailure failure;
};

/// The texts are taken from a real node.
constexpr auto faults = std::to_array<KnownFault>({
    {"damaged",
     StoreFault::Damaged,
     {"Terminating thread rpc: std::runtime_error: short read [nudb:3]\n"
      "terminate called after throwing an instance of 'std::runtime_error'",
      {SIGABRT, true}}},
    {"damaged-index",
     StoreFault::DamagedIndex,
     {"state db error: file is not a database", {refusalStatus, false}}},
    {"stock",
     StoreFault::Stock,
     {"Your xrpld.cfg is missing a [node_db] entry or its type is unknown", {SIGABRT, true}}},
});

/// Also false for a folder that cannot be read; opening the store reports that.
bool holdsAnything(const fs::path &folder)
{
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    return !error && entries != fs::directory_iterator();
}

bool applies(StoreFault fault, const NodeConfiguration &configuration)
{
    if (fault == StoreFault::Stock)
        return !configuration.isStock();
    return holdsAnything(configuration.storePath);
}

} // namespace

std::optional<StoreFault> storeFaultNamed(QStringView name)
{
    const auto *known = std::find_if(faults.begin(), faults.end(), [name](const KnownFault &entry) {
        return name == QLatin1String(entry.name);
    });
    return known == faults.end() ? std::nullopt : std::optional(known->fault);
}

std::optional<StoreFailure> storeFailureOf(StoreFault fault, const NodeConfiguration &configuration)
{
    const auto *known =
        std::find_if(faults.begin(), faults.end(),
                     [fault](const KnownFault &entry) { return entry.fault == fault; });
    if (known == faults.end() || !applies(fault, configuration))
        return std::nullopt;
    return known->failure;
}

} // namespace tidewick::sim
