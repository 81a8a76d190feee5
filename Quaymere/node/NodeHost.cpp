// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeHost.h"

#include "node/Probe.h"
#include "platform/NodePorts.h"

#include <cstdlib>

namespace tidewick {

namespace {

constexpr qint32 peerProbeMs = 300;

} // namespace

NodeHost::NodeHost(const DeathWatch *deathWatch)
    : freeGB(Probe::freeGB), portInUse(Probe::portInUse),
      hasCompany([] { return Probe::portInUse(NodePorts::peers, peerProbeMs); }),
      spawn([deathWatch](ChildSpec spec) {
          spec.deathWatch = deathWatch;
          return ChildProcess::start(spec);
      }),
      sandboxed(std::getenv("APP_SANDBOX_CONTAINER_ID") != nullptr)
{
}

} // namespace tidewick
