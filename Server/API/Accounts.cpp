#include "API/Route.h"
#include "API/Stored.h"
#include "Accounts/Users.h"

namespace stillgate::server
{

namespace
{

Response me(Call& call)
{
    return jsonAnswer(userById(call.database, call.account.userId));
}

/// Also the repeating tasks whose day hasn't come.
Response exportEverything(Call& call)
{
    constexpr std::chrono::years everything{100};
    return jsonAnswer(UserDataExport{.user = userById(call.database, call.account.userId),
        .devices = devicesOf(call.database, call.account),
        .blockRules = blockRulesOf(call.database, call.account.userId),
        .schedules = schedulesOf(call.database, call.account.userId),
        .tasks = tasksOf(call.database, call.account.userId, TaskRole::either, call.now + everything)});
}

Response deleteAccount(Call& call)
{
    deleteUser(call.database, call.account.userId);
    return acknowledgement();
}

} // namespace

Routes accountRoutes()
{
    return {
        {"GET", "/auth/me", me},
        {"GET", "/auth/export", exportEverything},
        {.method = "DELETE", .pattern = "/auth/account", .handle = deleteAccount, .wipesDeleted = true},
    };
}

} // namespace stillgate::server
