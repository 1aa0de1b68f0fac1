#pragma once

#include "HID_PnP.h"
#include "PedalSetting.h"
#include "Protocol.h"

namespace kavelo {

/// Gives the module-wide variables of the settings and of the link the values that they have at the
/// start of a process. For programs that use one link after another.
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
