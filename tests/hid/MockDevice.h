#pragma once

#include "FileDescriptor.h"
#include "KernelDevice.h"
#include "PluggedDevice.h"

#include <QSocketNotifier>

#include <umockdev.h>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace kavelo::test {

/// A device that umockdev mocks. The program must run under umockdev-wrapper.
///
/// The node is the terminal end of a pty. A terminal is read line by line, and a report is sent as
/// one line: each of its bytes is escaped, and an end-of-file character ends it.
class MockDevice : public PluggedDevice
{
public:
    [[nodiscard]] static bool isPrepared() { return Testbed != nullptr; }

    explicit MockDevice(const DeviceKind &kind)
        : PluggedDevice(kind.firmware)
    {
        makeNode();
        m_notifier.emplace(m_end.get(), QSocketNotifier::Read);
        QObject::connect(&*m_notifier, &QSocketNotifier::activated, [this] { receiveAll(); });
        powerOn();
        const std::string text =
            "P: " + m_parent + "\nE: SUBSYSTEM=hid\nE: HID_ID=" + kind.hidId +
            "\nE: HID_NAME=Kavelo\nE: HID_UNIQ=\nH: report_descriptor=" + kind.descriptor +
            "\n\nP: " + m_parent + "/" + m_name + "\nE: SUBSYSTEM=" + kind.subsystem +
            "\nE: DEVNAME=" + node() +
            "\nE: MAJOR=240\nE: MINOR=900\nA: dev=240:900\nL: device=..\n\n";
        EXPECT_TRUE(umockdev_testbed_add_from_string(Testbed.get(), text.c_str(), nullptr));
    }
    ~MockDevice() override
    {
        MockDevice::cut();
        MockDevice::sendEvent("remove");
        umockdev_testbed_remove_device(Testbed.get(), nodeSyspath().c_str());
        umockdev_testbed_remove_device(Testbed.get(), m_syspath.c_str());
        std::filesystem::remove(path());
    }

    void cut() override
    {
        m_notifier.reset();
        m_end.reset();
        powerOff();
    }

    void sendEvent(const char *action) override
    {
        umockdev_testbed_uevent(Testbed.get(), nodeSyspath().c_str(), action);
    }
    void queueReport(std::span<const std::uint8_t> report) override
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

    [[nodiscard]] std::string node() const override { return "/dev/" + m_name; }
    [[nodiscard]] std::string path() const override
    {
        return qgetenv("UMOCKDEV_DIR").toStdString() + node();
    }

private:
    [[nodiscard]] std::string nodeSyspath() const { return m_syspath + "/" + m_name; }
    void makeNode()
    {
        // No computer has so many nodes. As with the kernel's nodes, the number of a device that
        // has gone is used again.
        int number = 900;
        do {
            m_name = "hidraw" + std::to_string(number++);
        } while (std::filesystem::is_symlink(path()));
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
        std::filesystem::create_directories(std::filesystem::path(path()).parent_path());
        std::filesystem::create_symlink(::ptsname(end), path());
        // A process without a controlling terminal gets the node as one when it opens it. When
        // the node goes, the kernel sends SIGHUP, which would end the process.
        ::signal(SIGHUP, SIG_IGN);
    }

    /// Takes the requests that have arrived completely.
    void receiveAll()
    {
        std::array<std::uint8_t, 1 + hid::ReportSize> message = {};
        int waiting = 0;
        while (::ioctl(m_end.get(), FIONREAD, &waiting) == 0 && waiting >= std::ssize(message)) {
            EXPECT_GT(::read(m_end.get(), message.data(), message.size()), 0);
            receive(message);
        }
    }

    enum : std::uint8_t { EndOfFile = 0x04, Escape = 0x10 };

    /// Made when the process starts, because umockdev must be set up before libudev is used.
    inline static const std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)> Testbed{
        KernelDevice::isAvailable() ? nullptr : umockdev_testbed_new(), g_object_unref};
    inline static int s_plugged = 0;

    /// Never the same twice: the kernel does not use a directory's name again, either.
    const std::string m_parent = "/devices/device" + std::to_string(++s_plugged);
    const std::string m_syspath = "/sys" + m_parent;
    std::string m_name;    ///< the node's name
    FileDescriptor m_node; ///< keeps the pty from hanging up while the program does not use it
    FileDescriptor m_end;
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace kavelo::test
