// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QStringView>

namespace tidewick::EnvironmentFile {

/// Sets the variables of an environment from the lines "KEY=value" of a text. Ignores blanks around
/// a line, comments, which begin with "#", and all other lines.
void layOver(ProcessEnvironment &environment, QStringView text);

} // namespace tidewick::EnvironmentFile
