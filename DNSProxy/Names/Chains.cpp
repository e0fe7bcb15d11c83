#include "Names/Chains.h"

#include "Message/Header.h"
#include "Message/Records.h"

namespace stillgate::dns
{

namespace
{

/// Where the name stands that the record leads to; nothing if it leads nowhere.
std::optional<std::size_t> targetOf(View answer, const Record& record)
{
    if (record.type == type::cname || record.type == type::dname)
        return record.dataBegin;
    const bool isService = record.type == type::svcb || record.type == type::https;
    const bool isAlias = isService && record.end - record.dataBegin >= 2 && number16(answer, record.dataBegin) == 0;
    return isAlias ? std::optional{record.dataBegin + 2} : std::nullopt;
}

} // namespace

bool leadsIntoBlocked(View answer, std::size_t questionEnd, const DomainSet& blocked)
{
    Records records{answer, questionEnd};
    for (Record record; records.next(record) && record.section == Section::answer;) {
        const auto target = targetOf(answer, record);
        if (!target)
            continue;
        DomainName name;
        if (!name.read(answer, *target) || blocked.blockedPart(name))
            return true;
    }
    return false;
}

} // namespace stillgate::dns
