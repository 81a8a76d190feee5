// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// Defined by each target: one run of the code under test. The fuzzer calls it with generated
/// inputs, and the replay with stored ones. libFuzzer prescribes the name and the signature.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// Helpers shared by the targets.

namespace tidewick::Fuzzing {

/// Aborts unless `holds`, so that the current input counts as a finding.
void require(bool holds, const char *what);

QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// Requires that an untrusted text is fit to be shown after the processing that the application's
/// faces apply to it: short, on one line, and without overrides of the text direction.
void requireShowable(const QString &text);

} // namespace tidewick::Fuzzing
