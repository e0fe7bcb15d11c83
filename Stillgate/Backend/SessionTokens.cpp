#include "Backend/SessionTokens.h"

namespace stillgate
{

namespace
{

constexpr std::string_view accessKey = "sg_access_token";
constexpr std::string_view refreshKey = "sg_refresh_token";

std::optional<std::string_view> view(const std::optional<SecretBytes>& token)
{
    return token ? std::optional{token->view()} : std::nullopt;
}

} // namespace

SessionTokens::SessionTokens(KeychainService& store)
    : m_store(store)
{}

void SessionTokens::set(std::string_view access, std::string_view refresh)
{
    zeroize();
    m_access.emplace(access);
    m_refresh.emplace(refresh);
    m_store.save(accessKey, access);
    m_store.save(refreshKey, refresh);
}

void SessionTokens::load()
{
    if (const auto access = m_store.load(accessKey))
        m_access.emplace(*access);
    if (const auto refresh = m_store.load(refreshKey))
        m_refresh.emplace(*refresh);
}

void SessionTokens::clear()
{
    ++m_endedSessions;
    zeroize();
    m_store.remove(accessKey);
    m_store.remove(refreshKey);
}

std::optional<std::string_view> SessionTokens::access() const
{
    return view(m_access);
}

std::optional<std::string_view> SessionTokens::refresh() const
{
    return view(m_refresh);
}

void SessionTokens::zeroize()
{
    m_access.reset();
    m_refresh.reset();
}

} // namespace stillgate
