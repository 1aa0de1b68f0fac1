#pragma once

#include "AdvancedPage.h"
#include "KeyUsage.h"
#include "PedalSettingDialog.h"

#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedSettingDialogViewController;
}

/// The Advanced dialog: one page for each kind of output that the Standard dialog does not offer.
/// OK writes what the page on top shows; the page of multiple key outputs writes nothing.
///
/// Loading puts impossible values of the pedal's record right in the setting arrays. They reach the
/// unit only with a later write.
class AdvancedSettingDialogViewController : public PedalSettingDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedSettingDialogViewController)

public:
    explicit AdvancedSettingDialogViewController(MainWindowViewController &presenter);
    ~AdvancedSettingDialogViewController() override;

    /// Writes the page on top.
    void okButtonPressed();

    // The key vocabulary.
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
    void pageChanged();
    [[nodiscard]] AdvancedPage &page() const;
    [[nodiscard]] PedalRow pedalRow() const
    {
        return {outputMode(), commonData(), additionalData()};
    }

    const std::unique_ptr<Ui::AdvancedSettingDialogViewController> m_ui;
};

} // namespace kavelo
