#pragma once

#include <unistd.h>

#include <utility>

namespace kavelo {

/// Owns one open file descriptor, or none (-1).
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd)
        : m_fd(fd)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        other.reset();
        return *this;
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }

    void reset()
    {
        if (const int fd = std::exchange(m_fd, -1); fd >= 0) {
            ::close(fd);
        }
    }

private:
    int m_fd = -1;
};

} // namespace kavelo
