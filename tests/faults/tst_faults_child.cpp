// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/FaultRun.h"
#include "faults/FaultTable.h"

#include <csignal>

using namespace tidewick;

namespace {

Fault diesAtOnce(const QByteArray &ending, const QByteArray &told)
{
    return {"the node ends at once: " + ending, "Error with " + told, [=](FaultRun &run) {
                WatchedApplication &application = run.launch(ending);
                run.expect(application.reaches(Phase::Error), "Error");
                run.expect(application.lastLine().contains('(' + told + ')'), told);
                run.saw(application.lastLine());
            }};
}

std::vector<Fault> childFaults()
{
    return {diesAtOnce("exit=0", "exit status 0"), diesAtOnce("exit=1", "exit status 1"),
            diesAtOnce("signal=SEGV", "signal 11")};
}

} // namespace

int main(int argc, char *argv[])
{
    return runFaults("child", childFaults(), argc, argv);
}
