#pragma once

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#endif

namespace kavelo::hid {

/// An advisory lock on a device's file. It ends with the process. Programs that do not take it are
/// neither noticed nor kept out. On systems where a device is no file, or a file that cannot be
/// locked, there is no lock.
class DeviceLock
{
public:
    /// Returns false when another program has the lock.
    [[nodiscard]] bool take([[maybe_unused]] const char *path)
    {
#ifdef Q_OS_UNIX
        // A file of its own: the library does not give the one that it has opened.
        m_file = FileDescriptor(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        return !m_file || ::flock(m_file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
#else
        return true;
#endif
    }

private:
#ifdef Q_OS_UNIX
    FileDescriptor m_file;
#endif
};

} // namespace kavelo::hid
