// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "support/ScreenModel.h"

namespace tidewick {

/// A terminal for a program under test to write to, and what a person sees on it.
class PseudoTerminal
{
public:
    PseudoTerminal(int columns, int rows);

    /// The program's end.
    int descriptor() const { return m_program.get(); }

    void resize(int columns, int rows);
    /// As the shell before the program and after it, or the echo of a key.
    void write(const QByteArray &text) const;
    /// What stands there once all that has been written has arrived.
    const ScreenModel &screen();
    /// How many bytes have arrived until now.
    qsizetype received();
    /// The window is closed.
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
