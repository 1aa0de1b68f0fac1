#pragma once

#include "HID_PnP.h"
#include "PedalSetting.h"
#include "Protocol.h"

namespace kavelo {

/// Puts the module-wide state of the settings and of the link into that of a fresh process, for
/// whoever runs one link after another.
inline void resetLinkState()
{
    OutputMode = {};
    CommonData = {};
    AdditionalData = {};
    SelectedPedalNo = 0;
    OutputPacketBuffer = {};
    InputPacketBuffer = {};
    VersionNumberMajor = VersionNumberMinor = VersionNumberRevision = 0;
    NumberOfPedals = DataNo = Count_timeout = 0;
    for (bool *flag :
         {&isConnected, &DeviceDetected, &DeviceDetectedChanged, &StandardSettingDialogOpen,
          &CloseStandardSetting, &UnexpectedReply, &flag_MyNewDeviceCallback,
          &flag_MyRemovalCallback, &Flag_send, &Flag_input, &Flag_timeout}) {
        *flag = false;
    }
}

} // namespace kavelo
