// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/TestBundle.h"

namespace tidewick {

namespace fs = std::filesystem;

TestBundle::TestBundle()
{
    fs::create_directories(path() / "Contents" / "MacOS");
    fs::create_directories(path() / "Contents" / "Resources");
    fs::copy_file(TIDEWICK_QUAYMERE_PATH, application());
    setNode(TIDEWICK_SIMNODE_PATH);
    for (const char *name : {"validators.txt", "node.env"})
        fs::copy_file(fs::path(TIDEWICK_RESOURCES) / name, resource(name));
    setStore("Mossgrid");
    writeFile(resource("build-info"), "xrpld_version=2.3.0\n");
}

fs::path TestBundle::path() const
{
    return m_folder.path() / "Tidewick.app";
}

fs::path TestBundle::application() const
{
    return path() / "Contents" / "MacOS" / "Quaymere";
}

fs::path TestBundle::node() const
{
    return bundle().nodeExecutable();
}

fs::path TestBundle::resource(const char *name) const
{
    return path() / "Contents" / "Resources" / name;
}

void TestBundle::setStore(const std::string &store) const
{
    const fs::path resources = TIDEWICK_RESOURCES;
    QByteArray configuration = contentOf(resources / "xrpld.cfg.in");
    configuration.replace("@NODE_DB@", contentOf(resources / ("node_db." + store + ".in")));
    writeFile(resource("xrpld.cfg.in"), configuration);
}

void TestBundle::setNode(const fs::path &executable) const
{
    fs::remove(node());
    fs::copy_file(executable, node());
}

} // namespace tidewick
