// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/StandardStreams.h"

#include "platform/files/Files.h"

#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace tidewick::StandardStreams {

void prepare()
{
    // Each descriptor is opened in the opposite direction, so that using a stream the caller closed
    // is still an error. open returns the lowest free number, and the lower ones are in use by
    // then.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
    ::signal(SIGPIPE, SIG_IGN);
}

bool printLine(std::string_view line)
{
    const std::string text = std::string(line) + '\n';
    if (Files::writeAll(STDOUT_FILENO, text.data(), text.size()))
        return true;
    const std::error_code reason(errno, std::generic_category());
    printError("cannot write standard output: " + reason.message() + '\n');
    return false;
}

void printError(std::string_view text)
{
    (void)Files::writeAll(STDERR_FILENO, text.data(), text.size());
}

} // namespace tidewick::StandardStreams
