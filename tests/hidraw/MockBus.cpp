#include "MockBus.h"

#include "FileDescriptor.h"
#include "SimulatedUnit.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <umockdev.h>

#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>

namespace kavelo::test {
namespace {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

void require(bool holds, const char *what)
{
    if (!holds) {
        throw std::runtime_error(what);
    }
}

} // namespace

struct MockBus::Bed
{
    std::unique_ptr<UMockdevTestbed, Unref> testbed{umockdev_testbed_new()};
};

/// One plugged device. The node is a pty that carries no report: it holds one byte while any
/// report is queued, so that a poll of the node wakes, and hangs up when the device is cut.
/// The three handlers run on umockdev's thread.
struct MockBus::Unit
{
    explicit Unit(const std::filesystem::path &link)
    {
        int master = -1;
        int slave = -1;
        std::array<char, 64> name = {};
        termios raw = {};
        ::cfmakeraw(&raw);
        require(::openpty(&master, &slave, name.data(), &raw, nullptr) == 0, "openpty");
        bell = FileDescriptor(master);
        const FileDescriptor end(slave);
        terminal = name.data();
        std::filesystem::create_directories(link.parent_path());
        std::filesystem::remove(link);
        std::filesystem::create_symlink(terminal, link);
        g_signal_connect(handler.get(), "handle-read", G_CALLBACK(&Unit::handleRead), this);
        g_signal_connect(handler.get(), "handle-write", G_CALLBACK(&Unit::handleWrite), this);
    }

    Unit(const Unit &) = delete;
    Unit &operator=(const Unit &) = delete;
    /// A program that still has the node open must not reach a unit that is gone.
    ~Unit() { g_signal_handlers_disconnect_by_data(handler.get(), this); }

    void ring() const { require(::write(bell.get(), "!", 1) == 1, "doorbell"); }

    static gboolean handleRead(UMockdevIoctlBase *, UMockdevIoctlClient *client, Unit *unit);
    static gboolean handleWrite(UMockdevIoctlBase *, UMockdevIoctlClient *client, Unit *unit);

    std::unique_ptr<UMockdevIoctlBase, Unref> handler{umockdev_ioctl_base_new()};
    std::vector<std::string> syspaths; ///< of the hidraw node and of its HID parent
    std::filesystem::path terminal;    ///< what the node is a link to
    SimulatedUnit *firmware = nullptr;
    QObject connection;       ///< of the firmware's replies
    mutable std::mutex mutex; ///< guards what follows
    FileDescriptor bell;
    std::deque<Bytes> reports;
    std::vector<Bytes> writes;
    int writeError = 0;
    int missing = 0;
};

gboolean MockBus::Unit::handleRead(UMockdevIoctlBase *, UMockdevIoctlClient *client, Unit *unit)
{
    const std::lock_guard lock(unit->mutex);
    if (!unit->bell) {
        umockdev_ioctl_client_complete(client, -1, EIO);
        return TRUE;
    }
    int error = 0; // the pty's byte is taken, or its absence is waited for or an error
    const glong taken = umockdev_ioctl_client_execute(client, &error, nullptr);
    if (unit->reports.empty()) {
        umockdev_ioctl_client_complete(client, taken, error);
        return TRUE;
    }
    const Bytes report = unit->reports.front();
    unit->reports.pop_front();
    if (!unit->reports.empty()) {
        unit->ring();
    }
    UMockdevIoctlData *target = umockdev_ioctl_client_get_arg(client);
    Bytes bytes(report.begin(),
                report.begin() + std::min(std::ssize(report), std::ptrdiff_t{target->data_len}));
    umockdev_ioctl_data_update(target, 0, bytes.data(), static_cast<gint>(bytes.size()));
    umockdev_ioctl_client_complete(client, static_cast<glong>(bytes.size()), 0);
    return TRUE;
}

gboolean MockBus::Unit::handleWrite(UMockdevIoctlBase *, UMockdevIoctlClient *client, Unit *unit)
{
    const std::lock_guard lock(unit->mutex);
    const int error = unit->bell ? unit->writeError : ENODEV;
    if (error != 0) {
        umockdev_ioctl_client_complete(client, -1, error);
        return TRUE;
    }
    const UMockdevIoctlData *source = umockdev_ioctl_client_get_arg(client);
    unit->writes.emplace_back(source->data, source->data + source->data_len);
    if (unit->firmware) {
        hid::Report request = {};
        std::copy_n(source->data + 1, request.size(), request.begin());
        QMetaObject::invokeMethod(
            unit->firmware, [firmware = unit->firmware, request] { firmware->receive(request); },
            Qt::QueuedConnection);
    }
    umockdev_ioctl_client_complete(client, source->data_len - unit->missing, 0);
    return TRUE;
}

MockBus::MockBus()
    : m_bed(std::make_unique<Bed>())
{
}

MockBus::~MockBus()
{
    while (!m_units.empty()) {
        unplug(std::string(m_units.begin()->first));
    }
}

std::string MockBus::plug(const PluggedDevice &options)
{
    std::string node = "/dev/hidraw" + std::to_string(options.number);
    require(!m_units.contains(node), "this node is plugged already");
    gchar *root = umockdev_testbed_get_root_dir(m_bed->testbed.get());
    auto unit = std::make_unique<Unit>(root + node);
    g_free(root);
    if (options.firmware) {
        unit->firmware = options.firmware;
        unit->firmware->setPowered(true);
        QObject::connect(unit->firmware, &SimulatedUnit::inputReport, &unit->connection,
                         [this, node](const hid::Report &reply) { queueReport(node, reply); });
    }

    const auto number = QString::number(options.number);
    const auto vendor = QStringLiteral("%1").arg(options.vendorId, 4, 16, QLatin1Char('0'));
    const auto product = QStringLiteral("%1").arg(options.productId, 4, 16, QLatin1Char('0'));
    const auto parent = QStringLiteral("/devices/usb1/1-1/1-1:1.0/0003:%1:%2.%3");
    const QString hid = parent.arg(vendor, product, number);
    const QString hidraw = hid + QStringLiteral("/hidraw/hidraw") + number;
    const QByteArray descriptor(reinterpret_cast<const char *>(options.descriptor.data()),
                                std::ssize(options.descriptor));
    const auto text = QStringLiteral("P: %1\nE: SUBSYSTEM=hid\nE: HID_ID=0003:0000%2:0000%3\n"
                                     "H: report_descriptor=%4\n\n"
                                     "P: %5\nE: SUBSYSTEM=%8\nE: DEVNAME=%6\n"
                                     "E: MAJOR=240\nE: MINOR=%7\nA: dev=240:%7\n\n")
                          .arg(hid, vendor, product, QString::fromLatin1(descriptor.toHex()),
                               hidraw, QString::fromStdString(node), number, options.subsystem);
    unit->syspaths = {"/sys" + hidraw.toStdString(), "/sys" + hid.toStdString()};
    UMockdevTestbed *testbed = m_bed->testbed.get();
    require(umockdev_testbed_attach_ioctl(testbed, node.c_str(), unit->handler.get(), nullptr),
            "attach_ioctl");
    require(umockdev_testbed_add_from_string(testbed, qUtf8Printable(text), nullptr),
            "add_from_string");
    m_units.emplace(node, std::move(unit));
    return node;
}

void MockBus::unplug(const std::string &node)
{
    cut(node);
    sendEvent(node, "remove");
    for (const std::string &path : m_units.at(node)->syspaths) {
        umockdev_testbed_remove_device(m_bed->testbed.get(), path.c_str());
    }
    umockdev_testbed_detach_ioctl(m_bed->testbed.get(), node.c_str(), nullptr);
    m_units.erase(node);
}

void MockBus::cut(const std::string &node)
{
    Unit &unit = *m_units.at(node);
    const std::lock_guard lock(unit.mutex);
    unit.bell.reset();
    if (unit.firmware) {
        unit.firmware->setPowered(false);
    }
}

void MockBus::sendEvent(const std::string &node, const char *action)
{
    umockdev_testbed_uevent(m_bed->testbed.get(), m_units.at(node)->syspaths.front().c_str(),
                            action);
}

void MockBus::queueReport(const std::string &node, std::span<const std::uint8_t> report)
{
    Unit &unit = *m_units.at(node);
    const std::lock_guard lock(unit.mutex);
    unit.reports.emplace_back(report.begin(), report.end());
    if (unit.reports.size() == 1) {
        unit.ring();
    }
}

std::size_t MockBus::unreadReports(const std::string &node) const
{
    const Unit &unit = *m_units.at(node);
    const std::lock_guard lock(unit.mutex);
    return unit.reports.size();
}

void MockBus::setWriteResult(const std::string &node, int error, int missing)
{
    Unit &unit = *m_units.at(node);
    const std::lock_guard lock(unit.mutex);
    unit.writeError = error;
    unit.missing = missing;
}

void MockBus::setPermitted(const std::string &node, bool permitted)
{
    std::filesystem::permissions(m_units.at(node)->terminal, permitted
                                                                 ? std::filesystem::perms(0600)
                                                                 : std::filesystem::perms::none);
}

std::vector<Bytes> MockBus::writes(const std::string &node) const
{
    const Unit &unit = *m_units.at(node);
    const std::lock_guard lock(unit.mutex);
    return unit.writes;
}

} // namespace kavelo::test
