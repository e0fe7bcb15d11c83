#include "Guard/SealedText.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace stillgate::guard
{

Answer<SealedText> SealedText::map(int descriptor)
{
    constexpr int neededSeals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW;
    const int seals = ::fcntl(descriptor, F_GET_SEALS); // fails for every other kind of file
    if (seals < 0 || (seals & neededSeals) != neededSeals)
        return refusal(Refusal::Kind::invalidArgument, "the block isn't a memory file sealed against changes");
    struct stat status{};
    if (::fstat(descriptor, &status) != 0 || status.st_size <= 0 || static_cast<std::size_t>(status.st_size) > largest)
        return refusal(Refusal::Kind::invalidArgument, "the block is empty, or larger than 64 MB");
    const auto size = static_cast<std::size_t>(status.st_size);
    void* bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (bytes == MAP_FAILED)
        return refusal(Refusal::Kind::failed, "the block can't be read");
    return SealedText{{static_cast<const char*>(bytes), size}};
}

SealedText::~SealedText()
{
    if (!m_bytes.empty())
        ::munmap(const_cast<char*>(m_bytes.data()), m_bytes.size());
}

} // namespace stillgate::guard
