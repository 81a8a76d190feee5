// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostFaults.h"
#include "faults/host/HostTrial.h"
#include "platform/files/Defaults.h"

#include <set>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

/// Room for a store of several ledgers.
constexpr qint64 diskBytes = 24LL * 1024 * 1024;

/// The result of a node that cannot write its store.
constexpr const char *nodeAborted = "The node exited unexpectedly (signal 6)";

qint64 pagesOf(const fs::path &file)
{
    const auto page = static_cast<std::uintmax_t>(::sysconf(_SC_PAGESIZE));
    return static_cast<qint64>((fs::file_size(file) + page - 1) / page);
}

/// A small disk mounted over the folder that contains the data folders.
class SmallDisk
{
public:
    explicit SmallDisk(FaultRun &run) : m_place(dataHome())
    {
        m_mounted = run.expect(mount(0), "a small disk");
        fs::create_directory(applicationData());
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(m_place.c_str(), MNT_DETACH);
    }

    /// Fills the disk until only this many pages are free.
    void fillUpTo(qint64 pages)
    {
        const UniqueDescriptor file(
            ::open(filler().c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
        const QByteArray page(::sysconf(_SC_PAGESIZE), 'x');
        qint64 written = 0;
        while (::write(file.get(), page.constData(), static_cast<std::size_t>(page.size())) > 0)
            written += page.size();
        if (::ftruncate(file.get(), written - pages * page.size()) != 0)
            throw FileError::fromErrno(filler());
    }

    void limitFiles(int files) { mount(MS_REMOUNT, ",nr_inodes=" + std::to_string(files)); }

    /// Frees space, as a user would.
    void makeRoom()
    {
        std::error_code error;
        fs::remove(filler(), error);
        mount(MS_REMOUNT, ",nr_inodes=0");
    }

private:
    bool mount(unsigned long flags, const std::string &more = {}) const
    {
        const std::string options = "size=" + std::to_string(diskBytes) + more;
        return ::mount("none", m_place.c_str(), "tmpfs", flags, options.c_str()) == 0;
    }

    std::string filler() const { return m_place + "/filler"; }

    std::string m_place;
    bool m_mounted = false;
};

std::set<std::string> namesIn(const fs::path &folder)
{
    std::set<std::string> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename());
    return names;
}

/// Runs the trial on a small disk. Afterwards it frees space on the disk and takes no other action.
std::function<void(FaultRun &)> onSmallDisk(void (*trial)(FaultRun &, SmallDisk &))
{
    return [trial](FaultRun &run) {
        if (!enterPrivateMounts(run))
            return;
        // With the disk guard active, the disk would never fill up.
        const QString guard = QStringLiteral("diskGuardFreeGB");
        Defaults::standard().setInteger(guard, 0);
        {
            SmallDisk disk(run);
            trial(run, disk);
            disk.makeRoom();
            expectComesUp(run, "once there is room");
            run.expect(run.smoke("state=full").status == 0, "--smoke gives 0 once there is room");
        }
        Defaults::standard().remove(guard);
        run.saw("comes up once there is room");
    };
}

void tryGuarded(FaultRun &run)
{
    if (!enterPrivateMounts(run))
        return;
    const SmallDisk disk(run);
    expectRefused(run, "Only 0.0 GB free; the disk guard needs 10 GB.");
    run.expect(!fs::exists(applicationData() / "xrpld.cfg"), "nothing to be written");
}

void tryFullAtConfiguration(FaultRun &run, SmallDisk &disk)
{
    run.expect(runMode(run, {"--render-config", applicationData()}).status == 0,
               "a configuration to begin with");
    const QByteArray before = contentOf(applicationData() / "xrpld.cfg");
    disk.fillUpTo(0);
    expectRefused(run, "xrpld.cfg: No space left on device");
    const Outcome render = runMode(run, {"--render-config", applicationData()});
    run.expect(render.status == 1 && render.error.contains("No space left on device"),
               "--render-config gives 1");
    run.expect(contentOf(applicationData() / "xrpld.cfg") == before, "the configuration kept");
    run.expect(namesIn(applicationData()) == std::set<std::string>{"xrpld.cfg", "validators.txt"},
               "no temporary files to be left");
}

void tryFullAtValidators(FaultRun &run, SmallDisk &disk)
{
    const fs::path elsewhere = fs::path(qgetenv("TMPDIR").toStdString()) / "rendered";
    run.expect(runMode(run, {"--render-config", elsewhere}).status == 0, "a configuration");
    disk.fillUpTo(pagesOf(elsewhere / "xrpld.cfg"));
    // "--smoke" would need space for its own folder.
    expectError(run, run.launch("state=full"), "validators.txt: No space left on device");
    run.expect(namesIn(applicationData()) == std::set<std::string>{"xrpld.cfg"},
               "a configuration and no temporary files");
}

void tryFullAtLog(FaultRun &run, SmallDisk &disk)
{
    // Two folders, the configuration and the validators file.
    disk.limitFiles(4);
    expectError(run, run.launch("state=full"), "xrpld.stdout.log: No space left on device");
}

void tryFullAtTheNode(FaultRun &run, SmallDisk &disk)
{
    run.expect(runMode(run, {"--render-config", applicationData()}).status == 0, "a start");
    disk.fillUpTo(pagesOf(applicationData() / "xrpld.cfg"));
    fs::remove_all(applicationData());
    fs::create_directory(applicationData());
    expectError(run, run.launch("state=full ledger-interval=10"), nodeAborted);
}

void tryFullWhileRunning(FaultRun &run, SmallDisk &disk)
{
    WatchedApplication &application = run.launch("state=full ledger-interval=25");
    run.expect(application.reaches(Phase::Full), "Full");
    disk.fillUpTo(0);
    expectError(run, application, nodeAborted);
}

} // namespace

std::vector<Fault> diskFaults()
{
    constexpr const char *refused =
        "refused, with file and reason; nothing half written; comes up once there is room";
    return {{"disk nearly full", "refused by the disk guard; --smoke gives 1", tryGuarded},
            {"disk full at the configuration",
             "refused, with file and reason; --smoke and --render-config give 1; the previous "
             "configuration kept; comes up once there is room",
             onSmallDisk(tryFullAtConfiguration)},
            {"disk full at the validators", refused, onSmallDisk(tryFullAtValidators)},
            {"disk full at the log", refused, onSmallDisk(tryFullAtLog)},
            {"disk full at the node's store", "Error; comes up once there is room",
             onSmallDisk(tryFullAtTheNode)},
            {"disk full while running", "Error; comes up once there is room",
             onSmallDisk(tryFullWhileRunning)}};
}

} // namespace tidewick
