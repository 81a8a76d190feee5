// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/// What a target defines: one run of the code under test. The fuzzer calls it with inputs it makes
/// up, and the replay with those that are kept. The name and the form are libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// What targets have in common.

namespace tidewick::Fuzzing {

/// Ends the program, so that the input at hand counts as a finding, unless `holds`.
void require(bool holds, const char *what);

QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// A text that nobody vouches for is as people are to see it once it went through what the faces of
/// the application have it go through: short, on one line, in the order in which it is read.
void requireShowable(const QString &text);

} // namespace tidewick::Fuzzing
