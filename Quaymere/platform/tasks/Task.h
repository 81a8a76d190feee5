// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

// What QCoro's tasks need to be owned: a task started by an object runs on by itself, so the object
// keeps a TaskOwner for it, and the task looks at its TaskToken after each wait before it touches
// the object again. Everything here belongs to the main thread.

namespace tidewick {

/// A value that one coroutine waits for and somebody else provides. The first value counts.
template <typename T>
class OneShot
{
public:
    OneShot() = default;
    OneShot(const OneShot &) = delete;
    OneShot &operator=(const OneShot &) = delete;
    ~OneShot() = default;

    /// Resumes the waiting coroutine before it returns. That may destroy this object.
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

/// The task's own end of its ownership: says whether the task is still wanted. Cheap to copy; pass
/// it by value, since a coroutine outlives what its caller's references point to.
class TaskToken
{
    using Wakers = std::list<std::function<void()>>;
    struct State
    {
        bool cancelled = false;
        Wakers wakers;
    };

public:
    /// Takes a waker back when it goes out of scope.
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

    /// Calls `wake` when the task is cancelled. Only for a token that is not cancelled yet.
    [[nodiscard]] Registration onCancel(std::function<void()> wake)
    {
        m_state->wakers.push_back(std::move(wake));
        return {m_state, std::prev(m_state->wakers.end())};
    }

private:
    friend class TaskOwner;
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// The owner's end: one task at a time. Cancelling wakes the task at once, so that it ends then and
/// there; so does destroying the owner or asking for the next token.
class TaskOwner
{
public:
    TaskOwner() = default;
    TaskOwner(const TaskOwner &) = delete;
    TaskOwner &operator=(const TaskOwner &) = delete;
    ~TaskOwner() { cancel(); }

    /// Cancels the task that ran so far and gives the token for the next one.
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
