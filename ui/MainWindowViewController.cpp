#include "MainWindowViewController.h"

#include "AdvancedSettingDialogViewController.h"
#include "MainWindowLayout.h"
#include "PedalDescription.h"
#include "ScreenText.h"
#include "SettingDialogViewController.h"
#include "ui_MainWindowViewController.h"

#include <QCloseEvent>
#include <QFontInfo>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QVariantAnimation>

#include <algorithm>

namespace kavelo {
namespace {

/// Sets a button's title, in a smaller font where the desktop's font would not let it fit.
void setFittingText(QPushButton &button, QStringView text)
{
    button.setFont(QFont());
    button.setText(text.toString());
    QFont font = button.font();
    for (qreal size = QFontInfo(font).pointSizeF();
         button.sizeHint().width() > button.width() && size > 1; size *= 0.97) {
        font.setPointSizeF(size);
        button.setFont(font);
    }
}

} // namespace

MainWindowViewController::MainWindowViewController(QWidget *parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainWindowViewController>())
    , m_rows()
{
    m_ui->setupUi(this);
    m_rows = {{
        {m_ui->labelPedal0Name, m_ui->textboxPedal0Contents, m_ui->buttonSetPedal0Standard,
         m_ui->buttonSetPedal0Advanced},
        {m_ui->labelPedal1Name, m_ui->textboxPedal1Contents, m_ui->buttonSetPedal1Standard,
         m_ui->buttonSetPedal1Advanced},
        {m_ui->labelPedal2Name, m_ui->textboxPedal2Contents, m_ui->buttonSetPedal2Standard,
         m_ui->buttonSetPedal2Advanced},
        {m_ui->labelPedal3Name, m_ui->textboxPedal3Contents, m_ui->buttonSetPedal3Standard,
         m_ui->buttonSetPedal3Advanced},
        {m_ui->labelPedal4Name, m_ui->textboxPedal4Contents, m_ui->buttonSetPedal4Standard,
         m_ui->buttonSetPedal4Advanced},
    }};
    viewDidLoad();
}

MainWindowViewController::~MainWindowViewController() = default;

void MainWindowViewController::viewDidLoad()
{
    using Self = MainWindowViewController;
    constexpr std::array Actions{
        &Self::buttonSetPedal0Standard_Clicked, &Self::buttonSetPedal1Standard_Clicked,
        &Self::buttonSetPedal2Standard_Clicked, &Self::buttonSetPedal3Standard_Clicked,
        &Self::buttonSetPedal4Standard_Clicked};
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        connect(m_rows.at(row).standard, &QPushButton::clicked, this, Actions.at(row));
        connect(m_rows.at(row).advanced, &QPushButton::clicked, this,
                &Self::SetPedal2Advanced_clicked);
    }
    fitExplanation();
    connect(&m_timer, &QTimer::timeout, this, &MainWindowViewController::UpdateAppWindow);
    m_timer.start(TickPeriod);
}

void MainWindowViewController::viewDidAppear()
{
    InitializeControls();
}

void MainWindowViewController::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (isReturn && button != nullptr && !event->isAutoRepeat()) {
        button->click(); // of itself a button answers Return in dialogs only
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindowViewController::showEvent(QShowEvent *event)
{
    if (!m_appeared) {
        m_appeared = true;
        viewDidAppear();
    }
    QMainWindow::showEvent(event);
}

void MainWindowViewController::closeEvent(QCloseEvent *event)
{
    // A running exchange ends now, so that the program can.
    m_closing = true;
    m_timer.stop();
    plugNPlay.close();
    QMainWindow::closeEvent(event);
}

MenuItems MainWindowViewController::menuItems() const
{
    return {m_ui->InitialStateToolStripMenuItem, m_ui->ExitToolStripMenuItem,
            m_ui->QuickStartGuideToolStripMenuItem, m_ui->VersionInformationToolStripMenuItem};
}

// Layout

void MainWindowViewController::InitializeControls()
{
    m_ui->labelMainWindowExplanation->setText(toScreenText(ConnectExplanation));
    m_ui->label_Annotation->setText(
        QStringLiteral("Please use the Windows application for advanced settings."));
    m_ui->InitialStateToolStripMenuItem->setText(QStringLiteral("Restore to Initial Settings"));
    m_ui->ExitToolStripMenuItem->setText(QStringLiteral("Quit Kavelo"));
    m_ui->QuickStartGuideToolStripMenuItem->setText(QStringLiteral("Quick Start Guide"));
    m_ui->VersionInformationToolStripMenuItem->setText(QStringLiteral("Version Information"));
    disableRows();
    applyLayout(blankLayout());
}

void MainWindowViewController::disableRows()
{
    for (const PedalRow &row : m_rows) {
        row.name->setEnabled(false);
        row.contents->hide();
        row.contents->clear();
        row.advanced->setEnabled(false);
    }
    enableCommands();
}

void MainWindowViewController::enableRow(std::size_t row)
{
    m_rows.at(row).name->setEnabled(true);
    m_rows.at(row).contents->show();
    m_rows.at(row).advanced->setEnabled(false);
    enableCommands();
}

/// Enables what can be used now: the restore item, the Standard buttons, the open dialog. What has
/// the focus when it is disabled gets it back.
void MainWindowViewController::enableCommands()
{
    const bool isIdle = !isBusy();
    if (m_isIdle && !isIdle) {
        m_focusBefore.clear();
        for (const QWidget *window : windows()) {
            m_focusBefore.emplace_back(window->focusWidget());
        }
    }
    m_ui->InitialStateToolStripMenuItem->setEnabled(isConnected && m_activity == Activity::Idle);
    for (const PedalRow &row : m_rows) {
        row.standard->setEnabled(row.name->isEnabled() && isIdle);
    }
    if (m_isIdle == isIdle) {
        return;
    }
    m_isIdle = isIdle;
    for (QWidget *dialog : findChildren<PedalSettingDialog *>()) {
        dialog->setEnabled(isIdle);
    }
    for (const QPointer<QWidget> &control : m_focusBefore) {
        if (isIdle && control && control->isEnabled()) {
            control->setFocus();
        }
    }
}

void MainWindowViewController::setActivity(Activity activity)
{
    m_activity = activity;
    enableCommands();
    for (QWidget *window : windows()) {
        window->setCursor(activity == Activity::Sending ? Qt::BusyCursor : Qt::ArrowCursor);
    }
}

/// This window and the dialogs that it presents.
QWidgetList MainWindowViewController::windows()
{
    QWidgetList windows{this};
    for (QWidget *dialog : findChildren<PedalSettingDialog *>()) {
        windows << dialog;
    }
    return windows;
}

void MainWindowViewController::setWindowWidth(int width)
{
    setFixedWidth(width);
    fitExplanation();
}

/// Makes the explanation as wide as the window, and as high as the longer text needs it in the
/// narrowest one: so only the desktop's font, never a text or a layout, moves what is below and the
/// window's lower edge.
void MainWindowViewController::fitExplanation()
{
    QLabel *const label = m_ui->labelMainWindowExplanation;
    const int margin = label->x();
    const QRect narrowest(0, 0, BlankWindowWidth - 2 * margin, 0);
    int height = label->minimumHeight();
    for (const QStringView text : {ConnectExplanation, SettingsExplanation}) {
        const QRect needed =
            label->fontMetrics().boundingRect(narrowest, Qt::TextWordWrap, toScreenText(text));
        height = std::max(height, needed.height());
    }
    const int lower = height - label->height();
    label->resize(width() - 2 * margin, height);
    for (auto *control :
         centralWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (control != label) {
            control->move(control->x(), control->y() + lower);
        }
    }
    centralWidget()->setMinimumHeight(centralWidget()->minimumHeight() + lower);
    setFixedHeight(menuBar()->sizeHint().height() + centralWidget()->minimumHeight());
}

void MainWindowViewController::applyLayout(const MainWindowLayout &layout)
{
    setWindowWidth(layout.width);
    for (int i = 0; i < MaxPedals; ++i) {
        const auto row = static_cast<std::size_t>(i);
        const PedalRow &controls = m_rows.at(row);
        if (row < MovableRows) {
            const int left = layout.shift + RowLeft.at(row);
            controls.name->move(left, controls.name->y());
            controls.contents->move(left, controls.contents->y());
            controls.standard->move(left, controls.standard->y());
            controls.advanced->move(left + AdvancedIndent, controls.advanced->y());
        } else {
            controls.name->setVisible(i < layout.rowsShown);
            controls.contents->setVisible(i < layout.rowsShown);
            controls.standard->setVisible(i < layout.rowsShown);
        }
        if (row < layout.captions.size()) {
            const PedalCaptions &captions = layout.captions[row];
            controls.name->setText(captions.name.toString());
            setFittingText(*controls.standard, captions.standardTitle);
            setFittingText(*controls.advanced, captions.advancedTitle);
        }
    }
}

void MainWindowViewController::testchangewidth()
{
    auto *animation = new QVariantAnimation(this);
    animation->setStartValue(width());
    animation->setEndValue(696);
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { setWindowWidth(value.toInt()); });
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void MainWindowViewController::WritePedalContents()
{
    if (SelectedPedalNo >= 0 && SelectedPedalNo < MaxPedals) {
        m_rows.at(static_cast<std::size_t>(SelectedPedalNo))
            .contents->setPlainText(PedalDescription(SelectedPedalNo));
    }
}

// Editing

void MainWindowViewController::openStandardDialog(int pedal)
{
    if (isBusy() || StandardSettingDialogOpen) {
        return;
    }
    const PedalRow &row = m_rows.at(static_cast<std::size_t>(pedal));
    row.standard->setEnabled(false);
    SettingEnabled = false;
    SelectedPedalNo = pedal;
    PedalName = row.name->text();
    row.standard->setEnabled(true);
    row.standard->setFocus(); // disabling it has moved the focus on
    CloseStandardSetting = false;
    StandardSettingDialogOpen = true;
    (new SettingDialogViewController(*this))->present();
}

void MainWindowViewController::SetPedal2Advanced_clicked()
{
    if (isBusy()) {
        return;
    }
    (new AdvancedSettingDialogViewController(*this))->present();
}

} // namespace kavelo
