#include "Platform/Memory/ManualTime.h"

namespace stillgate
{

class ManualTime::Handle final : public Timer
{
public:
    Handle(ManualTime& time, std::shared_ptr<Entry> entry)
        : m_time(time)
        , m_entry(std::move(entry))
    {}

    ~Handle() override { m_time.m_entries.remove(m_entry); }

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

private:
    ManualTime& m_time;
    std::shared_ptr<Entry> m_entry;
};

std::unique_ptr<Timer> ManualTime::once(std::chrono::milliseconds delay, Action action)
{
    return add(delay, std::chrono::milliseconds{0}, std::move(action));
}

std::unique_ptr<Timer> ManualTime::repeating(std::chrono::milliseconds period, Action action)
{
    return add(period, period, std::move(action));
}

std::unique_ptr<Timer> ManualTime::add(std::chrono::milliseconds delay, std::chrono::milliseconds period, Action action)
{
    auto entry = std::make_shared<Entry>(m_monotonicNow + delay, period, std::move(action));
    m_entries.push_back(entry);
    return std::make_unique<Handle>(*this, std::move(entry));
}

void ManualTime::advance(std::chrono::milliseconds span)
{
    const auto end = m_monotonicNow + span;
    while (const auto entry = nextDueBefore(end)) {
        moveTo(entry->due);
        if (entry->period.count() == 0)
            m_entries.remove(entry);
        else
            entry->due += entry->period;
        entry->action();
    }
    moveTo(end);
}

std::shared_ptr<ManualTime::Entry> ManualTime::nextDueBefore(MonotonicTime end) const
{
    std::shared_ptr<Entry> next;
    for (const auto& entry : m_entries) {
        if (entry->due <= end && (!next || entry->due < next->due))
            next = entry;
    }
    return next;
}

void ManualTime::moveTo(MonotonicTime time)
{
    m_now += std::chrono::duration_cast<std::chrono::microseconds>(time - m_monotonicNow);
    m_monotonicNow = time;
}

} // namespace stillgate
