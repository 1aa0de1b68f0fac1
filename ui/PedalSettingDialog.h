#pragma once

#include "Choice.h"
#include "Hid.h"
#include "PedalSetting.h"

#include <QDialog>

#include <functional>

namespace kavelo {

class MainWindowViewController;

/// What the dialogs that set one pedal have in common: they edit the pedal that `SelectedPedalNo`
/// names when they are created, send through the main window that presents them, and delete
/// themselves when they are dismissed.
class PedalSettingDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PedalSettingDialog)

public:
    explicit PedalSettingDialog(MainWindowViewController &presenter);
    ~PedalSettingDialog() override;

    /// Loads the dialog and opens it over the main window without blocking. Loading may wait for
    /// the unit; the dialog may be gone at the end.
    void present();

    /// The one way out, whatever closes the dialog.
    void done(int result) override;
    /// The user's way out by Escape or by the window's frame; closed while the dialog writes.
    void reject() override;

protected:
    virtual void viewDidLoad() = 0;
    /// Opens the loaded dialog without blocking. The main window can be closed and quit all the
    /// same, so the dialog is not modal; no second one opens beside it.
    virtual void appear() { show(); }
    virtual void viewWillDisappear() {}
    /// Whether the program closes the dialog, not its user.
    [[nodiscard]] virtual bool isTakenDown() const { return false; }

    void dismiss() { done(Rejected); }
    [[nodiscard]] bool isDismissed() const { return m_dismissed; }
    /// Has `buildRecord` put the setting into the dialog's row of the arrays, sends it and
    /// dismisses the dialog, whatever came of it. Waits for the unit. Nothing is built and sent
    /// while something else is sent; the dialog then stays open. Nor when the unit is another one
    /// by now; the dialog is then dismissed.
    void write(const std::function<void()> &buildRecord);
    /// Sends the row as it is and dismisses the dialog.
    void sendAndDismiss();

    [[nodiscard]] MainWindowViewController &presenter() const { return m_presenter; }
    /// The index of the pedal being edited. `SelectedPedalNo` may move on meanwhile, when a read of
    /// the unit was still going on.
    [[nodiscard]] int pedal() const { return m_pedal; }
    /// The pedal's row of the setting arrays.
    [[nodiscard]] std::uint8_t &outputMode() const { return OutputMode.at(row()); }
    [[nodiscard]] CommonRecord &commonData() const { return CommonData.at(row()); }
    [[nodiscard]] const AdditionalBlock &additionalData() const { return AdditionalData.at(row()); }

private:
    [[nodiscard]] std::size_t row() const { return static_cast<std::size_t>(m_pedal); }

    MainWindowViewController &m_presenter;
    const hid::DeviceRef m_unit; ///< that was held when the edit began
    const int m_pedal;
    const QString m_pedalName;
    bool m_dismissed = false;
};

} // namespace kavelo
