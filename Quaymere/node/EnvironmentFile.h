// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/process/ChildProcess.h"

#include <QStringView>

namespace tidewick::EnvironmentFile {

/// Lays the lines "KEY=value" of a text over an environment. Blanks around a line do not count;
/// comments, which begin with "#", and other lines are passed over.
void layOver(ProcessEnvironment &environment, QStringView text);

} // namespace tidewick::EnvironmentFile
