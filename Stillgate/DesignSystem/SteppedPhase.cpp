#include "DesignSystem/SteppedPhase.h"

#include <QEasingCurve>
#include <QTimerEvent>

#include <algorithm>

namespace stillgate
{

double SteppedPhase::value() const
{
    const int stepsOfRun = std::max(m_duration * m_stepsPerSecond / 1000, 1);
    const int run = m_step / stepsOfRun;
    const double progress = double(m_step % stepsOfRun) / stepsOfRun;
    const bool goesBack = m_reverses && run % 2 == 1;
    return QEasingCurve{QEasingCurve::InOutSine}.valueForProgress(goesBack ? 1 - progress : progress);
}

void SteppedPhase::setItem(QQuickItem* item)
{
    if (m_item == item)
        return;
    if (m_item)
        m_item->disconnect(this);
    m_item = item;
    if (m_item) {
        connect(m_item, &QQuickItem::windowChanged, this, &SteppedPhase::watchWindow);
        connect(m_item, &QQuickItem::visibleChanged, this, &SteppedPhase::runWhileSeen);
    }
    watchWindow(m_item ? m_item->window() : nullptr);
    Q_EMIT itemChanged();
}

void SteppedPhase::setIsEnabled(bool isEnabled)
{
    if (m_isEnabled == isEnabled)
        return;
    m_isEnabled = isEnabled;
    if (!m_isEnabled)
        moveTo(0);
    runWhileSeen();
    Q_EMIT isEnabledChanged();
}

bool SteppedPhase::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && (event->type() == QEvent::Expose || event->type() == QEvent::Hide))
        runWhileSeen();
    return QObject::eventFilter(watched, event);
}

void SteppedPhase::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        moveTo(m_step + 1);
}

void SteppedPhase::watchWindow(QQuickWindow* window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    runWhileSeen();
}

void SteppedPhase::runWhileSeen()
{
    const bool isSeen = m_item && m_item->isVisible() && m_window && m_window->isExposed();
    if (!isSeen || !m_isEnabled)
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(1000 / m_stepsPerSecond, this);
}

void SteppedPhase::moveTo(int step)
{
    m_step = step;
    Q_EMIT valueChanged();
}

} // namespace stillgate
