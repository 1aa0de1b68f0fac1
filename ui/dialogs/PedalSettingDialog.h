#pragma once

#include "Hid.h"
#include "PedalSetting.h"

#include <QDialog>

namespace kavelo {

class DialogPresenter;

/// A dialog may send its record. Cleared by the main window before it opens the Standard dialog,
/// set by that dialog when it has built a record. The Advanced dialog does not change it: whoever
/// opens that dialog sets it.
inline bool SettingEnabled = false;
/// Name of the pedal being edited, for the success message and the heading of the Advanced dialog.
/// Set by the main window when it opens the Standard dialog, and by a dialog before it writes.
inline QString PedalName;

/// The base class of the dialogs that set one pedal. A dialog edits the pedal that
/// `SelectedPedalNo` gives at its creation, on the unit that is held at that time. It sends the
/// setting through the main window, and it deletes itself when it is dismissed.
class PedalSettingDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PedalSettingDialog)

public:
    PedalSettingDialog(DialogPresenter &presenter, QWidget &mainWindow);
    ~PedalSettingDialog() override;

    /// Loads the dialog and opens it over the main window. Does not wait until it is closed.
    /// Loading may wait for the unit. When the unit goes meanwhile, or the main window is closed,
    /// the dialog does not open. It may have been deleted when this returns.
    void present();

    /// Stores the setting that the user has chosen in the row of the pedal, sends it and dismisses
    /// the dialog, even when sending fails. Waits for the unit. Called by the presenter after
    /// requestWrite().
    void send();

    /// Closes the dialog without sending anything.
    void dismiss() { done(Rejected); }
    /// Dismisses the dialog. Every way of closing it ends in this function.
    void done(int result) override;
    /// Escape and the close button of the frame. Ignored while the dialog is disabled, that is
    /// while a write or a restore runs.
    void reject() override;

    [[nodiscard]] bool isDismissed() const { return m_dismissed; }
    /// Whether the unit whose pedal is edited is still held.
    [[nodiscard]] bool isUnitHeld() const;
    /// The index of the edited pedal. `SelectedPedalNo` may differ, because a read that is still
    /// running changes it.
    [[nodiscard]] int pedal() const { return m_pedal; }

protected:
    virtual void viewDidLoad() = 0;
    /// Shows the loaded dialog and returns at once. The dialog is not modal, so that the main
    /// window can still be closed and the program quit. At most one dialog is open at a time.
    virtual void appear() { show(); }
    virtual void viewWillDisappear() {}
    /// Stores the setting that the user has chosen in the row of the pedal.
    virtual void buildRecord() = 0;

    /// Asks the presenter to have the setting sent. The action of a button that writes.
    void requestWrite();
    /// Sends the row as it is and dismisses the dialog.
    void sendAndDismiss();

    [[nodiscard]] DialogPresenter &presenter() const { return m_presenter; }
    /// The pedal's row of the setting arrays.
    [[nodiscard]] std::uint8_t &outputMode() const { return OutputMode.at(row()); }
    [[nodiscard]] CommonRecord &commonData() const { return CommonData.at(row()); }
    [[nodiscard]] const AdditionalBlock &additionalData() const { return AdditionalData.at(row()); }

private:
    [[nodiscard]] std::size_t row() const { return static_cast<std::size_t>(m_pedal); }

    DialogPresenter &m_presenter;
    const hid::DeviceRef m_unit; ///< the unit that was held when the dialog was created
    const int m_pedal;
    const QString m_pedalName;
    bool m_dismissed = false;
};

} // namespace kavelo
