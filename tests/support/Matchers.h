#pragma once

#include <gmock/gmock.h>

namespace stillgate::test
{

// What tests say most often, by its bare name.
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

} // namespace stillgate::test
