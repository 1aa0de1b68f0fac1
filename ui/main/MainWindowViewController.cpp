#include "MainWindowViewController.h"

#include "AdvancedSettingDialogViewController.h"
#include "LabelHeight.h"
#include "MainWindowLayout.h"
#include "PedalDescription.h"
#include "Protocol.h"
#include "ReadOnlyTextBox.h"
#include "ScreenText.h"
#include "SettingDialogViewController.h"
#include "UnitRun.h"
#include "ui_MainWindowViewController.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QScreen>
#include <QVariantAnimation>

#include <algorithm>
#include <utility>

namespace kavelo {
namespace {

constexpr int Gap = 8;

const auto Annotation = QStringLiteral("Please use the Windows application for advanced settings.");

std::unique_ptr<Ui::MainWindowViewController> loadForm(QMainWindow &window)
{
    auto form = std::make_unique<Ui::MainWindowViewController>();
    form->setupUi(&window);
    return form;
}

} // namespace

MainWindowViewController::MainWindowViewController(QWidget *parent)
    : QMainWindow(parent)
    , m_ui(loadForm(*this))
    , m_rows(*m_ui)
{
    viewDidLoad();
}

MainWindowViewController::~MainWindowViewController() = default;

void MainWindowViewController::viewDidLoad()
{
    using Self = MainWindowViewController;
    constexpr auto Actions = std::to_array({
        &Self::buttonSetPedal0Standard_Clicked,
        &Self::buttonSetPedal1Standard_Clicked,
        &Self::buttonSetPedal2Standard_Clicked,
        &Self::buttonSetPedal3Standard_Clicked,
        &Self::buttonSetPedal4Standard_Clicked,
    });
    static_assert(Actions.size() == MaxPedals);
    for (int row = 0; row < MaxPedals; ++row) {
        connect(m_rows.at(row).standard, &QPushButton::clicked, this,
                Actions.at(static_cast<std::size_t>(row)));
        connect(m_rows.at(row).advanced, &QPushButton::clicked, this,
                &Self::SetPedal2Advanced_clicked);
    }
    // A frame around the text box that has the focus. Without it only the caret would show the
    // focus.
    auto *frame = new QFocusFrame(this);
    connect(qApp, &QApplication::focusChanged, frame, [=](QWidget * /*old*/, QWidget *now) {
        frame->setWidget(qobject_cast<ReadOnlyTextBox *>(now));
    });
    stackControls();
    const QScreen *used = QGuiApplication::screenAt(QCursor::pos());
    move(firstPlace((used != nullptr ? used : screen())->availableGeometry(), height()));
    // Queued, because the link must not wait for the windows.
    connect(&plugNPlay, &HID_PnP::unitChanged, this, &MainWindowViewController::enableCommands,
            Qt::QueuedConnection);
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
    if (isReturn && button != nullptr) {
        button->click(); // QPushButton handles Return only in dialogs
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
    // A running exchange must end now, so that the program can exit.
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
    m_ui->label_Annotation->setText(Annotation);
    m_ui->InitialStateToolStripMenuItem->setText(QStringLiteral("Restore to Initial Settings"));
    m_ui->ExitToolStripMenuItem->setText(QStringLiteral("Quit Kavelo"));
    m_ui->QuickStartGuideToolStripMenuItem->setText(QStringLiteral("Quick Start Guide"));
    m_ui->VersionInformationToolStripMenuItem->setText(QStringLiteral("Version Information"));
    m_rows.darken();
    applyLayout(blankLayout());
    enableCommands();
}

void MainWindowViewController::applyLayout(const MainWindowLayout &layout)
{
    setWindowWidth(layout.width);
    m_rows.applyLayout(layout);
    m_ui->centralwidget->tellOfChange();
}

/// Moves the focus back to the widget that had it before a read disabled it, or else to the
/// leftmost pedal.
void MainWindowViewController::restoreFocus(QWidget *before)
{
    if (before != nullptr && before != this && before->isEnabled() && before->isVisible()) {
        before->setFocus();
    } else {
        m_rows.focusLeftmost();
    }
}

void MainWindowViewController::setWindowWidth(int width)
{
    setFixedWidth(width);
    stackControls();
}

/// Places the parts of the window below each other, with heights that suit the desktop's font. The
/// explanation and the annotation get the height of their longest text in the narrowest window. So
/// the positions depend only on the font, not on the current text or layout.
void MainWindowViewController::stackControls()
{
    QLabel *const explanation = m_ui->labelMainWindowExplanation;
    QLabel *const annotation = m_ui->label_Annotation;
    constexpr int Narrowest = BlankWindowWidth - 2 * Margin;
    const QStringList texts{toScreenText(ConnectExplanation), toScreenText(SettingsExplanation)};
    const int explanationHeight = heightForTexts(*explanation, Narrowest, texts);
    explanation->setGeometry(Margin, Gap, width() - 2 * Margin, explanationHeight);
    const int bottom = m_rows.stack(Gap + explanationHeight + Gap) + Gap;
    const int annotationHeight = heightForTexts(*annotation, Narrowest, {Annotation});
    annotation->setGeometry(Margin, bottom, width() - 2 * Margin, annotationHeight);
    setFixedHeight(menuBar()->sizeHint().height() + bottom + annotationHeight + Gap);
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
        m_rows.at(SelectedPedalNo).contents->setPlainText(PedalDescription(SelectedPedalNo));
    }
}

// Commands

/// Whether a write or a restore waits, is sent, or waits for the user. Meanwhile no other one is
/// accepted, no dialog opens, and an open dialog is disabled and keeps what the user has set.
bool MainWindowViewController::isBusy() const
{
    return m_writer || InitialState || isTaskRunning();
}

/// Enables or disables the restore item, the Standard buttons and the open dialog. A widget that
/// had the focus when it was disabled gets it back.
void MainWindowViewController::enableCommands()
{
    const bool areBusy = isBusy();
    if (areBusy && m_focusBefore.empty()) {
        for (const QWidget *window : windows()) {
            m_focusBefore.emplace_back(window->focusWidget());
        }
    }
    m_ui->InitialStateToolStripMenuItem->setEnabled(isConnected && !isTaskRunning());
    m_rows.enableStandardButtons(!areBusy && !DeviceDetectedChanged);
    for (QWidget *dialog : dialogs()) {
        dialog->setEnabled(!areBusy);
    }
    if (!areBusy) {
        for (const QPointer<QWidget> &control : std::exchange(m_focusBefore, {})) {
            if (control && control->isEnabled()) {
                control->setFocus();
            }
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

/// The dialogs that have not been deleted yet. Only direct children are looked at, because every
/// tick asks.
QList<PedalSettingDialog *> MainWindowViewController::dialogs() const
{
    return findChildren<PedalSettingDialog *>(QString(), Qt::FindDirectChildrenOnly);
}

/// This window and its dialogs.
QWidgetList MainWindowViewController::windows()
{
    QWidgetList windows{this};
    for (QWidget *dialog : dialogs()) {
        windows << dialog;
    }
    return windows;
}

// Editing

/// The dialog that is open, loads or waits for an answer; null when there is none.
PedalSettingDialog *MainWindowViewController::openDialog() const
{
    const auto found = dialogs();
    const auto open = std::ranges::find_if_not(found, &PedalSettingDialog::isDismissed);
    return open == found.end() ? nullptr : *open;
}

/// Whether the pedal's row has been read from the unit that is held. The other pedals may still be
/// being read.
bool MainWindowViewController::canOpenDialog(int pedal) const
{
    return pedal >= 0 && pedal < MaxPedals && m_rows.isLit(pedal) && !DeviceDetectedChanged &&
           !isBusy();
}

void MainWindowViewController::openStandardDialog(int pedal)
{
    if (!canOpenDialog(pedal)) {
        return;
    }
    if (PedalSettingDialog *const dialog = openDialog()) {
        dialog->activateWindow();
        return;
    }
    const PedalRows::Controls &row = m_rows.at(pedal);
    row.standard->setEnabled(false); // given: the button is disabled while the state is set
    SettingEnabled = false;
    SelectedPedalNo = pedal;
    PedalName = row.name->text();
    row.standard->setEnabled(true);
    row.standard->setFocus(); // disabling the button has moved the focus
    StandardSettingDialogOpen = true;
    (new SettingDialogViewController(*this, *this))->present();
}

void MainWindowViewController::SetPedal2Advanced_clicked()
{
    if (!canOpenDialog(SelectedPedalNo)) {
        return;
    }
    if (PedalSettingDialog *const dialog = openDialog()) {
        dialog->activateWindow();
        return;
    }
    (new AdvancedSettingDialogViewController(*this, *this))->present();
}

void MainWindowViewController::requestWrite(PedalSettingDialog &dialog)
{
    if (isBusy()) {
        return;
    }
    m_writer = &dialog;
    enableCommands();
    if (nextTask() == Task::Write) {
        carryOutWrite();
    }
}

void MainWindowViewController::carryOutWrite()
{
    const QPointer<PedalSettingDialog> dialog = std::exchange(m_writer, nullptr);
    if (!dialog || dialog->isDismissed()) {
        return;
    }
    if (isUnitKnown() && dialog->isUnitHeld() && dialog->pedal() < NumberOfPedals) {
        dialog->send();
        return;
    }
    UnitRun run(plugNPlay, m_unit, MESSAGE_ON);
    tell(run, QStringLiteral("sending error"));
    enter(run, Activity::Idle);
    if (dialog && !dialog->isUnitHeld()) {
        dialog->dismiss();
    }
}

} // namespace kavelo
