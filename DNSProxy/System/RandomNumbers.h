#pragma once

#include <array>
#include <cstdint>
#include <sodium.h>

namespace stillgate::dns
{

/// Random numbers that nobody can foresee, from the kernel, many at a time.
class RandomNumbers
{
public:
    [[nodiscard]] std::uint16_t next()
    {
        if (m_used == m_numbers.size()) {
            ::randombytes_buf(m_numbers.data(), sizeof(m_numbers));
            m_used = 0;
        }
        return m_numbers[m_used++];
    }

private:
    std::array<std::uint16_t, 1024> m_numbers{};
    std::size_t m_used = m_numbers.size();
};

} // namespace stillgate::dns
