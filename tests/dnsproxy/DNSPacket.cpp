#include "tests/dnsproxy/DNSPacket.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace stillgate::test
{

namespace
{

using dns::append;
using dns::append16;

void append32(Bytes& bytes, std::uint32_t number)
{
    append16(bytes, static_cast<std::uint16_t>(number >> 16U));
    append16(bytes, static_cast<std::uint16_t>(number));
}

void appendRecord(Bytes& bytes, const PacketRecord& record)
{
    append(bytes, nameBytes(record.name));
    append16(bytes, record.type);
    append16(bytes, record.recordClass);
    append32(bytes, record.ttl);
    append16(bytes, static_cast<std::uint16_t>(record.data.size()));
    append(bytes, record.data);
}

/// Throws where it would leave the message.
class Reader
{
public:
    explicit Reader(View bytes)
        : m_bytes(bytes.begin(), bytes.end())
    {}

    std::uint8_t number8() { return m_bytes.at(m_at++); }

    std::uint16_t number16()
    {
        const auto high = number8();
        return static_cast<std::uint16_t>(high << 8U | number8());
    }

    std::uint32_t number32()
    {
        const auto high = number16();
        return std::uint32_t{high} << 16U | number16();
    }

    std::string name()
    {
        std::string text;
        for (auto length = number8(); length != 0; length = number8()) {
            if (length >= 0xc0) {
                auto other = *this;
                other.m_at = static_cast<std::size_t>((length & 0x3f) << 8) | number8();
                return text + other.name();
            }
            for (; length > 0; --length)
                text += static_cast<char>(number8());
            text += '.';
        }
        return text;
    }

    PacketRecord record(char section)
    {
        PacketRecord record{.section = section, .name = name(), .data = {}};
        record.type = number16();
        record.recordClass = number16();
        record.ttl = number32();
        for (auto length = number16(); length > 0; --length)
            record.data.push_back(number8());
        return record;
    }

    [[nodiscard]] bool isAtEnd() const { return m_at == m_bytes.size(); }

private:
    Bytes m_bytes;
    std::size_t m_at = 0;
};

} // namespace

Bytes nameBytes(const std::string& name)
{
    Bytes bytes;
    std::istringstream labels{name};
    for (std::string label; std::getline(labels, label, '.');) {
        bytes.push_back(static_cast<std::uint8_t>(label.size()));
        bytes.insert(bytes.end(), label.begin(), label.end());
    }
    bytes.push_back(0);
    return bytes;
}

Bytes bytesOf(const Ask& ask)
{
    Bytes bytes;
    for (const std::uint16_t number : {ask.id, ask.flags, std::uint16_t{1}, std::uint16_t{0}, std::uint16_t{0},
             static_cast<std::uint16_t>(ask.edns ? 1 : 0)})
        append16(bytes, number);
    append(bytes, nameBytes(ask.name));
    append16(bytes, ask.type);
    append16(bytes, ask.recordClass);
    if (ask.edns)
        appendRecord(
            bytes, {.name = "", .type = 41, .ttl = ask.ednsFlags, .data = ask.ednsOptions, .recordClass = *ask.edns});
    return bytes;
}

Packet Packet::from(View bytes)
{
    Reader reader{bytes};
    Packet packet{.id = reader.number16(), .flags = reader.number16(), .name = {}, .records = {}};
    const auto questions = reader.number16();
    std::array<std::uint16_t, 3> counts{};
    for (auto& count : counts)
        count = reader.number16();
    if (questions > 0) {
        packet.name = reader.name();
        packet.type = reader.number16();
        packet.recordClass = reader.number16();
    }
    for (std::size_t section = 0; section < counts.size(); ++section) {
        for (auto left = counts.at(section); left > 0; --left)
            packet.records.push_back(reader.record("nud"[section]));
    }
    if (!reader.isAtEnd())
        throw std::runtime_error{"bytes behind the last record"};
    return packet;
}

const PacketRecord* Packet::find(std::uint16_t wanted) const
{
    const auto found = std::ranges::find(records, wanted, &PacketRecord::type);
    return found == records.end() ? nullptr : &*found;
}

std::size_t Packet::count(char section) const
{
    return static_cast<std::size_t>(std::ranges::count(records, section, &PacketRecord::section));
}

Bytes answerTo(View query, const std::vector<PacketRecord>& records, std::uint16_t flags)
{
    const auto question = Packet::from(query);
    Bytes bytes;
    append16(bytes, question.id);
    append16(bytes, flags);
    append16(bytes, 1);
    for (const char section : {'n', 'u', 'd'})
        append16(bytes, static_cast<std::uint16_t>(std::ranges::count(records, section, &PacketRecord::section)));
    append(bytes, query.subspan(12, nameBytes(question.name).size() + 4));
    for (const auto& record : records)
        appendRecord(bytes, record);
    return bytes;
}

Bytes soaData(std::uint32_t minimum)
{
    Bytes data{0, 0};
    for (const auto number : {1U, 3600U, 1200U, 604'800U, minimum})
        append32(data, number);
    return data;
}

} // namespace stillgate::test
