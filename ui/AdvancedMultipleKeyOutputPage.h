#pragma once

#include "AdvancedPage.h"

#include <array>
#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedMultipleKeyOutputPage;
}

/// Shows the pedal's outputs of several keys, or a sample when it has none. It writes nothing.
class AdvancedMultipleKeyOutputPage : public AdvancedPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedMultipleKeyOutputPage)

public:
    explicit AdvancedMultipleKeyOutputPage(QWidget *parent = nullptr);
    ~AdvancedMultipleKeyOutputPage() override;

    /// Called once.
    void load(const PedalRow &pedal);
    [[nodiscard]] bool canWrite() const override { return false; }
    void write(const PedalRow & /*pedal*/) override {}

private:
    void reset();
    void decodeTimes(CommonRecord &record);
    void decodeRepeats(const CommonRecord &record);
    void decodeOutputs(const PedalRow &pedal);
    void showSampleOutputs();
    void connectActions();
    void setRepeatsEnabled(bool enabled);
    [[nodiscard]] QString outputLine(std::size_t output) const;
    void PSKO_radiobuttonUntilRelease_CheckedChanged() { setRepeatsEnabled(false); }
    void PSKO_radiobuttonSetNumber_CheckedChanged() { setRepeatsEnabled(true); }
    void PSKO_radiobuttonOutput_CheckedChanged();
    void PSKO_radiobuttonSeries_CheckedChanged();
    void PSKO_listboxOutput_SelectedIndexChanged() {}
    void PSKO_SetControls();

    /// What a new key of an output would be; the sample outputs show it.
    std::uint8_t PSKO_NewOutputCharacter = 0;
    int PSKO_NumberOfOutput = 0; ///< outputs in use, 1 to 10 once loaded
    int PSKO_SelectedOutput = 0;
    bool PSKO_Changing = false; ///< the program is changing the page's lists
    /// Of every output the modifier byte and the usage IDs of its keys 1 to 6; 0 = no key.
    std::array<std::array<std::uint8_t, PskoOutputSize>, NUMBER_OF_PSKO_OUTPUT> PSKO_KeyData{};
    /// Of every output the place of its last key in its row, at least 1 once loaded.
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeys{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeysOriginal{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_SelectedKey{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NewKeyNumber{};

    const std::unique_ptr<Ui::AdvancedMultipleKeyOutputPage> m_ui;
};

} // namespace kavelo
