#include "Models/Result.h"

#include <cstring>

namespace stillgate
{

namespace
{

struct Describe
{
    std::string operator()(const APIError& error) const { return error.errorDescription(); }

    std::string operator()(const DecodingFailure& failure) const { return failure.path + ": " + failure.problem; }

    std::string operator()(const EncodingFailure& failure) const { return failure.problem; }

    std::string operator()(const SystemFailure& failure) const
    {
        return failure.code == 0 ? failure.action : failure.action + ": " + std::strerror(failure.code);
    }
};

} // namespace

std::string Error::description() const
{
    return std::visit(Describe{}, m_cause);
}

bool Error::is(const APIError& error) const
{
    const auto* own = std::get_if<APIError>(&m_cause);
    return own != nullptr && *own == error;
}

int Error::systemCode() const
{
    const auto* own = std::get_if<SystemFailure>(&m_cause);
    return own != nullptr ? own->code : 0;
}

} // namespace stillgate
