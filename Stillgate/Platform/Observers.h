#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace stillgate
{

/// An observer's registration; it ends with this object, and may outlive what it observes.
class Observation
{
public:
    virtual ~Observation() = default;
};

/// Those who want to be called when something happens, with what there is to say about it. Main thread only.
template <class... Arguments>
class Observers
{
public:
    using Observer = std::function<void(const Arguments&...)>;

    [[nodiscard]] std::unique_ptr<Observation> add(Observer observer)
    {
        m_list->push_back(std::make_shared<Observer>(std::move(observer)));
        return std::make_unique<Registration>(m_list->back(), m_list);
    }

    /// Calls those that are registered now, in their order; one that is taken back meanwhile is passed over.
    void notify(const Arguments&... arguments)
    {
        const auto list = m_list; // an observer may destroy us, each other, or itself, which the copy keeps meanwhile
        const List registered{list->begin(), list->end()};
        for (const auto& observer : registered) {
            if (std::ranges::find(*list, observer) != list->end())
                (*observer)(arguments...);
        }
    }

private:
    using List = std::vector<std::shared_ptr<Observer>>;

    class Registration final : public Observation
    {
    public:
        Registration(std::shared_ptr<Observer> observer, std::weak_ptr<List> list)
            : m_observer(std::move(observer))
            , m_list(std::move(list))
        {}

        ~Registration() override
        {
            if (const auto list = m_list.lock())
                std::erase(*list, m_observer);
        }

        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;

    private:
        std::shared_ptr<Observer> m_observer;
        std::weak_ptr<List> m_list;
    };

    std::shared_ptr<List> m_list = std::make_shared<List>();
};

} // namespace stillgate
