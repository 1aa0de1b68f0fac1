#pragma once

#include "FileDescriptor.h"
#include "SimulatedUnit.h"
#include "WaitUntil.h"

#include <QSocketNotifier>

#include <gtest/gtest.h>
#include <umockdev.h>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kavelo::test {

using Bytes = std::vector<std::uint8_t>;

/// What is plugged in: by default the unit.
struct DeviceKind
{
    const char *hidId = "0003:00001209:00000001";
    const char *descriptor = "0600ff0901a101c0"; ///< one collection of usage page 0xFF00
    const char *subsystem = "hidraw";
    SimulatedUnit *firmware = nullptr; ///< takes the node's requests and answers them
};

/// A HID device that is plugged in for as long as this lives, as the program sees it: in sysfs,
/// by udev's events, and by a hidraw node that takes and gives reports. One at a time, and only in
/// a program run under umockdev-wrapper.
///
/// The node is the terminal end of a pty, which is read line by line: a report is a line, each of
/// its bytes escaped, with an end of file where other lines have a line feed.
class MockDevice
{
    Q_DISABLE_COPY_MOVE(MockDevice)

public:
    /// One that the machine itself surely does not have.
    static constexpr const char *Node = "/dev/hidraw900";

    explicit MockDevice(const DeviceKind &kind = {})
        : m_firmware(kind.firmware)
    {
        makeNode();
        m_notifier.emplace(m_end.get(), QSocketNotifier::Read);
        QObject::connect(&*m_notifier, &QSocketNotifier::activated, [this] { receive(); });
        if (m_firmware) {
            m_firmware->setPowered(true);
            QObject::connect(m_firmware, &SimulatedUnit::inputReport, &*m_notifier,
                             [this](const hid::Report &reply) { queueReport(reply); });
        }
        const std::string text = "P: " + m_parent + "\nE: SUBSYSTEM=hid\nE: HID_ID=" + kind.hidId +
                                 "\nH: report_descriptor=" + kind.descriptor +
                                 "\n\nP: " + m_parent + "/node\nE: SUBSYSTEM=" + kind.subsystem +
                                 "\nE: DEVNAME=" + Node +
                                 "\nE: MAJOR=240\nE: MINOR=900\nA: dev=240:900\n\n";
        EXPECT_TRUE(umockdev_testbed_add_from_string(Testbed.get(), text.c_str(), nullptr));
    }
    ~MockDevice()
    {
        cut();
        sendEvent("remove");
        umockdev_testbed_remove_device(Testbed.get(), (m_syspath + "/node").c_str());
        umockdev_testbed_remove_device(Testbed.get(), m_syspath.c_str());
    }

    /// Takes the device away without an event: the node is dead, but udev has not said so yet.
    void cut()
    {
        m_notifier.reset();
        m_end.reset();
        if (m_firmware) {
            m_firmware->setPowered(false);
        }
    }

    /// Sends any other udev event about the node.
    void sendEvent(const char *action) const
    {
        umockdev_testbed_uevent(Testbed.get(), (m_syspath + "/node").c_str(), action);
    }

    /// Lets the device send one input report.
    void queueReport(std::span<const std::uint8_t> report) const
    {
        Bytes line;
        for (const std::uint8_t byte : report) {
            line.insert(line.end(), {Escape, byte});
        }
        line.push_back(EndOfFile);
        EXPECT_EQ(::write(m_end.get(), line.data(), line.size()), std::ssize(line));
        // The kernel passes it on a moment later.
        pollfd readable = {m_node.get(), POLLIN, 0};
        ::poll(&readable, 1, 100);
    }

    static std::filesystem::path path() { return (qgetenv("UMOCKDEV_DIR") + Node).toStdString(); }

    /// The reports that the event loop has brought from the node, each with its report ID.
    std::vector<Bytes> writes;

private:
    void makeNode()
    {
        termios lines = {};
        lines.c_cflag = CS8 | CREAD;
        lines.c_lflag = ICANON | IEXTEN;
        lines.c_cc[VLNEXT] = Escape;
        lines.c_cc[VEOF] = EndOfFile;
        int end = -1;
        int node = -1;
        EXPECT_EQ(::openpty(&end, &node, nullptr, &lines, nullptr), 0);
        m_end = FileDescriptor(end);
        m_node = FileDescriptor(node);
        std::filesystem::create_directories(path().parent_path());
        std::filesystem::remove(path());
        std::filesystem::create_symlink(::ptsname(end), path());
        // Where nobody has a terminal, whoever opens the node has one, and ends with it.
        ::signal(SIGHUP, SIG_IGN);
    }

    /// Takes the requests that are there as a whole.
    void receive()
    {
        std::array<std::uint8_t, 1 + hid::ReportSize> message = {};
        int waiting = 0;
        while (::ioctl(m_end.get(), FIONREAD, &waiting) == 0 && waiting >= std::ssize(message)) {
            EXPECT_GT(::read(m_end.get(), message.data(), message.size()), 0);
            writes.emplace_back(message.begin(), message.end());
            if (m_firmware) {
                hid::Report request = {};
                std::copy_n(message.begin() + 1, request.size(), request.begin());
                m_firmware->receive(request);
            }
        }
    }

    enum : std::uint8_t { EndOfFile = 0x04, Escape = 0x10 };

    /// There before anything asks for udev.
    inline static const std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)> Testbed{
        umockdev_testbed_new(), g_object_unref};
    inline static int s_plugged = 0;

    /// Like the kernel, which never gives a directory's name twice.
    const std::string m_parent = "/devices/device" + std::to_string(++s_plugged);
    const std::string m_syspath = "/sys" + m_parent;
    SimulatedUnit *m_firmware;
    FileDescriptor m_node; ///< keeps the pty from hanging up while the program does not use it
    FileDescriptor m_end;
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace kavelo::test
