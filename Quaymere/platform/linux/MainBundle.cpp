// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Bundle.h"

#include <sys/auxv.h>

namespace tidewick {

namespace fs = std::filesystem;

Bundle Bundle::main()
{
    // If /proc is not mounted, the kernel still provides the name the program was started by. If
    // the executable was replaced while running, the link reads "<path> (deleted)", and its folder
    // is still right.
    std::error_code error;
    fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (error)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands it over as a number
        executable = fs::canonical(reinterpret_cast<const char *>(::getauxval(AT_EXECFN)), error);
    return ofExecutable(executable);
}

} // namespace tidewick
