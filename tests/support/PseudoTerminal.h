// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "support/ScreenModel.h"

namespace tidewick {

/// A terminal that a program under test writes to, and a model of what the user sees on it.
class PseudoTerminal
{
public:
    PseudoTerminal(int columns, int rows);

    /// The end that the program writes to.
    int descriptor() const { return m_program.get(); }

    void resize(int columns, int rows);
    /// Writes to the terminal as the shell would before or after the program runs, or as the echo
    /// of a key would.
    void write(const QByteArray &text) const;
    /// The screen after everything written so far has arrived.
    const ScreenModel &screen();
    /// The number of bytes received so far.
    qsizetype received();
    /// Closes the terminal window.
    void hangUp() { m_window.reset(); }

private:
    void setSize(int columns, int rows) const;
    void receive();

    UniqueDescriptor m_window;
    UniqueDescriptor m_program;
    ScreenModel m_screen;
    qsizetype m_received = 0;
};

} // namespace tidewick
