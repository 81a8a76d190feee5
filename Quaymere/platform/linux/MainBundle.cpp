// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Bundle.h"

#include <sys/auxv.h>

namespace tidewick {

namespace fs = std::filesystem;

Bundle Bundle::main()
{
    // Where /proc is not mounted the kernel still tells the name the program was started by. An
    // executable replaced while it runs reads as "<path> (deleted)", which leaves its folder right.
    std::error_code error;
    fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (error)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands it over as a number
        executable = fs::canonical(reinterpret_cast<const char *>(::getauxval(AT_EXECFN)), error);
    return ofExecutable(executable);
}

} // namespace tidewick
