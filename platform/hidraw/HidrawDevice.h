#pragma once

#include "FileDescriptor.h"
#include "Hid.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <string>

namespace kavelo::hid {

/// One hidraw node from its arrival to its removal. It is opened at its first use and locked. The
/// kernel sends every report to every program that has the node open, so without the lock two
/// programs would take each other's replies for their own. The lock ends when the file is closed.
/// Programs that do not take the lock are neither noticed nor kept out.
///
/// A refused device, one whose node could not be opened or locked, stays refused. When its node can
/// be opened, the manager announces a new device for it.
class HidrawDevice : public QObject, public Device
{
    Q_OBJECT

public:
    /// `syspath` is the node's directory under /sys, `node` its file under /dev.
    HidrawDevice(std::string syspath, std::string node);

    void registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                     InputReportCallback callback, void *context) override;
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, ReportSize> report) override;

    [[nodiscard]] const std::string &syspath() const { return m_syspath; }

    /// Whether the system still has the device.
    [[nodiscard]] bool isPresent() const;

    /// Whether the node could not be opened or locked.
    [[nodiscard]] bool isRefused() const { return m_refused; }

    /// Opens and locks the node and closes it again. Returns whether that succeeded.
    [[nodiscard]] bool tryNode() const;

    /// Closes the node for good. From now on sending fails and no report arrives.
    void retire();

Q_SIGNALS:
    /// The node can no longer be read, so the device has gone. udev may report the removal later.
    void gone();

    /// The node could not be opened, for example for lack of permission, or another program has
    /// locked it.
    void refused();

private:
    bool ensureOpen();
    FileDescriptor openForUsAlone(std::string &reason) const;
    void dropUnreadReports();
    void readReport();

    std::string m_syspath;
    std::string m_node;
    bool m_retired = false;
    bool m_refused = false;
    FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::span<std::uint8_t> m_buffer;
    InputReportCallback m_callback = nullptr;
    void *m_context = nullptr;
};

} // namespace kavelo::hid
