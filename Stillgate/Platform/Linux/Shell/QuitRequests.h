#pragma once

#include <QObject>

#include <functional>

namespace stillgate
{

/// What the desktop does to end the application, such as the end of the session: a call, in place of an event loop that
/// just ends.
class QuitRequests final : public QObject
{
public:
    explicit QuitRequests(std::function<void()> onRequest);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_onRequest;
};

} // namespace stillgate
