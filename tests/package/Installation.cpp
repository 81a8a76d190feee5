// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "package/Installation.h"

#include "package/Tool.h"

namespace tidewick {

namespace fs = std::filesystem;

Installation::Installation(const std::string &name) : m_prefix(m_folder.path() / name)
{
    const Outcome outcome =
        runTool({TIDEWICK_CMAKE, "--install", TIDEWICK_BUILD, "--prefix", m_prefix.string()});
    if (outcome.signaled || outcome.status != 0)
        qFatal("cmake --install failed: %s%s", outcome.output.constData(),
               outcome.error.constData());
}

void Installation::useSimulatedNode() const
{
    const fs::path node = m_prefix / "lib/tidewick/Tidewick.app/Contents/MacOS/xrpld";
    fs::remove(node);
    fs::create_symlink(TIDEWICK_SIMNODE_PATH, node);
}

} // namespace tidewick
