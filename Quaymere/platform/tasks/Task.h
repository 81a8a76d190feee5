// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

// Ownership for QCoro's tasks. A task started by an object runs on independently, so the object
// keeps a TaskOwner for it, and after each wait the task checks its TaskToken before it accesses
// the object again. Everything here belongs to the main thread.

namespace tidewick {

/// A value that one coroutine waits for and other code provides. Only the first value counts.
template <typename T>
class OneShot
{
public:
    OneShot() = default;
    OneShot(const OneShot &) = delete;
    OneShot &operator=(const OneShot &) = delete;
    ~OneShot() = default;

    /// Resumes the waiting coroutine before returning, which may destroy this object.
    void resolve(T value)
    {
        if (m_value)
            return;
        m_value = std::move(value);
        if (const auto waiter = std::exchange(m_waiter, nullptr))
            waiter.resume();
    }

    auto operator co_await() noexcept
    {
        struct Awaiter
        {
            OneShot *shot;
            bool await_ready() const noexcept { return shot->m_value.has_value(); }
            void await_suspend(std::coroutine_handle<> w) const noexcept { shot->m_waiter = w; }
            T await_resume() const { return std::move(*shot->m_value); }
        };
        return Awaiter{this};
    }

private:
    std::optional<T> m_value;
    std::coroutine_handle<> m_waiter = nullptr;
};

/// The task's side of its ownership: reports whether the task is still wanted. Cheap to copy. Pass
/// it by value, because a coroutine may outlive the objects that its caller's references point to.
class TaskToken
{
    using Wakers = std::list<std::function<void()>>;
    struct State
    {
        bool cancelled = false;
        Wakers wakers;
    };

public:
    /// Removes a waker when it goes out of scope.
    class Registration
    {
    public:
        Registration(std::shared_ptr<State> state, Wakers::iterator place)
            : m_state(std::move(state)), m_place(place)
        {
        }
        Registration(const Registration &) = delete;
        Registration &operator=(const Registration &) = delete;
        ~Registration()
        {
            if (!m_state->cancelled)
                m_state->wakers.erase(m_place);
        }

    private:
        std::shared_ptr<State> m_state;
        Wakers::iterator m_place;
    };

    bool cancelled() const { return m_state->cancelled; }

    /// Calls `wake` when the task is cancelled. The token must not be cancelled yet.
    [[nodiscard]] Registration onCancel(std::function<void()> wake)
    {
        m_state->wakers.push_back(std::move(wake));
        return {m_state, std::prev(m_state->wakers.end())};
    }

private:
    friend class TaskOwner;
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// The owner's side: one task at a time. Cancelling wakes the task immediately, so that it ends
/// right there. Destroying the owner or requesting the next token also cancels the task.
class TaskOwner
{
public:
    TaskOwner() = default;
    TaskOwner(const TaskOwner &) = delete;
    TaskOwner &operator=(const TaskOwner &) = delete;
    ~TaskOwner() { cancel(); }

    /// Cancels the current task and returns the token for the next one.
    TaskToken renew()
    {
        cancel();
        return *(m_token = TaskToken());
    }

    void cancel()
    {
        if (!m_token)
            return;
        const auto state = std::exchange(m_token, std::nullopt)->m_state;
        state->cancelled = true;
        for (const auto &wake : std::exchange(state->wakers, {}))
            wake();
    }

    bool active() const { return m_token.has_value(); }

private:
    std::optional<TaskToken> m_token;
};

} // namespace tidewick
