#include "HidapiDevice.h"

#include <QMetaObject>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace kavelo::hid {
namespace {

/// The library cannot end a wait for a report, so the reader waits in slices of this many
/// milliseconds. retire() waits for the end of the current one.
constexpr int ReadSlice = 100;

/// Number of unread reports that a system keeps for a program, at most.
constexpr int MostUnreadReports = 64;

} // namespace

std::string libraryError()
{
    return QString::fromWCharArray(hid_error(nullptr)).toStdString();
}

HidapiDevice::HidapiDevice(std::string path)
    : m_path(std::move(path))
{
}

HidapiDevice::~HidapiDevice()
{
    HidapiDevice::retire();
}

void HidapiDevice::registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                               InputReportCallback callback, void *context)
{
    // The device is read even without a callback, and the reports are dropped. Otherwise the system
    // would keep them, and a callback registered later would get them as replies.
    m_callback = callback;
    m_buffer = buffer;
    m_context = context;
    ensureOpen();
}

bool HidapiDevice::setReport(std::span<const std::uint8_t, ReportSize> report)
{
    if (!ensureOpen()) {
        return false;
    }
    // The library expects the report ID before the report: 0, because the unit's reports are not
    // numbered.
    std::array<std::uint8_t, 1 + ReportSize> message = {};
    std::ranges::copy(report, message.begin() + 1);
    const int sent = hid_write(m_handle.device.get(), message.data(), message.size());
    if (sent == std::ssize(message)) {
        return true;
    }
    // The device is given up, and the manager finds it anew. Nothing more is written to it, because
    // before its version 0.15 the library mixes up the errors of a write and of a read beside it.
    m_state = State::Failed;
    m_reader->requestInterruption();
    return false;
}

bool HidapiDevice::tryPath() const
{
    std::string reason;
    return bool(openForUsAlone(reason).device);
}

void HidapiDevice::retire()
{
    if (m_reader) {
        m_reader->requestInterruption();
        m_reader->wait();
    }
    m_handle = {};
    m_state = State::Retired;
}

bool HidapiDevice::ensureOpen()
{
    if (m_state != State::Unused) {
        return m_state == State::Open;
    }
    std::string reason;
    m_handle = openForUsAlone(reason);
    if (!m_handle.device) {
        std::fprintf(stderr, "kavelo: cannot open %s: %s\n", m_path.c_str(), reason.c_str());
        m_state = State::Refused;
        return false;
    }
    // Reports that arrived before the lock was taken may be replies to another program.
    Report dropped = {};
    for (int i = 0; i < MostUnreadReports; ++i) {
        if (hid_read_timeout(m_handle.device.get(), dropped.data(), dropped.size(), 0) <= 0) {
            break;
        }
    }
    m_state = State::Open;
    m_reader.reset(QThread::create([this] { readReports(); }));
    m_reader->start();
    return true;
}

/// Opens and locks the device. When that fails, `reason` says why.
HidapiDevice::Handle HidapiDevice::openForUsAlone(std::string &reason) const
{
    Handle handle;
    handle.device.reset(hid_open_path(m_path.c_str()));
    if (!handle.device) {
        reason = libraryError();
    } else if (!handle.lock.take(m_path.c_str())) {
        reason = "another program uses it; this one takes over when that has let go";
        handle.device.reset();
    }
    return handle;
}

/// Runs in the reader's thread until the device can no longer be read or the reader is told to end.
void HidapiDevice::readReports()
{
    Report report = {};
    int received = 0;
    while (received >= 0 && !m_reader->isInterruptionRequested()) {
        received = hid_read_timeout(m_handle.device.get(), report.data(), report.size(), ReadSlice);
        if (received > 0) {
            const auto size = static_cast<std::size_t>(received);
            QMetaObject::invokeMethod(
                this, [this, report, size] { takeReport(std::span(report).first(size)); },
                Qt::QueuedConnection);
        }
    }
    QMetaObject::invokeMethod(
        this, [this] { takeEnd(); }, Qt::QueuedConnection);
}

void HidapiDevice::takeReport(std::span<const std::uint8_t> report)
{
    if (m_state == State::Open && m_callback) {
        const auto filled = m_buffer.first(report.size());
        std::ranges::copy(report, filled.begin());
        m_callback(m_context, filled); // the last statement: the callback may delete this device
    }
}

void HidapiDevice::takeEnd()
{
    if (m_state != State::Retired) {
        Q_EMIT gone();
    }
}

} // namespace kavelo::hid
