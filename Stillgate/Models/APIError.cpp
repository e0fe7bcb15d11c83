#include "Models/APIError.h"

namespace stillgate
{

std::string APIError::errorDescription() const
{
    switch (m_kind) {
    case Kind::transport:
        return "Network error: " + m_message;
    case Kind::server:
        return m_message;
    case Kind::misconfiguredBaseURL:
        return "API base URL is not configured";
    case Kind::invalidURL:
        return "Invalid URL";
    case Kind::invalidResponse:
        return "Invalid response";
    case Kind::unauthorized:
        return "Session expired";
    }
    return {};
}

} // namespace stillgate
