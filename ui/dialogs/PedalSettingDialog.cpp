#include "PedalSettingDialog.h"

#include "DialogPresenter.h"
#include "HID_PnP.h"
#include "ItemChoice.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QLayout>
#include <QPointer>

namespace kavelo {
namespace {

/// Makes Tab stop only at the checked button of every group; the arrow keys choose the others. Qt
/// itself does so only after the group has had the focus.
void setTabStops(const QWidget &dialog)
{
    for (const QButtonGroup *group : dialog.findChildren<QButtonGroup *>()) {
        for (QAbstractButton *button : group->buttons()) {
            if (group->checkedButton() != nullptr && !button->isChecked()) {
                button->setFocusPolicy(Qt::ClickFocus);
            }
        }
    }
}

} // namespace

PedalSettingDialog::PedalSettingDialog(DialogPresenter &presenter, QWidget &mainWindow)
    : QDialog(&mainWindow)
    , m_presenter(presenter)
    , m_unit(presenter.link().myDevice())
    , m_pedal(SelectedPedalNo)
    , m_pedalName(PedalName)
{
}

PedalSettingDialog::~PedalSettingDialog() = default;

void PedalSettingDialog::present()
{
    const QPointer<PedalSettingDialog> self = this;
    viewDidLoad();
    if (!self || m_dismissed) {
        return;
    }
    if (!isUnitHeld()) {
        dismiss();
        return;
    }
    setTabStops(*this);
    for (QComboBox *box : findChildren<QComboBox *>()) {
        new ItemChoice(*box);
    }
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    appear();
}

bool PedalSettingDialog::isUnitHeld() const
{
    return m_unit && m_presenter.link().myDevice() == m_unit;
}

void PedalSettingDialog::reject()
{
    if (isEnabled()) {
        QDialog::reject();
    }
}

void PedalSettingDialog::done(int result)
{
    if (m_dismissed) {
        return;
    }
    m_dismissed = true;
    viewWillDisappear();
    QDialog::done(result);
    if (isUnitHeld()) {
        // The user continues in the main window. The desktop might move the focus elsewhere when a
        // notice and this dialog close together.
        parentWidget()->activateWindow();
    }
    // Not deleted at once: an action of this dialog may still be waiting for the unit.
    deleteLater();
}

void PedalSettingDialog::requestWrite()
{
    m_presenter.requestWrite(*this);
}

void PedalSettingDialog::send()
{
    SelectedPedalNo = m_pedal;
    PedalName = m_pedalName;
    buildRecord();
    sendAndDismiss();
}

void PedalSettingDialog::sendAndDismiss()
{
    const QPointer<PedalSettingDialog> self = this;
    m_presenter.SettingDialog_OK();
    if (self) {
        dismiss();
    }
}

} // namespace kavelo
