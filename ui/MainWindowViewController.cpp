#include "MainWindowViewController.h"

#include "AdvancedSettingDialogViewController.h"
#include "LabelHeight.h"
#include "MainWindowLayout.h"
#include "PedalDescription.h"
#include "PedalTextBox.h"
#include "ScreenText.h"
#include "SettingDialogViewController.h"
#include "ui_MainWindowViewController.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFocusFrame>
#include <QFontInfo>
#include <QKeyEvent>
#include <QVariantAnimation>

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

namespace kavelo {
namespace {

// Vertical distances between the parts of the window, and their heights.
constexpr int Gap = 8;
constexpr int NameGap = 4;
constexpr int ButtonHeight = 30;
/// Greatest height. The text boxes are shortened to whole lines.
constexpr int ContentsHeight = 196;

const auto Annotation = QStringLiteral("Please use the Windows application for advanced settings.");

/// Gives all controls the same font: the desktop's, or a smaller one when a text does not fit.
void fitFont(std::span<QWidget *const> controls)
{
    QFont font;
    qreal size = QFontInfo(font).pointSizeF();
    for (QWidget *control : controls) {
        control->setFont(font);
        while (control->sizeHint().width() > control->width() && size > 1) {
            size *= 0.97;
            font.setPointSizeF(size);
            control->setFont(font);
        }
    }
    for (QWidget *control : controls) {
        control->setFont(font);
    }
}

} // namespace

MainWindowViewController::MainWindowViewController(QWidget *parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainWindowViewController>())
    , m_rows()
{
    m_ui->setupUi(this);
    m_rows = std::to_array<PedalControls>({
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
    });
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
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        connect(m_rows.at(row).standard, &QPushButton::clicked, this, Actions.at(row));
        connect(m_rows.at(row).advanced, &QPushButton::clicked, this,
                &Self::SetPedal2Advanced_clicked);
    }
    // A frame around the text box that has the focus. Without it only the caret would show the
    // focus.
    auto *frame = new QFocusFrame(this);
    connect(qApp, &QApplication::focusChanged, frame, [=](QWidget * /*old*/, QWidget *now) {
        frame->setWidget(qobject_cast<PedalTextBox *>(now));
    });
    stackControls();
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
    disableRows();
    applyLayout(blankLayout());
}

void MainWindowViewController::disableRows()
{
    for (const PedalControls &row : m_rows) {
        row.name->setEnabled(false);
        row.contents->hide();
        row.contents->clear();
        row.standard->setShortcut({});
        row.standard->setToolTip({});
        row.advanced->setEnabled(false);
    }
    enableCommands();
}

/// Enables the row of a pedal that has been read. Alt+1 is the shortcut of the leftmost pedal,
/// Alt+2 of the next one.
void MainWindowViewController::enableRow(std::size_t row)
{
    const PedalControls &controls = m_rows.at(row);
    const auto isNotRightOf = [&](const PedalControls &other) {
        return other.standard->x() <= controls.standard->x();
    };
    const auto place = std::count_if(m_rows.begin(), m_rows.begin() + NumberOfPedals, isNotRightOf);
    const QKeySequence keys(QStringLiteral("Alt+%1").arg(place));
    controls.standard->setShortcut(keys);
    controls.standard->setToolTip(
        QStringLiteral("Shortcut: %1").arg(keys.toString(QKeySequence::NativeText)));
    controls.name->setEnabled(true);
    controls.contents->show();
    controls.advanced->setEnabled(false);
    enableCommands();
}

/// Moves the focus back to the widget that had it before a read disabled it, or else to the
/// leftmost pedal.
void MainWindowViewController::restoreFocus(QWidget *before)
{
    if (before != nullptr && before != this && before->isEnabled() && before->isVisible()) {
        before->setFocus();
        return;
    }
    const auto left = [](const PedalControls &row) {
        return row.standard->isEnabled() ? row.standard->x() : std::numeric_limits<int>::max();
    };
    std::ranges::min_element(m_rows, {}, left)->standard->setFocus();
}

/// Enables or disables the restore item, the Standard buttons and the open dialog. A widget that
/// had the focus when it was disabled gets it back.
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
    for (const PedalControls &row : m_rows) {
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

/// This window and its dialogs.
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
    stackControls();
}

/// Places the parts of the window below each other, with heights that suit the desktop's font. The
/// explanation and the annotation get the height of their longest text in the narrowest window. So
/// the positions depend only on the font, not on the current text or layout.
void MainWindowViewController::stackControls()
{
    const auto stack = [](QWidget *control, int top, int height) {
        control->setGeometry(control->x(), top, control->width(), height);
        return top + height;
    };
    QLabel *const explanation = m_ui->labelMainWindowExplanation;
    QLabel *const annotation = m_ui->label_Annotation;
    for (QLabel *text : {explanation, annotation}) {
        text->resize(width() - 2 * Margin, text->height());
    }
    constexpr int Narrowest = BlankWindowWidth - 2 * Margin;
    const QStringList texts{toScreenText(ConnectExplanation), toScreenText(SettingsExplanation)};
    const int names = Gap + stack(explanation, Gap, heightForTexts(*explanation, Narrowest, texts));
    int bottom = 0;
    for (const PedalControls &row : m_rows) {
        const int contents = NameGap + stack(row.name, names, fontMetrics().height());
        stack(row.contents, contents, row.contents->heightOfWholeLines(ContentsHeight));
        const int standard = contents + ContentsHeight + Gap;
        const int advanced = Gap + stack(row.standard, standard, ButtonHeight);
        bottom = stack(row.advanced, advanced, ButtonHeight);
    }
    bottom = stack(annotation, bottom + Gap, heightForTexts(*annotation, Narrowest, {Annotation}));
    setFixedHeight(menuBar()->sizeHint().height() + bottom + Gap);
}

void MainWindowViewController::applyLayout(const MainWindowLayout &layout)
{
    setWindowWidth(layout.width);
    std::vector<QWidget *> names;
    std::vector<QWidget *> buttons;
    for (int i = 0; i < MaxPedals; ++i) {
        const auto row = static_cast<std::size_t>(i);
        const PedalControls &controls = m_rows.at(row);
        names.push_back(controls.name);
        buttons.insert(buttons.end(), {controls.standard, controls.advanced});
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
            controls.standard->setText(captions.standardTitle.toString());
            controls.advanced->setText(captions.advancedTitle.toString());
        }
    }
    fitFont(names);
    fitFont(buttons);
    m_ui->centralwidget->tellOfChange();
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

bool MainWindowViewController::raiseDialog()
{
    for (auto *dialog : findChildren<PedalSettingDialog *>()) {
        if (dialog->isVisible()) {
            dialog->activateWindow();
            return true;
        }
    }
    return false;
}

void MainWindowViewController::openStandardDialog(int pedal)
{
    if (isBusy() || raiseDialog() || StandardSettingDialogOpen) {
        return;
    }
    const PedalControls &row = m_rows.at(static_cast<std::size_t>(pedal));
    row.standard->setEnabled(false);
    SettingEnabled = false;
    SelectedPedalNo = pedal;
    PedalName = row.name->text();
    row.standard->setEnabled(true);
    row.standard->setFocus(); // disabling the button has moved the focus
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
