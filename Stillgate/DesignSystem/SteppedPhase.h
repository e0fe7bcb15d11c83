#pragma once

#include <QBasicTimer>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// A value that runs from 0 to 1 for ever, for decoration. It moves in few steps a second, because at each of them the
/// software renderer paints anew whatever the decoration touches, and only while `item` can be seen.
class SteppedPhase : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQuickItem* item READ item WRITE setItem NOTIFY itemChanged REQUIRED)
    /// While it is false the value is 0.
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setIsEnabled NOTIFY isEnabledChanged)
    /// Milliseconds of one run.
    Q_PROPERTY(int duration MEMBER m_duration NOTIFY durationChanged)
    Q_PROPERTY(int stepsPerSecond MEMBER m_stepsPerSecond NOTIFY stepsPerSecondChanged)
    /// Whether every second run goes back from 1 to 0.
    Q_PROPERTY(bool reverses MEMBER m_reverses NOTIFY reversesChanged)
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

public:
    QQuickItem* item() const { return m_item; }

    bool isEnabled() const { return m_isEnabled; }

    /// Where the phase stands, slow at both ends.
    double value() const;

    void setItem(QQuickItem* item);
    void setIsEnabled(bool isEnabled);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void itemChanged();
    void isEnabledChanged();
    void durationChanged();
    void stepsPerSecondChanged();
    void reversesChanged();
    void valueChanged();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void watchWindow(QQuickWindow* window);
    void runWhileSeen();
    void moveTo(int step);

    QPointer<QQuickItem> m_item;
    QPointer<QQuickWindow> m_window;
    bool m_isEnabled = true;
    int m_duration = 1000;
    int m_stepsPerSecond = 10;
    bool m_reverses = false;
    int m_step = 0;
    QBasicTimer m_timer;
};

} // namespace stillgate
