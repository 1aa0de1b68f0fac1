#include "MainWindowViewController.h"

#include "AdditionalDataTransfer.h"
#include "AdvancedSettingDialogViewController.h"
#include "Alert.h"
#include "FactorySettings.h"
#include "MainWindowLayout.h"
#include "PedalDescription.h"
#include "Protocol.h"
#include "ScreenText.h"
#include "SettingDialogViewController.h"
#include "ui_MainWindowViewController.h"

#include <QCloseEvent>
#include <QFontInfo>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVariantAnimation>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kavelo {
namespace {

const auto ConnectExplanation =
    QStringLiteral("Connect the Kavelo. The Kavelo will be automatically recognized.\r"
                   "If you do not set the Kavelo, exit this application.");
const auto SettingsExplanation =
    QStringLiteral("The current settings for the Kavelo are shown below. \r"
                   "If you want to change the settings of a pedal, click the button corresponding "
                   "to the pedal.");
const auto RestoreQuestion =
    QStringLiteral("Settings of this Kavelo will be restored to the initial settings at factory "
                   "shipment. Is it OK with you? \r\n"
                   "Click [OK] to make the Kavelo return to the initial state. \r\n"
                   "Click [Cancel] to do nothing.");

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

/// One piece of work that talks to the unit at length. Its waits may let another one in, which has
/// then changed what this one has done so far; the unit is read afresh after that.
class MainWindowViewController::Run
{
public:
    /// `looksAgain`: when it fails, look what the unit really holds once it is over.
    explicit Run(MainWindowViewController &window, bool looksAgain = true)
        : m_window(window)
        , m_number(++window.m_runs)
        , m_looksAgain(looksAgain)
    {
        m_window.m_mayDoubt = false;
        UnexpectedReply = false;
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;
    ~Run()
    {
        if (isOvertaken()) {
            DeviceDetectedChanged = true;
        } else {
            m_window.m_readAgain = m_hasFailed && m_looksAgain;
        }
    }

    /// Whether the arrays may hold something else by now than this run has put there, or another
    /// unit may stand where the one was. Nothing may be read or written any more then.
    [[nodiscard]] bool isOver() const { return isOvertaken() || DeviceDetectedChanged; }

    /// The unit has not taken or given something.
    void noteFailure() { m_hasFailed = true; }

private:
    [[nodiscard]] bool isOvertaken() const { return m_window.m_runs != m_number; }

    MainWindowViewController &m_window;
    const int m_number;
    const bool m_looksAgain;
    bool m_hasFailed = false;
};

/// While it lives, settings are being sent: the Standard buttons and the restore item do nothing.
class MainWindowViewController::Sending
{
public:
    explicit Sending(MainWindowViewController &window)
        : m_window(window)
        , m_focus(window.focusWidget())
    {
        set(true);
    }
    Sending(const Sending &) = delete;
    Sending &operator=(const Sending &) = delete;
    ~Sending()
    {
        set(false);
        if (m_focus && m_focus->isEnabled()) {
            m_focus->setFocus(); // greying it has moved the focus on
        }
    }

private:
    void set(bool isSending)
    {
        m_window.m_isSending = isSending;
        m_window.enableCommands();
    }

    MainWindowViewController &m_window;
    const QPointer<QWidget> m_focus;
};

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

void MainWindowViewController::enableCommands()
{
    m_ui->InitialStateToolStripMenuItem->setEnabled(isConnected && !m_isSending);
    for (const PedalRow &row : m_rows) {
        row.standard->setEnabled(row.name->isEnabled() && !m_isSending);
    }
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
    for (const QString &text : {ConnectExplanation, SettingsExplanation}) {
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

// The main loop

void MainWindowViewController::UpdateAppWindow()
{
    enableCommands();
    if (UnexpectedReply && std::exchange(m_mayDoubt, false)) {
        m_readAgain = true;
    }
    // Nothing but a change of units gets between the requests of a write or a restore.
    InitialState = InitialState && !m_isSending;
    const bool looksAgain = m_readAgain && !m_isSending && !plugNPlay.isReplyOwed();
    if (!DeviceDetectedChanged && !InitialState && !looksAgain) {
        return;
    }
    // A timer does not fire again while its slot runs, but a fresh one does: this way the ticks go
    // on inside the waits of what follows.
    m_timer.start();
    if (DeviceDetectedChanged) {
        DeviceDetectedChanged = false;
        m_readAgain = false;
        NumberOfPedals = 0; // until the unit has told it
        // A question about the unit that was there is no question about the next one.
        dismissQuestions(this);
        readUnit(MESSAGE_ON);
    } else if (InitialState) {
        restoreInitialSettings();
    } else {
        m_readAgain = false;
        readUnit(MESSAGE_OFF);
    }
}

/// Reads all of the unit. Without `MessageOn` it is the second look after something has failed:
/// what fails again stays as it is.
void MainWindowViewController::readUnit(bool MessageOn)
{
    Run run(*this, MessageOn);
    InitializeControls();
    if (!DeviceDetected) {
        return;
    }
    m_ui->labelMainWindowExplanation->setText(toScreenText(SettingsExplanation));
    const bool isRead = readVersion(MessageOn, run) && readNumberOfPedals(MessageOn, run) &&
                        readPedals(MessageOn, run);
    if (run.isOver()) {
        return;
    }
    if (!isRead) {
        InitializeControls();
    }
    m_mayDoubt = isRead && MessageOn;
}

bool MainWindowViewController::readVersion(bool MessageOn, Run &run)
{
    if (plugNPlay.Communicate(GET_VERSION_NUMBER, MessageOn)) {
        run.noteFailure();
        return false;
    }
    VersionNumberMajor = InputPacketBuffer[2];
    VersionNumberMinor = InputPacketBuffer[3];
    VersionNumberRevision = InputPacketBuffer[4];
    if (VersionNumberMajor >= FirstUnsupportedMajor) {
        alertBox(QStringLiteral("This version is not supported"));
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    }
    return !run.isOver();
}

bool MainWindowViewController::readNumberOfPedals(bool MessageOn, Run &run)
{
    if (plugNPlay.Communicate(GET_NUMBER_OF_PEDALS, MessageOn)) {
        run.noteFailure();
        return false;
    }
    if (run.isOver()) {
        return false;
    }
    NumberOfPedals = InputPacketBuffer[2];
    if (NumberOfPedals > MaxPedals) {
        NumberOfPedals = 0;
        InitializeControls();
        alertBox(QStringLiteral("This number of pedals is not supported"));
        return false;
    }
    return true;
}

bool MainWindowViewController::readPedals(bool MessageOn, Run &run)
{
    applyLayout(pedalLayout(NumberOfPedals));
    for (int pedal = 0; pedal < NumberOfPedals; ++pedal) {
        if (!readPedal(pedal, MessageOn, run)) {
            return false;
        }
    }
    return true;
}

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedal(int pedal, bool MessageOn, Run &run)
{
    const auto row = static_cast<std::size_t>(pedal);
    SelectedPedalNo = pedal;
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    const bool failed = plugNPlay.Communicate(GET_OUTPUT_MODE_AND_DATA, MessageOn);
    if (run.isOver()) {
        return false;
    }
    // After a failure these are what the buffer happens to hold; the other pedals are worth more
    // than a window that stays blank.
    OutputMode.at(row) = InputPacketBuffer[2];
    std::copy_n(InputPacketBuffer.begin() + 3, NUMBER_OF_COMMON_DATA, CommonData.at(row).begin());
    const bool isSequence = !failed && OutputMode.at(row) == PLURAL_SIMULTANEOUS_KEY_OUTPUT;
    const bool isBroken = isSequence && readAdditionalData(plugNPlay, pedal, MessageOn);
    if (failed || isBroken) {
        run.noteFailure();
    }
    if (isBroken || run.isOver()) {
        return false;
    }
    SelectedPedalNo = pedal; // the user may have opened another pedal's dialog meanwhile
    WritePedalContents();
    enableRow(row);
    return true;
}

// Editing

void MainWindowViewController::openStandardDialog(int pedal)
{
    if (m_isSending || StandardSettingDialogOpen) {
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
    (new AdvancedSettingDialogViewController(*this))->present();
}

void MainWindowViewController::SettingDialog_OK()
{
    if (!SettingEnabled || m_isSending) {
        return;
    }
    const QString pedalName = PedalName; // another pedal may be selected meanwhile
    WritePedalContents();
    if (sendSelectedPedal()) {
        alertBox(
            QStringLiteral("The settings of the %1 have finished successfully.").arg(pedalName));
    }
}

bool MainWindowViewController::sendSelectedPedal()
{
    const Sending sending(*this);
    Run run(*this);
    fillSetOutputModeAndData(SelectedPedalNo);
    // The Advanced dialog stays open when its unit goes; the next one may have fewer pedals.
    const bool isGone = run.isOver() || SelectedPedalNo >= NumberOfPedals;
    bool failed = isGone || plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON);
    if (!failed) {
        fillSetParameters();
        failed = plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    }
    if (failed) {
        InitializeControls();
        run.noteFailure();
    }
    return !failed;
}

// Restore

void MainWindowViewController::restoreInitialSettings()
{
    InitialState = false;
    if (!isRestoreWanted()) {
        return;
    }
    logLine(QStringLiteral("The selected Kavelo is returning to the initial state in time of "
                           "factory shipment."));
    const bool restored = sendFactorySettings();
    if (m_closing) {
        return;
    }
    alertBox(
        restored
            ? QStringLiteral(
                  "The settings for this Kavelo have been restored to the initial settings.")
            : QStringLiteral("An error has occurred.\r\nThe settings for this Kavelo could not "
                             "be restored to the initial settings."));
}

bool MainWindowViewController::isRestoreWanted()
{
    const Sending sending(*this); // it is about to
    const Answer answer = askQuestion(RestoreQuestion, this);
    if (answer == Answer::Cancel) {
        logLine(QStringLiteral("Canceled"));
    }
    return answer == Answer::Ok;
}

/// Returns whether the unit has taken the timing parameters, which close a restore.
bool MainWindowViewController::sendFactorySettings()
{
    const Sending sending(*this);
    Run run(*this);
    const int pedals = NumberOfPedals;
    // The user has agreed to restore this unit, not one that comes in its place.
    for (int pedal = 0; pedal < pedals && !run.isOver(); ++pedal) {
        SelectedPedalNo = pedal;
        applyFactorySetting(pedal);
        WritePedalContents();
        fillSetOutputModeAndData(pedal);
        if (plugNPlay.Communicate(SET_OUTPUT_MODE_AND_DATA, MESSAGE_ON)) {
            InitializeControls();
            run.noteFailure();
        }
    }
    fillSetParameters();
    const bool failed = run.isOver() || plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    if (failed) {
        InitializeControls();
        run.noteFailure();
    }
    return !failed;
}

} // namespace kavelo
