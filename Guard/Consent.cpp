#include "Guard/Consent.h"

namespace stillgate::guard
{

Consent neededConsent(Force standing, Force wanted, bool dropsNames)
{
    if (standing == Force::permanent && wanted != Force::permanent)
        return Consent::unblockPermanent;
    // Where nothing stands for the user, a removal still clears away what an interrupted one has left.
    return wanted == Force::none || dropsNames ? Consent::unblock : Consent::block;
}

const char* polkitAction(Consent consent)
{
    switch (consent) {
    case Consent::block:
        return "com.stillgate.guard.block";
    case Consent::unblock:
        return "com.stillgate.guard.unblock";
    case Consent::unblockPermanent:
        break;
    }
    return "com.stillgate.guard.unblock-permanent";
}

} // namespace stillgate::guard
