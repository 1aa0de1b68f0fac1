#pragma once

#include "DeviceLock.h"
#include "Hid.h"

#include <QObject>
#include <QThread>

#include <hidapi.h>

#include <memory>
#include <string>

namespace kavelo::hid {

/// The library's text about the latest failure to list or to open devices.
[[nodiscard]] std::string libraryError();

/// One device from its arrival to its removal. It is opened at its first use and locked. While it
/// is open, a thread of its own waits for reports and posts them to the main thread.
///
/// A refused device, one that could not be opened or locked, stays refused. When it can be opened,
/// the manager announces a new device in its place.
class HidapiDevice : public QObject, public Device
{
    Q_OBJECT

public:
    /// `path` is the library's name of the device.
    explicit HidapiDevice(std::string path);
    HidapiDevice(const HidapiDevice &) = delete;
    HidapiDevice &operator=(const HidapiDevice &) = delete;
    ~HidapiDevice() override;

    void registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                     InputReportCallback callback, void *context) override;
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, ReportSize> report) override;

    [[nodiscard]] const std::string &path() const { return m_path; }
    [[nodiscard]] bool isOpen() const { return m_state == State::Open; }
    [[nodiscard]] bool isRefused() const { return m_state == State::Refused; }

    /// Opens and locks the device and closes it again. Returns whether that succeeded.
    [[nodiscard]] bool tryPath() const;

    /// Closes the device for good. From now on sending fails and no report arrives.
    void retire();

Q_SIGNALS:
    /// The device can no longer be read or written, so it has gone.
    void gone();

private:
    enum class State { Unused, Open, Failed, Refused, Retired };

    struct CloseDevice
    {
        void operator()(hid_device *device) const { hid_close(device); }
    };
    struct Handle
    {
        std::unique_ptr<hid_device, CloseDevice> device;
        DeviceLock lock;
    };

    bool ensureOpen();
    Handle openForUsAlone(std::string &reason) const;
    void readReports();
    void takeReport(std::span<const std::uint8_t> report);
    void takeEnd();

    std::string m_path;
    State m_state = State::Unused;
    Handle m_handle;
    std::unique_ptr<QThread> m_reader; ///< runs readReports()
    std::span<std::uint8_t> m_buffer;
    InputReportCallback m_callback = nullptr;
    void *m_context = nullptr;
};

} // namespace kavelo::hid
