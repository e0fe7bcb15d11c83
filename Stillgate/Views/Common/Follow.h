#pragma once

#include <QProperty>

#include <vector>

namespace stillgate
{

/// How a screen follows several fields: calls `onChange` when one of them changes, as long as the notifiers live.
template <class OnChange, class... Fields>
[[nodiscard]] std::vector<QPropertyNotifier> follow(OnChange onChange, Fields&... fields)
{
    std::vector<QPropertyNotifier> notifiers;
    (notifiers.push_back(fields.addNotifier(onChange)), ...);
    return notifiers;
}

} // namespace stillgate
