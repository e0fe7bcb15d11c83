#pragma once

#include "Platform/OneShotEvent.h"

#include <QTimer>

#include <deque>
#include <memory>

namespace stillgate::guard
{

/// One at a time, in the order in which they came. Whoever has waited for its turn has to end it:
///
///     co_await turns.next();
///     const TurnEnd end{turns};
class Turns
{
public:
    Task<> next()
    {
        if (!std::exchange(m_isTaken, true))
            co_return;
        const auto event = m_waiting.emplace_back(std::make_shared<OneShotEvent>());
        co_await *event;
    }

    void end()
    {
        if (m_waiting.empty()) {
            m_isTaken = false;
            return;
        }
        // From the event loop: the next one must not run within the end of the one before.
        QTimer::singleShot(0, [next = m_waiting.front()] { next->happen(); });
        m_waiting.pop_front();
    }

private:
    bool m_isTaken = false;
    std::deque<std::shared_ptr<OneShotEvent>> m_waiting;
};

class TurnEnd
{
public:
    explicit TurnEnd(Turns& turns)
        : m_turns(turns)
    {}

    ~TurnEnd() { m_turns.end(); }

    TurnEnd(const TurnEnd&) = delete;
    TurnEnd& operator=(const TurnEnd&) = delete;

private:
    Turns& m_turns;
};

} // namespace stillgate::guard
