// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Subject.h"

#include <map>
#include <random>
#include <string>

namespace tidewick::soaking {

/// The faults around the application, in an order that depends on a seed alone.
class Faults
{
public:
    Faults(Subject &subject, std::uint64_t seed) : m_subject(subject), m_random(seed) {}

    /// Causes one fault. Afterwards, the subject may be in any state.
    void strike();

    /// The number of times that each fault has occurred.
    const std::map<std::string, int> &counts() const { return m_counts; }

private:
    template <typename Choices>
    const auto &oneOf(const Choices &choices);
    void wait(int leastMs, int mostMs);

    void endNode();
    void freezeNode();
    void runBadNode();
    void stopAndStart();
    void dropStream();
    void closeLedger();
    void launchAgain();
    void restartPanel();

    Subject &m_subject;
    std::mt19937_64 m_random;
    std::map<std::string, int> m_counts;
};

} // namespace tidewick::soaking
