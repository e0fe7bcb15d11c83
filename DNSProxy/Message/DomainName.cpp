#include "Message/DomainName.h"

#include <algorithm>

namespace stillgate::dns
{

namespace
{

constexpr std::uint8_t pointerBits = 0xc0;

bool isOfLabel(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
        (character >= '0' && character <= '9') || character == '-' || character == '_';
}

View bytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

} // namespace

std::optional<DomainName> DomainName::fromText(std::string_view text)
{
    if (text.ends_with('.'))
        text.remove_suffix(1);
    DomainName name;
    for (;;) {
        const auto dot = std::min(text.find('.'), text.size());
        const auto label = text.substr(0, dot);
        if (label.empty() || !std::ranges::all_of(label, isOfLabel) || !name.appendLabel(bytesOf(label)))
            return std::nullopt;
        if (dot == text.size())
            return name;
        text.remove_prefix(dot + 1);
    }
}

std::optional<std::size_t> DomainName::read(View message, std::size_t at)
{
    m_size = 1;
    std::optional<std::size_t> end; // behind the first pointer, if there is one
    auto earliest = at;             // a pointer leads to somewhere before this
    for (;;) {
        if (at >= message.size())
            return std::nullopt;
        const auto length = message[at];
        if (length == 0) {
            m_wire[m_size - 1] = 0;
            return end.value_or(at + 1);
        }
        if ((length & pointerBits) == pointerBits) {
            if (at + 1 >= message.size())
                return std::nullopt;
            if (!end)
                end = at + 2;
            at = number16(message, at) & 0x3fffU;
            if (at >= earliest)
                return std::nullopt;
            earliest = at;
            continue;
        }
        const auto next = at + 1 + length;
        if (length > longestLabel || next > message.size() || !appendLabel(message.subspan(at + 1, length)))
            return std::nullopt;
        at = next;
    }
}

bool DomainName::operator==(const DomainName& other) const
{
    return std::ranges::equal(wire(), other.wire());
}

bool DomainName::appendLabel(View label)
{
    if (label.size() > longestLabel || m_size + 1 + label.size() > longestName)
        return false;
    m_wire[m_size - 1] = static_cast<std::uint8_t>(label.size());
    std::ranges::transform(label, m_wire.begin() + static_cast<std::ptrdiff_t>(m_size), lowered);
    m_size += 1 + label.size();
    m_wire[m_size - 1] = 0;
    return true;
}

} // namespace stillgate::dns
