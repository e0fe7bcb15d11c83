#pragma once

#include "API/Route.h"

namespace stillgate::server
{

/// Makes the task of the body, for this assignee, from the one who calls.
[[nodiscard]] Response createTask(Call& call, const std::string& assigneeId);

} // namespace stillgate::server
