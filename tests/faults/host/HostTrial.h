// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/FaultRun.h"

namespace tidewick {

/// Makes all processes started from now on obey file modes, even those of root.
void obeyFileModes();

/// Gives this process a private mount namespace. If the kernel does not allow that, skips the row
/// and returns false.
bool enterPrivateMounts(FaultRun &run);

/// Runs a command line mode of the application until it exits.
Outcome runMode(const FaultRun &run, std::vector<std::string> arguments);

/// Expects the application to report an error that contains these words, to have no node, and to
/// exit with status 0.
void expectError(FaultRun &run, WatchedApplication &application, const QByteArray &words);

/// Expects both the application and "--smoke" to refuse to start the node, with these words.
void expectRefused(FaultRun &run, const QByteArray &words);

/// Expects the application to come up and to exit with status 0, during the fault or after it.
void expectComesUp(FaultRun &run, const QByteArray &when);

/// The folder that contains the data folders of the application and of "--smoke".
std::filesystem::path dataHome();

/// A backup of the data folder, restored at the end, for trials that destroy the folder.
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
