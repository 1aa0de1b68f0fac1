#pragma once

#include "DeviceSet.h"
#include "Hid.h"
#include "HidapiDevice.h"

#include <QObject>
#include <QTimer>

#include <string>

namespace kavelo::hid {

/// Finds the matching devices with the library hidapi. The library announces neither arrivals nor
/// removals, so the manager compares its set with the library's list twice a second while no device
/// is open.
class HidapiManager : public QObject, public DeviceSet<HidapiDevice>
{
    Q_OBJECT

public:
    HidapiManager();
    HidapiManager(const HidapiManager &) = delete;
    HidapiManager &operator=(const HidapiManager &) = delete;
    /// Retires all devices: sending to one that is still referred to fails from now on.
    ~HidapiManager() override;

    void setDeviceMatching(const Matching &matching) override;
    bool open() override;

private:
    void look();
    void addPath(const std::string &path);
    void letGo(const Ref &device);

    Matching m_matching;
    QTimer m_timer{this}; ///< calls look()
};

} // namespace kavelo::hid
