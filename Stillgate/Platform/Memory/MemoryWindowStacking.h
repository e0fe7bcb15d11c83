#pragma once

#include "Platform/WindowStacking.h"

namespace stillgate
{

/// Remembers how many windows are kept in front, and keeps none.
class MemoryWindowStacking final : public WindowStacking
{
public:
    [[nodiscard]] std::unique_ptr<Observation> keepInFront(std::uintptr_t, std::function<void()>) override
    {
        return std::make_unique<Kept>(inFront);
    }

    [[nodiscard]] bool isComposited() const override { return composited; }

    int inFront = 0;
    bool composited = true;

private:
    class Kept final : public Observation
    {
    public:
        explicit Kept(int& count)
            : m_count(count)
        {
            ++m_count;
        }

        ~Kept() override { --m_count; }

        Kept(const Kept&) = delete;
        Kept& operator=(const Kept&) = delete;

    private:
        int& m_count;
    };
};

} // namespace stillgate
