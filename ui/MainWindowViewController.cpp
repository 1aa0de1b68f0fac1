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
#include <QPlainTextEdit>
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
    const int textWidth = button.fontMetrics().horizontalAdvance(button.text());
    const int available = button.width() - (button.sizeHint().width() - textWidth);
    if (textWidth > available) {
        QFont font = button.font();
        font.setPointSizeF(QFontInfo(font).pointSizeF() * available / textWidth);
        button.setFont(font);
    }
}

} // namespace

/// One piece of work that talks to the unit at length. Its waits may let another one in, which has
/// then changed what this one has done so far; the unit is read afresh after that.
class MainWindowViewController::Run
{
public:
    explicit Run(MainWindowViewController &window)
        : m_window(window)
        , m_number(++window.m_runs)
    {
        m_window.m_mayDoubt = false;
        UnexpectedReply = false;
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;
    ~Run()
    {
        if (overtaken()) {
            DeviceDetectedChanged = true;
        } else {
            m_window.m_readAgain = m_hasFailed;
        }
    }

    [[nodiscard]] bool overtaken() const { return m_window.m_runs != m_number; }

    /// Whether another unit may stand where the one was whose settings the arrays hold. Nothing may
    /// be written then.
    [[nodiscard]] bool unitChanged() const { return overtaken() || DeviceDetectedChanged; }

    /// The unit has not taken or given something. When this run is over, look what it really holds.
    void noteFailure() { m_hasFailed = true; }

private:
    MainWindowViewController &m_window;
    const int m_number;
    bool m_hasFailed = false;
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
    // The menu bar is as high as the desktop's font makes it; the rest of the height is the form's.
    setFixedHeight(menuBar()->sizeHint().height() + centralWidget()->minimumHeight());
    connect(&m_timer, &QTimer::timeout, this, &MainWindowViewController::UpdateAppWindow);
    m_timer.start(TickPeriod);
}

void MainWindowViewController::viewDidAppear()
{
    InitializeControls();
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
        row.standard->setEnabled(false);
        row.advanced->setEnabled(false);
    }
}

void MainWindowViewController::enableRow(std::size_t row)
{
    m_rows.at(row).name->setEnabled(true);
    m_rows.at(row).contents->show();
    m_rows.at(row).standard->setEnabled(true);
    m_rows.at(row).advanced->setEnabled(false);
}

void MainWindowViewController::setWindowWidth(int width)
{
    setFixedWidth(width);
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
    m_ui->InitialStateToolStripMenuItem->setEnabled(isConnected);
    if (UnexpectedReply && std::exchange(m_mayDoubt, false)) {
        m_readAgain = true;
    }
    if (!DeviceDetectedChanged && !InitialState && !m_readAgain) {
        return;
    }
    // A timer does not fire again while its slot runs, but a fresh one does: this way the ticks go
    // on inside the waits of what follows.
    m_timer.start();
    if (DeviceDetectedChanged) {
        DeviceDetectedChanged = false;
        m_readAgain = false;
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

void MainWindowViewController::readUnit(bool MessageOn)
{
    Run run(*this);
    InitializeControls();
    if (!DeviceDetected) {
        return;
    }
    m_ui->labelMainWindowExplanation->setText(toScreenText(SettingsExplanation));
    const bool known = readVersion(MessageOn) && readNumberOfPedals(MessageOn);
    if (run.overtaken()) {
        return;
    }
    if (!known) {
        InitializeControls();
        return;
    }
    applyLayout(pedalLayout(NumberOfPedals));
    for (int pedal = 0; pedal < NumberOfPedals; ++pedal) {
        if (!readPedal(pedal, MessageOn, run)) {
            return;
        }
    }
    m_mayDoubt = MessageOn;
}

bool MainWindowViewController::readVersion(bool MessageOn)
{
    if (plugNPlay.Communicate(GET_VERSION_NUMBER, MessageOn)) {
        return false;
    }
    VersionNumberMajor = InputPacketBuffer[2];
    VersionNumberMinor = InputPacketBuffer[3];
    VersionNumberRevision = InputPacketBuffer[4];
    if (VersionNumberMajor >= FirstUnsupportedMajor) {
        alertBox(QStringLiteral("This version is not supported"));
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    }
    return true;
}

bool MainWindowViewController::readNumberOfPedals(bool MessageOn)
{
    if (plugNPlay.Communicate(GET_NUMBER_OF_PEDALS, MessageOn)) {
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

/// Returns false when the read must not go on.
bool MainWindowViewController::readPedal(int pedal, bool MessageOn, Run &run)
{
    const auto row = static_cast<std::size_t>(pedal);
    SelectedPedalNo = pedal;
    OutputPacketBuffer[1] = static_cast<std::uint8_t>(pedal);
    const bool failed = plugNPlay.Communicate(GET_OUTPUT_MODE_AND_DATA, MessageOn);
    if (run.overtaken()) {
        return false;
    }
    if (failed && MessageOn == MESSAGE_OFF) {
        // This was the second look already.
        InitializeControls();
        return false;
    }
    if (failed) {
        // The row shows what the buffer happens to hold, until the unit is read again.
        run.noteFailure();
    }
    OutputMode.at(row) = InputPacketBuffer[2];
    std::copy_n(InputPacketBuffer.begin() + 3, NUMBER_OF_COMMON_DATA, CommonData.at(row).begin());

    const bool isBroken = OutputMode.at(row) == PLURAL_SIMULTANEOUS_KEY_OUTPUT &&
                          readAdditionalData(plugNPlay, pedal, MessageOn);
    if (run.overtaken()) {
        return false;
    }
    if (isBroken) {
        InitializeControls();
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
    if (!SettingEnabled) {
        return;
    }
    WritePedalContents();
    if (sendSelectedPedal()) {
        alertBox(
            QStringLiteral("The settings of the %1 have finished successfully.").arg(PedalName));
    }
}

bool MainWindowViewController::sendSelectedPedal()
{
    Run run(*this);
    fillSetOutputModeAndData(SelectedPedalNo);
    // The Advanced dialog stays open when its unit goes; the next one may have fewer pedals.
    const bool isGone = run.unitChanged() || SelectedPedalNo >= NumberOfPedals;
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
    const Answer answer = askQuestion(RestoreQuestion, this);
    if (answer == Answer::Cancel) {
        logLine(QStringLiteral("Canceled"));
    }
    if (answer != Answer::Ok) {
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

/// Returns whether the unit has taken the timing parameters, which close a restore.
bool MainWindowViewController::sendFactorySettings()
{
    Run run(*this);
    const int pedals = NumberOfPedals;
    // The user has agreed to restore this unit, not one that comes in its place.
    for (int pedal = 0; pedal < pedals && !run.unitChanged(); ++pedal) {
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
    const bool failed = run.unitChanged() || plugNPlay.Communicate(SET_PARAMETERS, MESSAGE_ON);
    if (failed) {
        InitializeControls();
        run.noteFailure();
    }
    return !failed;
}

} // namespace kavelo
