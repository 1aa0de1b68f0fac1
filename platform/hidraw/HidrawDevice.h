#pragma once

#include "FileDescriptor.h"
#include "Hid.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <string>

namespace kavelo::hid {

/// One hidraw node, from its arrival to its removal. Opened when it is first used; an open that
/// fails is tried again at the next use.
class HidrawDevice : public QObject,
                     public Device,
                     public std::enable_shared_from_this<HidrawDevice>
{
    Q_OBJECT

public:
    /// `syspath` is the node's directory under /sys, `node` its file under /dev.
    HidrawDevice(std::string syspath, std::string node);

    void registerInputReportCallback(std::span<std::uint8_t, ReportSize> buffer,
                                     InputReportCallback callback, void *context) override;
    [[nodiscard]] bool setReport(std::span<const std::uint8_t, ReportSize> report) override;

    [[nodiscard]] const std::string &syspath() const { return m_syspath; }

    /// Tries once more to open a node that could not be opened before. True when it can now; false
    /// also when it was never refused or has been opened since.
    [[nodiscard]] bool openAfterFailure();

    /// Ends the device: closes the node for good. Sending fails and no report arrives from now on.
    void retire();

Q_SIGNALS:
    /// The node can no longer be read: the device went, whether or not udev has said so yet.
    void gone();

private:
    bool ensureOpen();
    void reportOpenFailure(int error);
    void readReports();
    bool readReport();

    std::string m_syspath;
    std::string m_node;
    bool m_retired = false;
    bool m_openFailed = false;
    FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::span<std::uint8_t> m_buffer;
    InputReportCallback m_callback = nullptr;
    void *m_context = nullptr;
};

} // namespace kavelo::hid
