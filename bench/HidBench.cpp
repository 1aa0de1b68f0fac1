#include "Hid.h"
#include "SimulatedUnit.h"
#include "UhidDevice.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace kavelo {
namespace {

constexpr hid::Matching Unit = {0x1209, 0x0001, 0xFF00};
constexpr std::size_t Exchanges = 2000;

void waitForEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Plugs in a device that answers every report at once. Returns whether that succeeded.
bool plugIn(UhidDevice &device)
{
    QObject::connect(&device, &UhidDevice::reportReceived,
                     [&device] { device.sendReport(hid::Report()); });
    const QByteArray descriptor = QByteArray::fromHex(UnitReportDescriptor);
    const int error = device.plugIn({.name = "Kavelo of the benchmarks",
                                     .uniqueId = {},
                                     .vendorId = Unit.vendorId,
                                     .productId = Unit.productId,
                                     .reportDescriptor = descriptor});
    return error == 0;
}

/// Returns the time of each exchange in microseconds, the shortest one first. Empty when a report
/// could not be sent.
std::vector<double> measure(hid::Device &device)
{
    hid::Report buffer = {};
    bool isAnswered = false;
    device.registerInputReportCallback(
        buffer, [](void *answered, auto) { *static_cast<bool *>(answered) = true; }, &isAnswered);
    std::vector<double> times;
    while (times.size() < Exchanges) {
        const auto start = std::chrono::steady_clock::now();
        if (!device.setReport(hid::Report())) {
            return {};
        }
        while (!isAnswered) {
            waitForEvents();
        }
        isAnswered = false;
        const auto time = std::chrono::steady_clock::now() - start;
        times.push_back(std::chrono::duration<double, std::micro>(time).count());
    }
    std::ranges::sort(times);
    return times;
}

} // namespace
} // namespace kavelo

/// Prints the median and the 99th percentile of the time of an exchange, in microseconds, through
/// the HID backend that is linked and this computer's own kernel.
int main(int argc, char *argv[])
{
    using namespace kavelo;
    const QCoreApplication application(argc, argv);
    UhidDevice unit;
    if (!plugIn(unit)) {
        std::fputs("A device can be plugged in only by root, with the kernel's module uhid.\n",
                   stderr);
        return 1;
    }
    const std::unique_ptr<hid::Manager> manager = hid::createManager();
    manager->setDeviceMatching(Unit);
    if (!manager->open()) {
        return 1;
    }
    while (manager->copyDevices().empty()) {
        waitForEvents();
    }
    const std::vector<double> times = measure(*manager->copyDevices().front());
    if (times.empty()) {
        return 1;
    }
    std::printf("%.0f %.0f\n", times[times.size() / 2], times[times.size() * 99 / 100]);
}
