#pragma once

#include "Names/DomainSet.h"

namespace stillgate::dns
{

/// Whether an answer sends its asker on to a blocked name: by an alias (CNAME, DNAME), or by a service that is
/// elsewhere (SVCB and HTTPS, alias mode: RFC 9460, 2.4.2). Also true where such a record can't be read.
///
/// THREAT: without this, anybody's name that is an alias of a blocked one would open that.
[[nodiscard]] bool leadsIntoBlocked(View answer, std::size_t questionEnd, const DomainSet& blocked);

} // namespace stillgate::dns
