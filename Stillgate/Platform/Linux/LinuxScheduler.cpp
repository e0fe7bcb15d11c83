#include "Platform/Linux/LinuxScheduler.h"

#include <QTimer>

namespace stillgate
{

namespace
{

class QtTimer final : public Timer
{
public:
    QtTimer(std::chrono::milliseconds interval, bool singleShot, Scheduler::Action action)
        : m_timer(new QTimer)
    {
        m_timer->setTimerType(Qt::PreciseTimer); // a coarse one may come 5 % early
        m_timer->setSingleShot(singleShot);
        QObject::connect(m_timer, &QTimer::timeout, m_timer, std::move(action));
        m_timer->start(interval);
    }

    ~QtTimer() override
    {
        m_timer->stop();
        m_timer->deleteLater(); // we may be within its call
    }

    QtTimer(const QtTimer&) = delete;
    QtTimer& operator=(const QtTimer&) = delete;

private:
    QTimer* m_timer;
};

} // namespace

std::unique_ptr<Timer> LinuxScheduler::once(std::chrono::milliseconds delay, Action action)
{
    return std::make_unique<QtTimer>(delay, true, std::move(action));
}

std::unique_ptr<Timer> LinuxScheduler::repeating(std::chrono::milliseconds period, Action action)
{
    return std::make_unique<QtTimer>(period, false, std::move(action));
}

} // namespace stillgate
