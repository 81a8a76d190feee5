// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>

namespace tidewick {

/// A process that is forked off. One of QProcess itself shares this process's memory until it runs
/// the other program, which the thread sanitizer of clang 14 does not survive; for classes derived
/// from it, Qt forks.
class ForkedProcess final : public QProcess
{
};

} // namespace tidewick
