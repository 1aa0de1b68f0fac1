#include "SettingDialogViewController.h"

#include "Choice.h"
#include "HID_PnP.h"
#include "LabelHeight.h"
#include "Log.h"
#include "PedalSetting.h"
#include "Protocol.h"
#include "ui_SettingDialogViewController.h"

#include <algorithm>

namespace kavelo {
namespace {

const auto BeyondStandardQuestion =
    QStringLiteral("The contents set in this pedal are beyond the Standard settings.\r\n"
                   "Click [OK] to set this pedal within the Standard settings.\r\n"
                   "Click [Cancel] to return to Main Window without doing anything.");

/// The bits of the right-hand modifiers, which this dialog cannot show.
constexpr std::uint8_t RightModifiers = 0xF0;

/// What follows "Standard settings" in the heading, for each number of pedals from 0 on and each
/// pedal.
// clang-format off
constexpr std::array<std::array<QStringView, MaxPedals>, MaxPedals + 1> Places{{
    {},
    {},
    {u"  Right Pedal",  u"  Left Pedal"},
    {u"  Center Pedal", u"  Left Pedal", u"  Right Pedal"},
    {u"  Right Pedal",  u"  Left Pedal", u"  Right end Pedal", u"  Left end Pedal"},
    {u"  Center Pedal", u"  Left Pedal", u"  Right Pedal",     u"  Left end Pedal", u"  Right end Pedal"},
}};
// clang-format on

QString heading(int pedal)
{
    const auto &places = Places.at(static_cast<std::size_t>(NumberOfPedals));
    return QStringLiteral("Standard settings%1").arg(places.at(static_cast<std::size_t>(pedal)));
}

/// A choice on the Mouse tab, and the output mode and first bytes of the record that it writes.
struct MouseAction
{
    QRadioButton *Ui::SettingDialogViewController::*button;
    std::uint8_t mode;
    std::array<std::uint8_t, 4> bytes;
    std::size_t size; ///< number of bytes that the setting uses
};

// The bytes of a double click: button, length of the first click (ms), mode of the second click,
// interval (ms).
using Form = Ui::SettingDialogViewController;
constexpr std::array<MouseAction, 4> MouseActions{{
    {&Form::radiobuttonLeftClick, SIMPLE_CLICK, {1}, 1},
    {&Form::radiobuttonRightClick, SIMPLE_CLICK, {2}, 1},
    {&Form::radiobuttonCenterClick, SIMPLE_CLICK, {4}, 1},
    {&Form::radiobuttonDoubleClick, SIMPLE_DOUBLE_CLICK, {1, 15, 0, 15}, 4},
}};

} // namespace

SettingDialogViewController::SettingDialogViewController(DialogPresenter &presenter,
                                                         QWidget &mainWindow)
    : PedalSettingDialog(presenter, mainWindow)
    , m_ui(std::make_unique<Ui::SettingDialogViewController>())
{
    m_ui->setupUi(this);
    m_modifierBoxes = {m_ui->checkboxCtrl, m_ui->checkboxShift, m_ui->checkboxAlt,
                       m_ui->checkboxWindowsKey};
}

SettingDialogViewController::~SettingDialogViewController() = default;

void SettingDialogViewController::connectActions()
{
    using Self = SettingDialogViewController;
    using Action = void (Self::*)();
    const std::array<std::pair<QAbstractButton *, Action>, 11> actions{{
        {m_ui->radiobuttonNoModifiers, &Self::radiobuttonNoModifiersClicked},
        {m_ui->radiobuttonWithModifiers, &Self::radiobuttonWithModifiersClicked},
        {m_ui->radiobuttonOnlyModifiers, &Self::radiobuttonOnlyModifiersClicked},
        {m_ui->checkboxCtrl, &Self::checkboxCtrl_clicked},
        {m_ui->checkboxShift, &Self::checkboxShift_clicked},
        {m_ui->checkboxAlt, &Self::checkboxAlt_clicked},
        {m_ui->checkboxWindowsKey, &Self::checkboxWindowsKey_clicked},
        {m_ui->radiobuttonLeftClick, &Self::radiobuttonLeftClickClicked},
        {m_ui->radiobuttonRightClick, &Self::radiobuttonRightClickClicked},
        {m_ui->radiobuttonCenterClick, &Self::radiobuttonCenterClickClicked},
        {m_ui->radiobuttonDoubleClick, &Self::radiobuttonDoubleClickClicked},
    }};
    for (const auto &[button, action] : actions) {
        connectChoice(button, this, action);
    }
    // Queued: a write waits for the unit and the user, and an action must not. Assistive technology
    // would not get its answer before.
    connect(m_ui->buttonProgramKavelo, &QPushButton::clicked, this,
            &Self::buttonProgramKavelo_Click, Qt::QueuedConnection);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &Self::cancelButtonPressed);
    connect(m_ui->listboxKeys, &QComboBox::activated, this,
            &Self::listboxKeys_SelectedIndexChanged);
    connect(m_ui->tabcontrolOutputMode, &QTabWidget::currentChanged, this,
            &Self::tabView_didSelect);
    connect(&timer2, &QTimer::timeout, this, &Self::UpdateAppWindow2);
}

// Loading

void SettingDialogViewController::viewDidLoad()
{
    timer2.start(TickPeriod);
    setFixedTexts();
    WithinStandard = false;
    fillKeyList();
    loadKeyboardSetting();
    loadMouseSetting();
    Change_buttonProgramKavelo_Enabled();
    connectActions(); // after loading, which must not trigger the actions
}

void SettingDialogViewController::setFixedTexts()
{
    m_ui->tabcontrolOutputMode->setTabText(0, QStringLiteral("Keyboard"));
    m_ui->tabcontrolOutputMode->setTabText(1, QStringLiteral("Mouse"));
    m_ui->labelExplanation->setText(QStringLiteral("Explanation"));
    m_ui->radiobuttonNoModifiers->setText(
        QStringLiteral("WITHOUT control, shift, option, command"));
    m_ui->radiobuttonWithModifiers->setText(QStringLiteral("WITH control, shift, option, command"));
    m_ui->radiobuttonOnlyModifiers->setText(QStringLiteral("ONLY control, shift, option, command"));
    m_ui->radiobuttonLeftClick->setText(QStringLiteral("Left button click"));
    m_ui->radiobuttonRightClick->setText(QStringLiteral("Right button click"));
    m_ui->radiobuttonCenterClick->setText(QStringLiteral("Middle button click"));
    m_ui->radiobuttonDoubleClick->setText(QStringLiteral("Double click"));
    m_ui->buttonProgramKavelo->setText(QStringLiteral("Write to Kavelo"));
    m_ui->buttonCancel->setText(QStringLiteral("Cancel"));
    m_ui->Label_PedalName->setText(heading(pedal()));
}

void SettingDialogViewController::fillKeyList()
{
    std::size_t listRow = 0;
    QStringList explanations;
    for (int usage = 0; usage <= Max_UsageID; ++usage) {
        if (isStandardKey(usage)) {
            m_ui->listboxKeys->addItem(GetKeyName(usage));
            explanations << GetKeyExplanation(usage);
            IndexToUsageID.at(listRow++) = usage;
        }
    }
    m_ui->listboxKeys->setCurrentIndex(-1); // inserting the first row has selected it
    QLabel *const explanation = m_ui->textboxExplanation;
    explanation->setMinimumHeight(
        heightForTexts(*explanation, explanation->minimumWidth(), explanations));
}

void SettingDialogViewController::loadKeyboardSetting()
{
    if (outputMode() == SIMPLE_KEY_OUTPUT) {
        m_ui->tabcontrolOutputMode->setCurrentWidget(m_ui->Tab_Keyboard);
        const std::uint8_t modifiers = commonData()[0];
        const std::uint8_t usage = commonData()[1];
        auto *const end = IndexToUsageID.begin() + m_ui->listboxKeys->count();
        auto *const found = std::find(IndexToUsageID.begin(), end, int{usage});
        if (usage == 0) {
            WithinStandard = true;
        } else if (found != end) {
            m_ui->listboxKeys->setCurrentIndex(static_cast<int>(found - IndexToUsageID.begin()));
            listboxKeys_SelectedIndexChanged_manual();
            WithinStandard = true;
        }
        loadModifiers(modifiers, usage);
    } else {
        m_ui->radiobuttonNoModifiers->setChecked(true);
    }
    Change_K_Controls_Enabled();
    Change_K_buttonProgramKavelo_Enabled();
}

void SettingDialogViewController::loadModifiers(std::uint8_t modifiers, std::uint8_t usage)
{
    for (std::size_t bit = 0; bit < m_modifierBoxes.size(); ++bit) {
        if ((modifiers & (1U << bit)) != 0) {
            m_modifierBoxes.at(bit)->setChecked(true);
        }
    }
    if ((modifiers & RightModifiers) != 0) {
        WithinStandard = false;
    }
    if (modifiers == 0) {
        m_ui->radiobuttonNoModifiers->setChecked(true);
    } else if (usage == 0) {
        m_ui->radiobuttonOnlyModifiers->setChecked(true);
    } else {
        m_ui->radiobuttonWithModifiers->setChecked(true);
    }
}

void SettingDialogViewController::loadMouseSetting()
{
    const std::uint8_t mode = outputMode();
    M_buttonProgramKavelo_Enabled = mode == SIMPLE_CLICK || mode == SIMPLE_DOUBLE_CLICK;
    if (!M_buttonProgramKavelo_Enabled) {
        return;
    }
    m_ui->tabcontrolOutputMode->setCurrentWidget(m_ui->Tab_Mouse);
    for (const MouseAction &action : MouseActions) {
        if (action.mode == mode &&
            std::equal(action.bytes.begin(), action.bytes.begin() + action.size,
                       commonData().begin())) {
            (m_ui.get()->*action.button)->setChecked(true);
            WithinStandard = true;
        }
    }
}

void SettingDialogViewController::appear()
{
    if (WithinStandard) {
        PedalSettingDialog::appear();
    } else {
        // The main window is the parent of the box, because this dialog is not visible yet.
        openQuestion(BeyondStandardQuestion, parentWidget(), this,
                     [this](Answer answer) { takeAnswer(answer); });
    }
}

/// Continues after the question about a setting beyond the Standard.
void SettingDialogViewController::takeAnswer(Answer answer)
{
    if (answer == Answer::Ok) {
        logLine(QStringLiteral("Settings in Pedal %1 is out of the Standard, but the user selected "
                               "settings by the Standard.")
                    .arg(pedal()));
    } else if (answer == Answer::Cancel) {
        logLine(QStringLiteral("Settings in Pedal %1 is out of the Standard, and the user selected "
                               "canceling.")
                    .arg(pedal()));
    }
    if (answer == Answer::Cancel || !isUnitHeld()) {
        dismiss();
    } else {
        PedalSettingDialog::appear();
    }
}

// Dismissal

void SettingDialogViewController::UpdateAppWindow2()
{
    if (timer2state || !CloseStandardSetting) {
        return;
    }
    timer2state = true;
    StandardSettingDialogOpen = false;
    CloseStandardSetting = false;
    dismiss();
    timer2state = false;
}

void SettingDialogViewController::viewWillDisappear()
{
    StandardSettingDialogOpen = false;
    CloseStandardSetting = false; // the request is for this dialog, not for the next one
    timer2.stop();
}

void SettingDialogViewController::cancelButtonPressed()
{
    dismiss();
}

void SettingDialogViewController::okButtonPressed()
{
    sendAndDismiss();
}

void SettingDialogViewController::okButtonPressed_keyboard()
{
    okButtonPressed();
}

// Controls

void SettingDialogViewController::modifierChoiceChanged()
{
    Change_K_Controls_Enabled();
    Change_K_buttonProgramKavelo_Enabled();
}

void SettingDialogViewController::listboxKeys_SelectedIndexChanged()
{
    if (m_ui->listboxKeys->currentIndex() >= 0) {
        listboxKeys_SelectedIndexChanged_manual();
    } else {
        Change_K_buttonProgramKavelo_Enabled();
    }
}

void SettingDialogViewController::listboxKeys_SelectedIndexChanged_manual()
{
    const auto listRow = static_cast<std::size_t>(m_ui->listboxKeys->currentIndex());
    m_ui->textboxExplanation->setText(GetKeyExplanation(IndexToUsageID.at(listRow)));
    Change_K_buttonProgramKavelo_Enabled();
}

void SettingDialogViewController::mouseActionChosen()
{
    M_buttonProgramKavelo_Enabled = true;
    m_ui->buttonProgramKavelo->setEnabled(true);
}

void SettingDialogViewController::Change_K_Controls_Enabled()
{
    const bool key = !m_ui->radiobuttonOnlyModifiers->isChecked();
    const bool modifiers = !m_ui->radiobuttonNoModifiers->isChecked();
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->labelKeys, m_ui->listboxKeys,
                                          m_ui->labelExplanation, m_ui->textboxExplanation}) {
        control->setEnabled(key);
    }
    for (QCheckBox *box : m_modifierBoxes) {
        box->setEnabled(modifiers);
    }
}

void SettingDialogViewController::Change_K_buttonProgramKavelo_Enabled()
{
    const bool key = m_ui->listboxKeys->currentIndex() >= 0;
    const bool modifiers = std::ranges::any_of(m_modifierBoxes, &QCheckBox::isChecked);
    if (m_ui->radiobuttonNoModifiers->isChecked()) {
        K_buttonProgramKavelo_Enabled = key;
    } else if (m_ui->radiobuttonWithModifiers->isChecked()) {
        K_buttonProgramKavelo_Enabled = key && modifiers;
    } else if (m_ui->radiobuttonOnlyModifiers->isChecked()) {
        K_buttonProgramKavelo_Enabled = modifiers;
    } else {
        return;
    }
    m_ui->buttonProgramKavelo->setEnabled(K_buttonProgramKavelo_Enabled);
}

void SettingDialogViewController::Change_buttonProgramKavelo_Enabled()
{
    const bool mouse = m_ui->tabcontrolOutputMode->currentWidget() == m_ui->Tab_Mouse;
    m_ui->buttonProgramKavelo->setEnabled(mouse ? M_buttonProgramKavelo_Enabled
                                                : K_buttonProgramKavelo_Enabled);
}

// Writing

void SettingDialogViewController::buildRecord()
{
    if (m_ui->tabcontrolOutputMode->currentWidget() == m_ui->Tab_Mouse) {
        buildMouseRecord();
    } else {
        buildKeyRecord();
    }
    SettingEnabled = true;
}

void SettingDialogViewController::buildKeyRecord()
{
    const bool onlyModifiers = m_ui->radiobuttonOnlyModifiers->isChecked();
    const auto key = static_cast<std::size_t>(std::max(m_ui->listboxKeys->currentIndex(), 0));
    outputMode() = SIMPLE_KEY_OUTPUT;
    commonData()[0] = chosenModifiers();
    commonData()[1] =
        onlyModifiers ? std::uint8_t{0} : static_cast<std::uint8_t>(IndexToUsageID.at(key));
}

std::uint8_t SettingDialogViewController::chosenModifiers() const
{
    unsigned modifiers = 0;
    if (!m_ui->radiobuttonNoModifiers->isChecked()) {
        for (std::size_t bit = 0; bit < m_modifierBoxes.size(); ++bit) {
            modifiers |= m_modifierBoxes.at(bit)->isChecked() ? 1U << bit : 0U;
        }
    }
    return static_cast<std::uint8_t>(modifiers);
}

void SettingDialogViewController::buildMouseRecord()
{
    for (const MouseAction &action : MouseActions) {
        if ((m_ui.get()->*action.button)->isChecked()) {
            outputMode() = action.mode;
            std::copy_n(action.bytes.begin(), action.size, commonData().begin());
            return;
        }
    }
}

} // namespace kavelo
