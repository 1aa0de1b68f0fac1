#include "HidrawDevice.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace kavelo::hid {
namespace {

/// Number of unread reports that the kernel keeps for a node.
constexpr int MostUnreadReports = 64;

bool isPermissionError(int error)
{
    return error == EACCES || error == EPERM;
}

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace

HidrawDevice::HidrawDevice(std::string syspath, std::string node)
    : m_syspath(std::move(syspath))
    , m_node(std::move(node))
{
}

void HidrawDevice::registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                               InputReportCallback callback, void *context)
{
    // The node is read even without a callback, and the reports are dropped. Otherwise the kernel
    // would keep them, and a callback registered later would get them as replies.
    m_callback = callback;
    m_buffer = buffer;
    m_context = context;
    ensureOpen();
}

bool HidrawDevice::setReport(std::span<const std::uint8_t, ReportSize> report)
{
    if (!ensureOpen()) {
        return false;
    }
    // hidraw expects the report ID before the report: 0, because the unit's reports are not
    // numbered.
    std::array<std::uint8_t, 1 + ReportSize> message = {};
    std::ranges::copy(report, message.begin() + 1);
    const ssize_t sent =
        uninterrupted([&] { return ::write(m_file.get(), message.data(), message.size()); });
    return sent == std::ssize(message);
}

bool HidrawDevice::isPresent() const
{
    return ::access(m_syspath.c_str(), F_OK) == 0;
}

bool HidrawDevice::tryNode() const
{
    std::string reason;
    return bool(openForUsAlone(reason));
}

void HidrawDevice::retire()
{
    m_retired = true;
    m_notifier.reset();
    m_file.reset();
}

bool HidrawDevice::ensureOpen()
{
    if (m_file) {
        return true;
    }
    if (m_retired || m_refused) {
        return false;
    }
    std::string reason;
    m_file = openForUsAlone(reason);
    if (!reason.empty()) {
        std::fprintf(stderr, "kavelo: cannot open %s: %s\n", m_node.c_str(), reason.c_str());
        m_refused = true;
        Q_EMIT refused();
    }
    if (!m_file) {
        return false;
    }
    dropUnreadReports();
    m_notifier = std::make_unique<QSocketNotifier>(m_file.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &HidrawDevice::readReport);
    return true;
}

/// Opens and locks the node. When the node is refused, the result is empty and `reason` says why.
/// When the device has gone, the result is empty without a reason.
FileDescriptor HidrawDevice::openForUsAlone(std::string &reason) const
{
    FileDescriptor file(
        uninterrupted([this] { return ::open(m_node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC); }));
    if (!file) {
        const int error = errno;
        reason = std::generic_category().message(error) +
                 (isPermissionError(error)
                      ? "; install the udev rule 70-kavelo.rules and plug the unit in again"
                      : "");
        return {};
    }
    // When a device has gone, the kernel may give the name of its node to the next device. A
    // directory under /sys is never reused. While it exists, the opened node is this device's.
    if (!isPresent()) {
        return {};
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        // Without the lock, another program could take this one's replies. So any error refuses.
        reason = errno == EWOULDBLOCK
                     ? "another program uses it; this one takes over when that has let go"
                     : "cannot lock it: " + std::generic_category().message(errno);
        return {};
    }
    return file;
}

/// Reports that arrived before the lock was taken may be replies to another program.
void HidrawDevice::dropUnreadReports()
{
    Report dropped = {};
    for (int i = 0; i < MostUnreadReports; ++i) {
        if (::read(m_file.get(), dropped.data(), dropped.size()) <= 0) {
            break;
        }
    }
}

/// Reads one report. Further reports wake the event loop again, so a unit that sends without pause
/// cannot block it.
void HidrawDevice::readReport()
{
    // The kernel drops the rest of a longer report.
    Report report = {};
    const ssize_t received =
        uninterrupted([&] { return ::read(m_file.get(), report.data(), report.size()); });
    if (received < 0 && errno == EAGAIN) {
        return;
    }
    if (received <= 0) {
        Q_EMIT gone();
    } else if (m_callback) {
        const auto filled = m_buffer.first(static_cast<std::size_t>(received));
        std::copy_n(report.begin(), filled.size(), filled.begin());
        m_callback(m_context, filled); // the last statement: the callback may delete this device
    }
}

} // namespace kavelo::hid
