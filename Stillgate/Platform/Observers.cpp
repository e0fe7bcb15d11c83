#include "Platform/Observers.h"

#include <algorithm>

namespace stillgate
{

class Observers::Registration final : public Observation
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

std::unique_ptr<Observation> Observers::add(Observer observer)
{
    m_list->push_back(std::make_shared<Observer>(std::move(observer)));
    return std::make_unique<Registration>(m_list->back(), m_list);
}

void Observers::notify()
{
    const auto list = m_list; // an observer may destroy us, and each other, or itself, which the copy keeps meanwhile
    const List registered{list->begin(), list->end()};
    for (const auto& observer : registered) {
        if (std::ranges::find(*list, observer) != list->end())
            (*observer)();
    }
}

} // namespace stillgate
