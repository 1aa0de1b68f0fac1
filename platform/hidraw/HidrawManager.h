#pragma once

#include "DeviceSet.h"
#include "Hid.h"
#include "HidrawDevice.h"
#include "UdevHandles.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kavelo::hid {

/// Finds the matching hidraw nodes with udev and follows their arrival and removal.
class HidrawManager : public QObject, public DeviceSet<HidrawDevice>
{
    Q_OBJECT

public:
    HidrawManager();
    HidrawManager(const HidrawManager &) = delete;
    HidrawManager &operator=(const HidrawManager &) = delete;
    /// Retires all devices: sending to one that is still referred to fails from now on.
    ~HidrawManager() override;

    void setDeviceMatching(const Matching &matching) override;
    bool open() override;

private:
    bool rescan();
    bool startMonitor();
    bool enumerate();
    void receiveEvents();
    void takeEvent(udev_device *event);
    [[nodiscard]] bool matches(udev_device *node) const;
    /// The device of a node. Null when the set has none.
    [[nodiscard]] Ref find(std::string_view syspath) const;
    void addNode(udev_device *node);
    void letGo(const Ref &device);
    void complain(const char *what, const std::string &reason);

    Matching m_matching;
    Udev m_udev;
    UdevMonitor m_monitor;
    std::unique_ptr<QSocketNotifier> m_monitorNotifier;
    /// Calls rescan(). Runs only while a node is refused or udev does not work: no event announces
    /// the end of such a problem.
    QTimer m_retry{this};
    bool m_complained = false;
};

} // namespace kavelo::hid
