#pragma once

#include <cstring>
#include <string_view>
#include <vector>

namespace stillgate
{

/// Bytes that are overwritten with zeros before their memory is released.
class SecretBytes
{
public:
    explicit SecretBytes(std::string_view bytes)
        : m_bytes(bytes.begin(), bytes.end())
    {}

    ~SecretBytes()
    {
        if (!m_bytes.empty())
            ::explicit_bzero(m_bytes.data(), m_bytes.size());
    }

    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;

    [[nodiscard]] std::string_view view() const { return {m_bytes.data(), m_bytes.size()}; }

private:
    std::vector<char> m_bytes;
};

} // namespace stillgate
