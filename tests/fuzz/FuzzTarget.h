#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The one function of a fuzz target, under the name that libFuzzer calls. Returns 0.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace stillgate
{

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace stillgate
