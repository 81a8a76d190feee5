// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"

#include <sys/mount.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

fs::path configuration()
{
    return applicationData() / "xrpld.cfg";
}

/// Nothing can be written to the data folders, which contain an earlier configuration.
void tryUnwritable(FaultRun &run, const std::function<bool()> &begin,
                   const std::function<void()> &end, const QByteArray &reason)
{
    run.expect(runMode(run, {"--render-config", applicationData()}).status == 0,
               "a configuration to begin with");
    const QByteArray before = contentOf(configuration());
    if (!begin())
        return;
    expectRefused(run, reason);
    const Outcome render = runMode(run, {"--render-config", applicationData()});
    run.expect(render.status == 1 && render.output.isEmpty()
                   && render.error.startsWith("render failed: ") && render.error.contains(reason),
               "--render-config to give 1 and the reason, unlike: " + render.error);
    run.expect(contentOf(configuration()) == before, "the configuration to be unchanged");
    end();
}

void tryReadOnlyModes(FaultRun &run)
{
    const auto allow = [](const fs::path &folder, bool writing) {
        constexpr auto write = fs::perms::owner_write;
        fs::permissions(folder, write, writing ? fs::perm_options::add : fs::perm_options::remove);
    };
    obeyFileModes();
    const auto begin = [&] {
        allow(applicationData(), false);
        allow(dataHome(), false);
        return true;
    };
    const auto end = [&] {
        allow(dataHome(), true);
        allow(applicationData(), true);
    };
    tryUnwritable(run, begin, end, "Permission denied");
}

void tryReadOnlyVolume(FaultRun &run)
{
    const std::string home = dataHome();
    const auto begin = [&] {
        if (!enterPrivateMounts(run))
            return false;
        return run.expect(::mount(home.c_str(), home.c_str(), nullptr, MS_BIND, nullptr) == 0
                              && ::mount(nullptr, home.c_str(), nullptr,
                                         MS_REMOUNT | MS_BIND | MS_RDONLY | MS_NOSUID | MS_NODEV,
                                         nullptr)
                                     == 0,
                          "a read-only volume");
    };
    const auto end = [&] { ::umount2(home.c_str(), MNT_DETACH); };
    tryUnwritable(run, begin, end, "Read-only file system");
}

/// A node that writes more often than usual and does not rename its files.
const QByteArray quietNode = "state=full ledger-interval=50";

/// The log of a node whose log file was removed while it was running.
QByteArray removedLog(pid_t node)
{
    const fs::path descriptors = "/proc/" + std::to_string(node) + "/fd";
    for (const fs::directory_entry &entry : fs::directory_iterator(descriptors)) {
        std::error_code error;
        if (fs::read_symlink(entry, error).string().ends_with("debug.log (deleted)"))
            return contentOf(entry.path());
    }
    return {};
}

/// The node keeps its open files, and the application keeps polling it.
void expectGoesOn(FaultRun &run, WatchedApplication &application)
{
    const std::optional<pid_t> node = application.node();
    if (!run.expect(node.has_value(), "a node"))
        return;
    const auto polls = [&] { return removedLog(*node).count("server_info"); };
    const qsizetype before = polls();
    run.expect(waitUntil([&] { return polls() > before + 1; }), "polling continues");
    run.expect(application.phase() == Phase::Full, "Full");
    run.saw("continues: " + application.lastLine());
    run.expect(application.endsWell(), "the application ends with 0");
}

void tryRemoved(FaultRun &run)
{
    const KeptData kept;
    WatchedApplication &application = run.launch(quietNode);
    run.expect(application.reaches(Phase::Full), "Full");
    fs::remove_all(applicationData());
    expectGoesOn(run, application);
    expectComesUp(run, "without the folder");
    run.expect(runMode(run, {"--render-config", applicationData()}).status == 0, "a new folder");
    run.saw("the next start recreates it");
}

void tryReplaced(FaultRun &run)
{
    const KeptData kept;
    WatchedApplication &application = run.launch(quietNode);
    run.expect(application.reaches(Phase::Full), "Full");
    fs::remove_all(applicationData());
    writeFile(applicationData(), "not a folder");
    expectGoesOn(run, application);

    expectError(run, run.launch("state=full"), "Not a directory");
    run.expect(run.smoke("state=full").status == 0, "--smoke passes, as it uses a separate folder");
    const Outcome render = runMode(run, {"--render-config", applicationData()});
    run.expect(render.status == 1 && render.error.contains("Not a directory"),
               "--render-config gives 1");
    run.expect(contentOf(applicationData()) == "not a folder", "the file to be left alone");
}

} // namespace

std::vector<Fault> folderFaults()
{
    constexpr const char *refused =
        "refused, with path and reason; --smoke and --render-config give 1; configuration kept";
    return {
        {"data folder read-only by its mode", refused, tryReadOnlyModes},
        {"data folder on a read-only volume", refused, tryReadOnlyVolume},
        {"data folder removed while running", "continues; recreated by the next start", tryRemoved},
        {"data folder replaced by a file while running",
         "continues; the next start is refused, with the reason; the file is left alone",
         tryReplaced}};
}

} // namespace tidewick
