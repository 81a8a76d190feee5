// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/RunProgram.h"

#include "support/TestFiles.h"

#include <fcntl.h>

namespace tidewick {

Outcome runProgram(ChildSpec spec)
{
    const TemporaryFolder folder;
    const std::filesystem::path output = folder.path() / "output";
    const std::filesystem::path error = folder.path() / "error";
    const UniqueDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    const UniqueDescriptor outputFile(::open(output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const UniqueDescriptor errorFile(::open(error.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    spec.standardInput = nothing.get();
    spec.standardOutput = outputFile.get();
    spec.standardError = errorFile.get();
    const ChildProcess::Ending ending = ChildProcess::start(spec)->wait();
    return {contentOf(output), contentOf(error), ending.status, ending.signaled};
}

} // namespace tidewick
