#include "UhidDevice.h"

#include <fcntl.h>
#include <linux/input.h>
#include <linux/uhid.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace kavelo {
namespace {

constexpr const char *UhidFile = "/dev/uhid";

/// Copies the bytes into a field of `size` bytes; false when they don't fit.
template <class Bytes>
bool copy(const Bytes &bytes, std::uint8_t *field, std::size_t size)
{
    const bool fits = std::size_t(bytes.size()) <= size;
    if (fits) {
        std::copy(bytes.begin(), bytes.end(), field);
    }
    return fits;
}

bool write(const FileDescriptor &file, const uhid_event &event)
{
    return ::write(file.get(), &event, sizeof(event)) == sizeof(event);
}

} // namespace

int UhidDevice::plugIn(const UhidIdentity &identity)
{
    FileDescriptor file(::open(UhidFile, O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        return errno;
    }
    uhid_event event = {};
    event.type = UHID_CREATE2;
    uhid_create2_req &device = event.u.create2;
    if (!copy(identity.name, device.name, sizeof(device.name)) ||
        !copy(identity.uniqueId, device.uniq, sizeof(device.uniq)) ||
        !copy(identity.reportDescriptor, device.rd_data, sizeof(device.rd_data))) {
        return E2BIG;
    }
    device.rd_size = static_cast<std::uint16_t>(identity.reportDescriptor.size());
    device.bus = BUS_USB;
    device.vendor = identity.vendorId;
    device.product = identity.productId;
    if (!write(file, event)) {
        return errno;
    }
    m_file = std::move(file);
    m_notifier = std::make_unique<QSocketNotifier>(m_file.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UhidDevice::receiveEvent);
    return 0;
}

void UhidDevice::unplug()
{
    m_notifier.reset();
    m_file.reset();
}

bool UhidDevice::sendReport(std::span<const std::uint8_t> report)
{
    uhid_event event = {};
    event.type = UHID_INPUT2;
    uhid_input2_req &input = event.u.input2;
    input.size = static_cast<std::uint16_t>(report.size());
    return m_file && copy(report, input.data, sizeof(input.data)) && write(m_file, event);
}

/// Takes one event from the kernel. Bytes that a short event lacks are 0.
void UhidDevice::receiveEvent()
{
    uhid_event event = {};
    if (::read(m_file.get(), &event, sizeof(event)) < ssize_t(sizeof(event.type))) {
        return;
    }
    uhid_event answer = {};
    switch (event.type) {
    case UHID_OUTPUT:
        if (const uhid_output_req &output = event.u.output;
            output.rtype == UHID_OUTPUT_REPORT && output.size <= sizeof(output.data)) {
            const QByteArray report(reinterpret_cast<const char *>(output.data), output.size);
            Q_EMIT reportReceived(report); // the last statement, as the receiver may unplug it
        }
        return;
    // The unit does not support these requests. Without an answer the program that makes one would
    // wait for 5 s.
    case UHID_GET_REPORT:
        answer.type = UHID_GET_REPORT_REPLY;
        answer.u.get_report_reply.id = event.u.get_report.id;
        answer.u.get_report_reply.err = EIO;
        break;
    case UHID_SET_REPORT:
        answer.type = UHID_SET_REPORT_REPLY;
        answer.u.set_report_reply.id = event.u.set_report.id;
        answer.u.set_report_reply.err = EIO;
        break;
    default: // opened, closed, started or stopped
        return;
    }
    write(m_file, answer);
}

} // namespace kavelo
