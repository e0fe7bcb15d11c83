#pragma once

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

/// Those who want to be called when something happens. Main thread only.
class Observers
{
public:
    using Observer = std::function<void()>;

    [[nodiscard]] std::unique_ptr<Observation> add(Observer observer);

    /// Calls those that are registered now, in their order; one that is taken back meanwhile is passed over.
    void notify();

private:
    using List = std::vector<std::shared_ptr<Observer>>;
    class Registration;

    std::shared_ptr<List> m_list = std::make_shared<List>();
};

} // namespace stillgate
