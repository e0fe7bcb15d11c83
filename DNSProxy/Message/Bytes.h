#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace stillgate::dns
{

using Bytes = std::vector<std::uint8_t>;
using View = std::span<const std::uint8_t>;

/// Numbers on the wire have their highest byte first. The caller has checked that they fit.
[[nodiscard]] inline std::uint16_t number16(View bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(bytes[at] << 8U | bytes[at + 1]);
}

[[nodiscard]] inline std::uint32_t number32(View bytes, std::size_t at)
{
    return std::uint32_t{number16(bytes, at)} << 16U | number16(bytes, at + 2);
}

inline void put16(std::span<std::uint8_t> bytes, std::size_t at, std::uint16_t number)
{
    bytes[at] = static_cast<std::uint8_t>(number >> 8U);
    bytes[at + 1] = static_cast<std::uint8_t>(number);
}

inline void put32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t number)
{
    put16(bytes, at, static_cast<std::uint16_t>(number >> 16U));
    put16(bytes, at + 2, static_cast<std::uint16_t>(number));
}

inline void append(Bytes& bytes, View more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

inline void append16(Bytes& bytes, std::uint16_t number)
{
    bytes.push_back(static_cast<std::uint8_t>(number >> 8U));
    bytes.push_back(static_cast<std::uint8_t>(number));
}

} // namespace stillgate::dns
