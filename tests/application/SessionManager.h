// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace tidewick {

/// A private X session manager for the test, which acts only when told to. While it exists, the
/// environment points to it. Only one may exist at a time. Needs the application object.
class SessionManager
{
public:
    SessionManager();
    SessionManager(const SessionManager &) = delete;
    SessionManager &operator=(const SessionManager &) = delete;
    ~SessionManager();

    /// The number of programs that take part in the session.
    int clients() const;

    /// How often a client has reported that it has finished saving.
    int saved() const;

    /// Asks all clients to save, as a session manager does before the session ends or when the user
    /// merely saves the session.
    void askToSave(bool beforeTheEnd);

    /// Tells all clients that the user has cancelled the logout.
    void cancelTheEnd();

    /// Tells all clients to exit.
    void endTheSession();

    /// Protocol data, known only to the source file.
    struct State;

private:
    std::unique_ptr<State> m_state;
};

} // namespace tidewick
