#include "AdvancedSettingDialogViewController.h"

#include "MainWindowViewController.h"
#include "ui_AdvancedSettingDialogViewController.h"

#include <QPointer>

namespace kavelo {

AdvancedSettingDialogViewController::AdvancedSettingDialogViewController(
    MainWindowViewController &presenter)
    : PedalSettingDialog(presenter)
    , m_ui(std::make_unique<Form>())
{
    m_ui->setupUi(this);
    m_ui->Label_PedalName->setText(QStringLiteral("Advanced settings  %1").arg(PedalName));
    connect(m_ui->tabcontrolPages, &QTabWidget::currentChanged, this, &Self::pageChanged);
    connect(m_ui->buttonOK, &QPushButton::clicked, this, &Self::okButtonPressed);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &Self::dismiss);
}

AdvancedSettingDialogViewController::~AdvancedSettingDialogViewController() = default;

void AdvancedSettingDialogViewController::connectActions(ButtonActions actions)
{
    for (const auto &[button, action] : actions) {
        connectChoice(button, this, action);
    }
}

void AdvancedSettingDialogViewController::turnOn(QRadioButton *button)
{
    button->setChecked(true); // its group turns the others off
}

void AdvancedSettingDialogViewController::viewDidLoad()
{
    loadClickPage();
    // The request waits for a running exchange first; anything may happen meanwhile.
    const QPointer<Self> self = this;
    presenter().plugNPlay.Communicate_AdditionalData();
    if (!self) {
        return;
    }
    resetMultipleKeyOutput();
    loadMultipleKeyOutputPage();
    PSKO_SelectedOutput = 0;
    PSKO_SetControls();
    // Only now: what loading sets causes no actions.
    connectClickPage();
    connectKeyOutputPage();
    connectPointerMovementPage();
    connectMultipleKeyOutputPage();
}

void AdvancedSettingDialogViewController::pageChanged()
{
    m_ui->buttonOK->setEnabled(okActionOfPage() != nullptr);
}

AdvancedSettingDialogViewController::Action
AdvancedSettingDialogViewController::okActionOfPage() const
{
    const std::array<std::pair<QWidget *, Action>, 3> actions{{
        {m_ui->Page_Click, &Self::okButtonPressed_C},
        {m_ui->Page_KeyOutput, &Self::okButtonPressed_KO},
        {m_ui->Page_PointerMovement, &Self::okButtonPressed_PM},
    }};
    for (const auto &[page, action] : actions) {
        if (m_ui->tabcontrolPages->currentWidget() == page) {
            return action;
        }
    }
    return nullptr;
}

void AdvancedSettingDialogViewController::okButtonPressed()
{
    const Action action = okActionOfPage();
    if (action == nullptr) {
        return;
    }
    write([this, action] { (this->*action)(); });
}

} // namespace kavelo
