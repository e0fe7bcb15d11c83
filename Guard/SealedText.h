#pragma once

#include "Guard/Refusal.h"

#include <string_view>
#include <utility>

namespace stillgate::guard
{

/// The bytes of a sealed memory file (memfd_create(2)), as long as this object lives.
///
/// THREAT: the caller keeps a descriptor of it. The seals keep it from changing a byte after it was looked at, or from
/// cutting the file short under the one who reads it.
class SealedText
{
public:
    static constexpr std::size_t largest = 64UL << 20; ///< bytes

    /// Refuses what isn't a memory file sealed against writing, shrinking and growing, and what is larger.
    [[nodiscard]] static Answer<SealedText> map(int descriptor);

    SealedText(SealedText&& other) noexcept
        : m_bytes(std::exchange(other.m_bytes, {}))
    {}

    SealedText& operator=(SealedText&&) = delete;
    SealedText(const SealedText&) = delete;
    SealedText& operator=(const SealedText&) = delete;
    ~SealedText();

    [[nodiscard]] std::string_view bytes() const { return m_bytes; }

private:
    explicit SealedText(std::string_view bytes)
        : m_bytes(bytes)
    {}

    std::string_view m_bytes;
};

} // namespace stillgate::guard
