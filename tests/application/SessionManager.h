// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace tidewick {

/// An X session manager of the test's own, which does nothing unless told to. While it lives, the
/// environment names it. One at a time; needs the application object.
class SessionManager
{
public:
    SessionManager();
    SessionManager(const SessionManager &) = delete;
    SessionManager &operator=(const SessionManager &) = delete;
    ~SessionManager();

    /// Programs that take part in the session.
    int clients() const;

    /// How often one of them has said that it has saved what there is to save.
    int saved() const;

    /// Asks all to save, as it does before the session ends, and when the user only wants the
    /// session saved.
    void askToSave(bool beforeTheEnd);

    /// Tells all that the user wants to go on after all.
    void cancelTheEnd();

    /// Tells all to end.
    void endTheSession();

    /// The protocol's own things, known to the source file only.
    struct State;

private:
    std::unique_ptr<State> m_state;
};

} // namespace tidewick
