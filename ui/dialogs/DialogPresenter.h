#pragma once

namespace kavelo {

class HID_PnP;
class PedalSettingDialog;

/// What a dialog needs of the window that presents it.
class DialogPresenter
{
public:
    /// The device link.
    [[nodiscard]] virtual HID_PnP &link() = 0;
    /// Calls the dialog's send() once the window knows the settings of the unit: at once, or later
    /// from the event loop. The dialog is disabled until then. When the setting cannot be sent, a
    /// message box says so; the dialog then stays open, or is dismissed if its unit has gone. Does
    /// nothing while another write or a restore runs.
    virtual void requestWrite(PedalSettingDialog &dialog) = 0;
    /// Sends the setting of the selected pedal and the timing parameters to the unit, and shows a
    /// message on success. The device link shows the failures of an exchange. Does nothing while
    /// `SettingEnabled` is false or the window does not know its unit.
    virtual void SettingDialog_OK() = 0;

protected:
    DialogPresenter() = default;
    ~DialogPresenter() = default;
    DialogPresenter(const DialogPresenter &) = default;
    DialogPresenter &operator=(const DialogPresenter &) = default;
};

} // namespace kavelo
