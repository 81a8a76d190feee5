// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/FaultRun.h"

namespace tidewick {

/// From here on what this process starts obeys the modes of files, whoever runs it.
void obeyFileModes();

/// Gives this process mounts of its own. Where the kernel does not allow that, the row is skipped
/// and the answer is false.
bool enterPrivateMounts(FaultRun &run);

/// Runs a mode of the command line to its end.
Outcome runMode(const FaultRun &run, std::vector<std::string> arguments);

/// The application comes to tell of an error in these words, among others, has no node, and ends
/// well.
void expectError(FaultRun &run, WatchedApplication &application, const QByteArray &words);

/// The application refuses to start its node, in these words, and so does "--smoke".
void expectRefused(FaultRun &run, const QByteArray &words);

/// The application comes up and ends well, within the fault or after it.
void expectComesUp(FaultRun &run, const QByteArray &when);

/// The folder in which the data folders of the application and of "--smoke" lie.
std::filesystem::path dataHome();

/// A copy of the data folder, put back in its place at the end, for trials that destroy it.
class KeptData
{
public:
    KeptData();
    KeptData(const KeptData &) = delete;
    KeptData &operator=(const KeptData &) = delete;
    ~KeptData();

private:
    TemporaryFolder m_copy;
};

} // namespace tidewick
