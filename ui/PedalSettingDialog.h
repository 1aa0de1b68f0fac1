#pragma once

#include "Choice.h"
#include "Hid.h"
#include "PedalSetting.h"

#include <QDialog>

#include <functional>

namespace kavelo {

class MainWindowViewController;

/// The base class of the dialogs that set one pedal. A dialog edits the pedal that
/// `SelectedPedalNo` gives at its creation. It sends the setting through the main window, and it
/// deletes itself when it is dismissed.
class PedalSettingDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PedalSettingDialog)

public:
    explicit PedalSettingDialog(MainWindowViewController &presenter);
    ~PedalSettingDialog() override;

    /// Loads the dialog and opens it over the main window. Does not wait until it is closed.
    /// Loading may wait for the unit, and the dialog may have been deleted when this returns.
    void present();

    /// Dismisses the dialog. Every way of closing it ends in this function.
    void done(int result) override;
    /// Escape and the close button of the frame. Ignored while the dialog is disabled, that is
    /// while a write or a restore runs.
    void reject() override;

protected:
    virtual void viewDidLoad() = 0;
    /// Shows the loaded dialog and returns at once. The dialog is not modal, so that the main
    /// window can still be closed and the program quit. At most one dialog is open at a time.
    virtual void appear() { show(); }
    virtual void viewWillDisappear() {}
    /// Whether the program, and not the user, is closing the dialog.
    [[nodiscard]] virtual bool isTakenDown() const { return false; }

    void dismiss() { done(Rejected); }
    [[nodiscard]] bool isDismissed() const { return m_dismissed; }
    /// Lets `buildRecord` store the setting in the row of the pedal, sends it and dismisses the
    /// dialog, even when sending fails. Waits for the unit. While another write or a restore runs,
    /// nothing happens and the dialog stays open. When the unit is not the one that was edited,
    /// nothing is sent and the dialog is dismissed.
    void write(const std::function<void()> &buildRecord);
    /// Sends the row as it is and dismisses the dialog.
    void sendAndDismiss();

    [[nodiscard]] MainWindowViewController &presenter() const { return m_presenter; }
    /// The index of the edited pedal. `SelectedPedalNo` may differ, because a read that is still
    /// running changes it.
    [[nodiscard]] int pedal() const { return m_pedal; }
    /// The pedal's row of the setting arrays.
    [[nodiscard]] std::uint8_t &outputMode() const { return OutputMode.at(row()); }
    [[nodiscard]] CommonRecord &commonData() const { return CommonData.at(row()); }
    [[nodiscard]] const AdditionalBlock &additionalData() const { return AdditionalData.at(row()); }

private:
    [[nodiscard]] std::size_t row() const { return static_cast<std::size_t>(m_pedal); }

    MainWindowViewController &m_presenter;
    const hid::DeviceRef m_unit; ///< the unit that was held when the dialog was created
    const int m_pedal;
    const QString m_pedalName;
    bool m_dismissed = false;
};

} // namespace kavelo
