#pragma once

#include <QObject>

#include <functional>
#include <string>

namespace stillgate
{

/// The keys that are pressed together with Control while one of our windows has the keyboard, before that window sees
/// them.
class CommandKeys final : public QObject
{
public:
    /// Given the characters of the key, with only Shift and Caps Lock applied; true if it took the key.
    using Handler = std::function<bool(const std::string& characters)>;

    explicit CommandKeys(Handler handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler m_handler;
};

} // namespace stillgate
