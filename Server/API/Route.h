#pragma once

#include "Accounts/SignIns.h"
#include "HTTP/JSONAnswer.h"
#include "HTTP/Message.h"
#include "Models/APIBodies.h"
#include "Texts/Texts.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace stillgate::server
{

class LiveAppConfig;

/// What all operations share.
struct Service
{
    LiveAppConfig& appConfig;
    const Texts& texts;
    std::string approvalPage; ///< address of the page that takes a device's user code
};

/// One request to one operation of the API, within its transaction.
struct Call
{
    const Request& request;
    const std::map<std::string, std::string>& arguments; ///< of the path
    Service& service;
    Database& database;
    Date now;
    Account account; ///< empty for an operation that is open to everybody

    [[nodiscard]] const std::string& argument(const std::string& name) const { return arguments.at(name); }

    /// A value of the query; empty if there is none.
    [[nodiscard]] std::string query(const std::string& name) const
    {
        auto values = formValues(request.query);
        return values[name];
    }

    /// The body as a record. Throws a 400 that tells where it isn't one.
    template <class T>
    [[nodiscard]] T body() const
    {
        requireJSON();
        auto record = JSONDecoder{DateForm::iso8601}.decode<T>(request.body);
        if (!record)
            throw Refusal{400, record.error().description()};
        return *record;
    }

private:
    void requireJSON() const;
};

enum class Access {
    signedIn, ///< a bearer token (RFC 6750) that is in force
    everybody,
};

struct Route
{
    std::string method;
    std::string pattern; ///< "/tasks/{id}/complete"
    Response (*handle)(Call&);
    Access access = Access::signedIn;
    bool wipesDeleted = false; ///< what it deletes is to be gone from the disk as well
};

using Routes = std::vector<Route>;

// The operations, by area.
[[nodiscard]] Routes sessionRoutes();
[[nodiscard]] Routes accountRoutes();
[[nodiscard]] Routes blockRuleRoutes();
[[nodiscard]] Routes scheduleRoutes();
[[nodiscard]] Routes deviceRoutes();
[[nodiscard]] Routes screenTimeRoutes();
[[nodiscard]] Routes sharingRoutes();
[[nodiscard]] Routes guardianRoutes();
[[nodiscard]] Routes taskRoutes();
[[nodiscard]] Routes groupRoutes();
[[nodiscard]] Routes notificationRoutes();

/// Throws a 400 with the reason unless the condition holds.
inline void require(bool condition, const char* reason)
{
    if (!condition)
        throw Refusal{400, reason};
}

} // namespace stillgate::server
