#include "AdvancedSettingDialogViewController.h"

#include "DialogPresenter.h"
#include "HID_PnP.h"
#include "ui_AdvancedSettingDialogViewController.h"

#include <QPointer>

namespace kavelo {

AdvancedSettingDialogViewController::AdvancedSettingDialogViewController(DialogPresenter &presenter,
                                                                         QWidget &mainWindow)
    : PedalSettingDialog(presenter, mainWindow)
    , m_ui(std::make_unique<Ui::AdvancedSettingDialogViewController>())
{
    m_ui->setupUi(this);
    m_ui->Label_PedalName->setText(QStringLiteral("Advanced settings  %1").arg(PedalName));
    connect(m_ui->tabcontrolPages, &QTabWidget::currentChanged, this,
            &AdvancedSettingDialogViewController::pageChanged);
    // Queued: a write waits for the unit and the user, and an action must not. Assistive technology
    // would not get its answer before.
    connect(m_ui->buttonOK, &QPushButton::clicked, this,
            &AdvancedSettingDialogViewController::okButtonPressed, Qt::QueuedConnection);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this,
            &AdvancedSettingDialogViewController::dismiss);
}

AdvancedSettingDialogViewController::~AdvancedSettingDialogViewController() = default;

void AdvancedSettingDialogViewController::viewDidLoad()
{
    m_ui->Page_Click->load(pedalRow());
    // The request first waits for a running exchange. The dialog may be deleted during this wait.
    const QPointer<AdvancedSettingDialogViewController> self = this;
    presenter().link().Communicate_AdditionalData();
    if (self) {
        m_ui->Page_MultipleKeyOutput->load(pedalRow());
    }
}

AdvancedPage &AdvancedSettingDialogViewController::page() const
{
    return *qobject_cast<AdvancedPage *>(m_ui->tabcontrolPages->currentWidget());
}

void AdvancedSettingDialogViewController::pageChanged()
{
    m_ui->buttonOK->setEnabled(page().canWrite());
}

void AdvancedSettingDialogViewController::okButtonPressed()
{
    if (page().canWrite()) {
        requestWrite();
    }
}

} // namespace kavelo
