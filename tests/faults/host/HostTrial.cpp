// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/HostTrial.h"

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>

namespace tidewick {

namespace fs = std::filesystem;

void obeyFileModes()
{
    // If the calls fail, the process does not have these capabilities anyway.
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

bool enterPrivateMounts(FaultRun &run)
{
    if (::unshare(CLONE_NEWNS) == 0
        && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0)
        return true;
    run.skip("the kernel lets this user have no mounts of their own");
    return false;
}

Outcome runMode(const FaultRun &run, std::vector<std::string> arguments)
{
    ChildSpec spec;
    spec.executable = run.bundle().application();
    spec.arguments = std::move(arguments);
    return runProgram(std::move(spec));
}

void expectError(FaultRun &run, WatchedApplication &application, const QByteArray &words)
{
    run.expect(application.reaches(Phase::Error), "Error");
    run.expect(application.lastLine().contains(words), "the application to say: " + words);
    run.expect(!application.node(), "no node");
    run.saw(application.lastLine());
    run.expect(application.endsWell(), "the application ends with 0");
}

void expectRefused(FaultRun &run, const QByteArray &words)
{
    expectError(run, run.launch("state=full"), words);
    const Outcome smoke = run.smoke("state=full");
    run.expect(!smoke.signaled && smoke.status == 1, "smoke to end with 1");
    run.expect(smoke.output.contains("smoke: FAIL no server_info: ")
                   && smoke.output.contains(words),
               "smoke to say: " + words + ", unlike: " + smoke.output);
    run.saw("--smoke: 1");
}

void expectComesUp(FaultRun &run, const QByteArray &when)
{
    WatchedApplication &application = run.launch("state=full");
    run.expect(application.reaches(Phase::Full),
               "the application to come up " + when + ", unlike: " + application.lastLine());
    run.expect(application.endsWell(), "it ends with 0 " + when);
}

fs::path dataHome()
{
    return applicationData().parent_path();
}

KeptData::KeptData()
{
    fs::copy(applicationData(), m_copy.path() / "data", fs::copy_options::recursive);
}

KeptData::~KeptData()
{
    std::error_code error;
    fs::remove_all(applicationData(), error);
    fs::copy(m_copy.path() / "data", applicationData(), fs::copy_options::recursive, error);
}

} // namespace tidewick
