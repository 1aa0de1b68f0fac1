#pragma once

#include "FileDescriptor.h"
#include "Hid.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <string>

namespace kavelo::hid {

/// One hidraw node, from its arrival to its removal. Opened when it is first used, for this program
/// alone: the kernel gives every report to everybody who has the node open, so two programs would
/// take each other's replies for their own. The lock that keeps them apart goes with the descriptor
/// and binds only those who ask for it: a program that doesn't lock the node is neither noticed nor
/// kept out.
///
/// A node that is refused at its first use stays refused to whoever holds this device; once it can
/// be opened, it is for a new device to do so.
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

    /// Whether the node was refused and would be opened now.
    [[nodiscard]] bool isNoLongerRefused();

    /// Ends the device: closes the node for good. Sending fails and no report arrives from now on.
    void retire();

Q_SIGNALS:
    /// The node can no longer be read: the device went, whether or not udev has said so yet.
    void gone();

    /// The node could not be opened, for want of permission or because another program has it.
    void refused();

private:
    bool ensureOpen();
    FileDescriptor openForUsAlone();
    void refuse(const std::string &reason);
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
