#pragma once

#include "AdvancedPage.h"
#include "KeyUsage.h"
#include "PedalSettingDialog.h"

#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedSettingDialogViewController;
}

/// The Advanced dialog. Its four pages set a click, a key output or a pointer movement, and show a
/// multiple key output. OK writes the current page; the page of multiple key outputs writes
/// nothing.
///
/// Loading corrects impossible values of the pedal's record in the setting arrays. The corrected
/// values are sent to the unit only by a later write.
class AdvancedSettingDialogViewController : public PedalSettingDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedSettingDialogViewController)

public:
    AdvancedSettingDialogViewController(DialogPresenter &presenter, QWidget &mainWindow);
    ~AdvancedSettingDialogViewController() override;

    /// Writes the current page.
    void okButtonPressed();

    // The functions of KeyUsage.h.
    [[nodiscard]] static QString GetKeyContents(int UsageID)
    {
        return kavelo::GetKeyContents(UsageID);
    }
    [[nodiscard]] static QString GetKeyName(int UsageID) { return kavelo::GetKeyName(UsageID); }
    [[nodiscard]] static QString GetKeyExplanation(int UsageID)
    {
        return kavelo::GetKeyExplanation(UsageID);
    }
    [[nodiscard]] static int IndexOf(const QString &SearchFor, const QString &Keyword)
    {
        return kavelo::IndexOf(SearchFor, Keyword);
    }

private:
    void viewDidLoad() override;
    void buildRecord() override { page().write(pedalRow()); }
    void pageChanged();
    [[nodiscard]] AdvancedPage &page() const;
    [[nodiscard]] PedalRow pedalRow() const
    {
        return {outputMode(), commonData(), additionalData()};
    }

    const std::unique_ptr<Ui::AdvancedSettingDialogViewController> m_ui;
};

} // namespace kavelo
