#pragma once

#include "AdvancedPage.h"

#include <array>
#include <memory>

namespace kavelo {

namespace Ui {
class AdvancedMultipleKeyOutputPage;
}

/// The page that shows the outputs of several keys of the pedal. For a pedal in another mode it
/// shows a sample. It writes nothing.
class AdvancedMultipleKeyOutputPage : public AdvancedPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedMultipleKeyOutputPage)

public:
    explicit AdvancedMultipleKeyOutputPage(QWidget *parent = nullptr);
    ~AdvancedMultipleKeyOutputPage() override;

    /// Fills in the page. Called once.
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

    // PSKO is short for plural simultaneous key output, the output mode. The names, and the members
    // that are written but not read, are given.

    /// The sample outputs show the usage ID after this one.
    std::uint8_t PSKO_NewOutputCharacter = 0;
    int PSKO_NumberOfOutput = 0; ///< number of outputs, 1 to 10 after loading
    int PSKO_SelectedOutput = 0;
    bool PSKO_Changing =
        false; ///< set while the list of keys is filled, and from the end of loading on
    /// For every output: the modifier byte and the usage IDs of its keys 1 to 6; 0 = no key.
    std::array<std::array<std::uint8_t, PskoOutputSize>, NUMBER_OF_PSKO_OUTPUT> PSKO_KeyData{};
    /// For every output: the index of its last key in PSKO_KeyData, at least 1 after loading.
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeys{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NumberOfKeysOriginal{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_SelectedKey{};
    std::array<int, NUMBER_OF_PSKO_OUTPUT> PSKO_NewKeyNumber{};

    const std::unique_ptr<Ui::AdvancedMultipleKeyOutputPage> m_ui;
};

} // namespace kavelo
