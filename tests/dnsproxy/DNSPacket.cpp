#include "tests/dnsproxy/DNSPacket.h"

#include <algorithm>
#include <arpa/nameser.h>
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

/// By libc's own reader. Throws where the bytes are none.
PacketRecord recordAt(ns_msg& message, ns_sect section, int index)
{
    ns_rr record{};
    if (::ns_parserr(&message, section, index, &record) != 0)
        throw std::runtime_error{"no record"};
    const std::string name = record.name;
    return {.name = name.empty() ? name : name + '.',
        .type = record.type,
        .ttl = record.ttl,
        .data = {record.rdata, record.rdata + record.rdlength},
        .recordClass = record.rr_class};
}

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
    ns_msg message{};
    if (::ns_initparse(bytes.data(), static_cast<int>(bytes.size()), &message) != 0)
        throw std::runtime_error{"no message, or bytes behind it"};
    Packet packet{.id = dns::number16(bytes, 0), .flags = dns::number16(bytes, 2), .name = {}, .records = {}};
    if (ns_msg_count(message, ns_s_qd) > 0) {
        const auto question = recordAt(message, ns_s_qd, 0);
        packet.name = question.name;
        packet.type = question.type;
        packet.recordClass = question.recordClass;
    }
    for (const auto section : {ns_s_an, ns_s_ns, ns_s_ar}) {
        for (int index = 0; index < ns_msg_count(message, section); ++index)
            packet.records.emplace_back(recordAt(message, section, index)).section = " nud"[section];
    }
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
