#pragma once

#include <unistd.h>
#include <utility>

namespace stillgate
{

/// An open file descriptor, closed with this object.
class FileDescriptor
{
public:
    /// Takes over `number`; negative for none.
    explicit FileDescriptor(int number)
        : m_number(number)
    {}

    FileDescriptor(FileDescriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }

    ~FileDescriptor()
    {
        if (isOpen())
            ::close(m_number);
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }

    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

} // namespace stillgate
