#include "PedalDescription.h"

#include "KeyUsage.h"
#include "ModifierName.h"
#include "PedalSetting.h"

#include <QStringView>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kavelo {
namespace {

struct Setting
{
    const CommonRecord &common;
    const AdditionalBlock &additional;
};

struct DirectionWord
{
    std::uint8_t x;
    std::uint8_t y;
    QStringView word;
};

/// The last fields of the record of a repeated output.
struct Repeated
{
    bool accelerationOn;
    int numberOfRepeats; // 0 = until the pedal is released
    int speed;           // the unit depends on the mode
    int accelerationIndex;
};

constexpr std::uint8_t Positive = 1;   // right, down, forward
constexpr std::uint8_t Negative = 255; // left, up, backward

constexpr std::array<DirectionWord, 8> PointerDirections = {{
    {Positive, 0, u"Right"},
    {Negative, 0, u"Left"},
    {0, Positive, u"Down"},
    {0, Negative, u"Up"},
    {Positive, Positive, u"LowerRight"},
    {Positive, Negative, u"UpperRight"},
    {Negative, Negative, u"UpperLeft"},
    {Negative, Positive, u"LowerLeft"},
}};
constexpr QStringView UnknownDirection = u"-----";

// Indexed by the button mask: 1 left, 2 right, 4 middle.
constexpr std::array<QStringView, 8> ClickWords = {
    u"Unexpected click",
    u"Left",
    u"Right",
    u"Left, Right simultaneous click",
    u"Middle",
    u"Left, Middle simultaneous click",
    u"Right, Middle simultaneous click",
    u"Left, Right, Middle simultaneous click",
};
constexpr std::array<QStringView, 5> ButtonWords = {u"", u"Left", u"Right", u"", u"Middle"};

void addLine(QString &text, QStringView label, QStringView value = {}, QStringView end = {})
{
    text.append(u"\r\n").append(label).append(value).append(end);
}

/// The name of the button in the mask. Empty when the mask is not exactly one button.
QStringView buttonWord(std::uint8_t clickButton)
{
    return clickButton < ButtonWords.size() ? ButtonWords.at(clickButton) : QStringView();
}

QString tenths(int value)
{
    return QString::number(value / 10) + u'.' + QString::number(value % 10);
}

bool isKey(std::uint8_t usageId)
{
    return usageId >= 1 && usageId <= Max_KeyUsageID;
}

void addExplanation(QString &text, std::uint8_t usageId)
{
    const QString explanation = GetKeyExplanation(usageId);
    if (isKey(usageId) && !explanation.isEmpty()) {
        addLine(text, u"[Key explanation] ", explanation);
    }
}

void addModifier(QString &text, std::uint8_t modifierByte)
{
    addLine(text, u"[Modifier] ",
            modifierByte == 0 ? QStringLiteral("none") : GetModifierName(modifierByte));
}

/// Adds the key, its explanation and its modifiers. Usage 0 has the name "none".
void addKey(QString &text, QStringView label, std::uint8_t usageId, std::uint8_t modifierByte)
{
    if (usageId > Max_KeyUsageID) {
        addLine(text, u"[Key] ---");
    } else {
        addLine(text, label, GetKeyName(usageId));
    }
    addExplanation(text, usageId);
    addModifier(text, modifierByte);
}

/// Adds the lengths of a double click: three bytes of the record, from byte `first` on.
void addDoubleClickLengths(QString &text, const CommonRecord &common, std::size_t first)
{
    addLine(text, u"[First click length] ", QString::number(common.at(first)), u" ms");
    addLine(text, u"[Second click length] ",
            common.at(first + 1) == 1 ? u"Until you release the pedal"
                                      : u"Same as the first click");
    addLine(text, u"[Length between clicks] ", QString::number(common.at(first + 2)), u" ms");
}

/// Reads the fields from the seven bytes of the record from byte `first` on.
Repeated repeatedIn(const CommonRecord &common, int first)
{
    return {.accelerationOn = common.at(static_cast<std::size_t>(first)) != 0,
            .numberOfRepeats = value16In(common, first + 1),
            .speed = value16In(common, first + 3),
            .accelerationIndex = value16In(common, first + 5)};
}

void addAcceleration(QString &text, const Repeated &repeated)
{
    addLine(text, u"[Acceleration] ", repeated.accelerationOn ? u"on" : u"off");
    addLine(text, u"[Acceleration index] ",
            QString::number(repeated.accelerationOn ? repeated.accelerationIndex : 0));
}

void addRepetition(QString &text, int numberOfRepeats,
                   QStringView label = u"[Number of repetitions] ")
{
    if (numberOfRepeats == 0) {
        addLine(text, u"[Repetition] Until you release the pedal");
    } else {
        addLine(text, label, QString::number(numberOfRepeats));
    }
}

void addSimpleKeyOutput(QString &text, const Setting &setting)
{
    addKey(text, u"[key] ", setting.common[1], setting.common[0]); // given in lower case
}

void addSimpleClick(QString &text, const Setting &setting)
{
    const std::uint8_t buttons = setting.common[0];
    addLine(text, u"[Button] ", ClickWords.at(buttons < ClickWords.size() ? buttons : 0));
}

void addSimpleDoubleClick(QString &text, const Setting &setting)
{
    const QStringView button = buttonWord(setting.common[0]);
    addLine(text, u"[Button] ", button.isEmpty() ? u"Unexpected double click" : button);
    addDoubleClickLengths(text, setting.common, 1);
}

void addModifierPlusClick(QString &text, const Setting &setting)
{
    addLine(text, u"[Modifier] ", GetModifierName(setting.common[0]));
    // An empty line follows the modifier line when there is no click line.
    const QStringView button = buttonWord(setting.common[1]);
    if (button.isEmpty()) {
        addLine(text, u"");
    } else {
        addLine(text, u"[Click] ", button, u" button click");
    }
}

void addModifierPlusDoubleClick(QString &text, const Setting &setting)
{
    addLine(text, u"[Modifier] ", GetModifierName(setting.common[0]));
    const QStringView button = buttonWord(setting.common[1]);
    if (!button.isEmpty()) {
        addLine(text, u"[Click] ", button, u" button double click");
    }
    addDoubleClickLengths(text, setting.common, 3);
}

void addContinuousKeyOutput(QString &text, const Setting &setting)
{
    const Repeated repeated = repeatedIn(setting.common, 6);
    addKey(text, u"[Key] ", setting.common[1], setting.common[0]);
    addLine(text, u"[Speed] ", tenths(repeated.speed), u" Times / sec");
    addAcceleration(text, repeated);
    addRepetition(text, repeated.numberOfRepeats,
                  u"[Number of repetitions]"); // given without a blank
}

void addPointerMove(QString &text, const Setting &setting)
{
    const Repeated repeated = repeatedIn(setting.common, 6);
    const auto *const direction = std::find_if(
        PointerDirections.begin(), PointerDirections.end(), [&setting](const DirectionWord &row) {
            return row.x == setting.common[0] && row.y == setting.common[1];
        });
    addLine(text, u"[Direction of movement] ",
            direction == PointerDirections.end() ? UnknownDirection : direction->word);
    addLine(text, u"[Speed] ", QString::number(repeated.speed), u" Dots / sec");
    addAcceleration(text, repeated);
    addRepetition(text, repeated.numberOfRepeats, u"[Repetition] "); // the label is given
}

QStringView wheelDirection(std::uint8_t direction)
{
    if (direction == Positive) {
        return u"Forward";
    }
    return direction == Negative ? u"Backward" : UnknownDirection;
}

void addWheelRotation(QString &text, const Setting &setting)
{
    const Repeated repeated = repeatedIn(setting.common, 5);
    addLine(text, u"[Direction of rotation] ", wheelDirection(setting.common[0]));
    addLine(text, u"[Speed] ", QString::number(repeated.speed), u" Times / sec");
    addAcceleration(text, repeated);
    addRepetition(text, repeated.numberOfRepeats);
}

void addContinuousClick(QString &text, const Setting &setting)
{
    const Repeated repeated = repeatedIn(setting.common, 5);
    const QStringView button = buttonWord(setting.common[0]);
    if (!button.isEmpty()) {
        addLine(text, u"[Button] ", button);
    }
    addLine(text, u"[Speed] ", tenths(repeated.speed), u" Times / sec");
    addAcceleration(text, repeated);
    addRepetition(text, repeated.numberOfRepeats);
}

/// The label of output `n`, such as "[1st Output] " or "[Output No.4] ".
QString outputLabel(int n)
{
    constexpr std::array<QStringView, 3> Ordinals = {u"1st", u"2nd", u"3rd"};
    const auto index = static_cast<std::size_t>(n - 1);
    if (index < Ordinals.size()) {
        return u'[' + Ordinals.at(index).toString() + QStringLiteral(" Output] ");
    }
    return QStringLiteral("[Output No.") + QString::number(n) + QStringLiteral("] ");
}

/// The modifiers and keys of an output, such as "[(Left)control] + [c] + [v]". The first key is
/// named even when there is none.
QString chordText(PskoOutput output)
{
    QString text;
    const QString modifiers = GetModifierName(output[0]);
    if (!modifiers.isEmpty()) {
        text.append(u'[').append(modifiers).append(u"] + ");
    }
    text.append(u'[').append(GetKeyName(output[1])).append(u']');
    for (const std::uint8_t usageId : output.subspan<2>()) {
        if (usageId != 0) {
            text.append(u" + [").append(GetKeyName(usageId)).append(u']');
        }
    }
    return text;
}

void addPluralSimultaneousKeyOutput(QString &text, const Setting &setting)
{
    const PskoSetting psko = pskoSettingIn(setting.common);
    addLine(text, u"[On time] ", QString::number(psko.onTime), u" ms");
    addLine(text, u"[Time between] ", QString::number(psko.timeBetween), u" ms");
    addLine(text, u"[Number of outputs] ", QString::number(psko.numberOfOutputs));
    addRepetition(text, psko.numberOfRepeats);
    if (psko.numberOfRepeats != 0) {
        addLine(text, u"[Unit of repetition] ", psko.repeatsSet ? u"set" : u"output");
    }
    // The record may hold an impossible number of outputs: 0, or more than 10.
    const int listed = std::clamp(psko.numberOfOutputs, 1, NUMBER_OF_PSKO_OUTPUT);
    for (int n = 1; n <= listed; ++n) {
        addLine(text, outputLabel(n),
                chordText(pskoOutputIn(setting.common, setting.additional, n)));
    }
}

/// Adds one of the two outputs of a pedal in the mode OUTPUT_AT_CHANGE.
void addAction(QString &text, std::uint8_t usageId, std::uint8_t modifierByte)
{
    if (isKey(usageId)) {
        addLine(text, u"[Key] ", GetKeyName(usageId));
        addExplanation(text, usageId);
    } else if (usageId <= Max_UsageID) {
        addLine(text, u"[Click] ", GetKeyName(usageId));
        addLine(text, u"[Click explanation] ", GetKeyExplanation(usageId));
    } else {
        addLine(text, u"[Key] ---");
    }
    addModifier(text, modifierByte);
}

void addOutputAtChange(QString &text, const Setting &setting)
{
    struct Change
    {
        std::uint8_t flag;
        QStringView label;
        std::size_t modifierAt; // byte of the modifiers; the next byte is the usage ID
    };
    constexpr std::array<Change, 2> Changes = {{
        {0x01, u"[Output when the pedal is depressed] ", 1},
        {0x02, u"[Output when the pedal is released] ", 3},
    }};
    for (const Change &change : Changes) {
        const bool hasOutput = (setting.common[0] & change.flag) != 0;
        addLine(text, change.label, hasOutput ? u"Yes as follows" : u"none");
        if (hasOutput) {
            addAction(text, setting.common.at(change.modifierAt + 1),
                      setting.common.at(change.modifierAt));
        }
    }
}

struct ModeText
{
    QStringView function;
    void (*addLines)(QString &text, const Setting &setting);
};

// Indexed by the output mode.
constexpr auto ModeTexts = std::to_array<ModeText>({
    {u"Key output", addSimpleKeyOutput},
    {u"Click", addSimpleClick},
    {u"Double click", addSimpleDoubleClick},
    {u"Modifier plus click", addModifierPlusClick},
    {u"Modifier plus double click", addModifierPlusDoubleClick},
    {u"Continuous key output", addContinuousKeyOutput},
    {u"Move mouse pointer", addPointerMove},
    {u"Wheel rotation", addWheelRotation},
    {u"Continuous click", addContinuousClick},
    {u"Multiple (Simultaneous) Key Output", addPluralSimultaneousKeyOutput},
    {u"Output when changing", addOutputAtChange},
});
static_assert(ModeTexts.size() == NumberOfModes);

} // namespace

QString PedalDescription(int pedal)
{
    if (pedal < 0 || pedal >= MaxPedals) {
        return {};
    }
    const auto row = static_cast<std::size_t>(pedal);
    const std::uint8_t mode = OutputMode.at(row);
    if (mode >= ModeTexts.size()) {
        return QStringLiteral("default");
    }
    QString text = QStringLiteral("[Set function] ");
    text.append(ModeTexts.at(mode).function);
    ModeTexts.at(mode).addLines(text, {CommonData.at(row), AdditionalData.at(row)});
    return text;
}

} // namespace kavelo
