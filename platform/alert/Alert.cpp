#include "Alert.h"

#include "Log.h"
#include "ScreenText.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace kavelo {
namespace {

/// A message box that can be closed by its frame without pressing a button. A plain QMessageBox
/// then presses its Escape button, and the Escape button of a question is "OK".
class Box : public QMessageBox
{
    Q_OBJECT

    static constexpr int MinimumWidth = 420;

public:
    /// Return and Enter press `returnButton`, wherever the focus is.
    Box(const QString &title, const QString &message, QWidget *parent, StandardButtons buttons,
        StandardButton returnButton)
        : QMessageBox(QMessageBox::Information, QStringLiteral("Kavelo"), title, buttons, parent)
    {
        setInformativeText(toScreenText(message));
        // A minimum width for the informative text, which Qt otherwise wraps after a few words.
        if (auto *grid = qobject_cast<QGridLayout *>(layout())) {
            grid->addItem(new QSpacerItem(MinimumWidth, 0), grid->rowCount(), 0, 1,
                          grid->columnCount());
        }
        if (auto *label = findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
            label->setVisible(!title.isEmpty()); // an empty title must not take up a line
        }
        for (auto *button : findChildren<QPushButton *>()) {
            button->setAutoDefault(false); // the default button keeps its look when the focus moves
            button->setIcon({});           // some styles show an icon of the Return key on "OK"
        }
        setDefaultButton(returnButton);
        // Not window modal, which open() would set: Qt then leaves the keyboard to a window behind
        // the box when the user clicks on it.
        setWindowModality(Qt::ApplicationModal);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            connect(new QShortcut(key, this), &QShortcut::activated, button(returnButton),
                    &QAbstractButton::click);
        }
    }

protected:
    void changeEvent(QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange && !isEnabled()) {
            // The dialog behind the box has been disabled. The box must stay usable.
            setEnabled(true);
            defaultButton()->setFocus();
        }
        QMessageBox::changeEvent(event);
    }
    void closeEvent(QCloseEvent *event) override
    {
        event->accept();
        done(NoButton);
    }
};

/// The parent for a notice: the window that the user is working in, or else the main window.
/// Without a parent the window manager could put the box anywhere on the screen.
QWidget *windowInUse()
{
    if (QWidget *active = QApplication::activeWindow()) {
        return active;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto main = std::ranges::find_if(windows, [](const QWidget *other) {
        return other->isVisible() && qobject_cast<const QMainWindow *>(other) != nullptr;
    });
    return main == windows.end() ? nullptr : *main;
}

Box *newNotice(const QString &message)
{
    return new Box({}, message, windowInUse(), QMessageBox::Ok, QMessageBox::Ok);
}

class QuestionBox : public Box
{
    Q_OBJECT

public:
    QuestionBox(const QString &message, QWidget *parent)
        : Box(QStringLiteral("Marvode Kavelo"), message, parent,
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel)
    {
        setEscapeButton(QMessageBox::Ok);
    }
};

/// Shows the box until it is closed or deleted with its parent. Returns the code of the pressed
/// button, or NoButton.
int runBox(const QPointer<Box> &box)
{
    const int response = box->exec();
    delete box;
    return response;
}

/// Shows the box and returns at once. `takeResponse` is called with the code of the pressed button,
/// or NoButton, unless `receiver` has been deleted.
void openBox(Box *box, QObject *receiver, std::function<void(int)> takeResponse)
{
    QObject::connect(box, &QDialog::finished, box, &QObject::deleteLater);
    QObject::connect(box, &QDialog::finished, receiver, std::move(takeResponse));
    box->show();
}

/// Returns the user's answer. Logs a response that is neither button.
Answer noteResponse(int response)
{
    switch (response) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        logLine(QStringLiteral("others:%1").arg(response));
        return Answer::None;
    }
}

void noteNotice(int response)
{
    if (noteResponse(response) == Answer::Ok) {
        logLine(QStringLiteral("alert_OK_pushed"));
    }
}

} // namespace

void alertBox(const QString &Message)
{
    noteNotice(runBox(newNotice(Message)));
}

void openNotice(const QString &message)
{
    openBox(newNotice(message), qApp, noteNotice);
}

Answer askQuestion(const QString &message, QWidget *parent)
{
    return noteResponse(runBox(new QuestionBox(message, parent)));
}

void openQuestion(const QString &message, QWidget *parent, QObject *receiver,
                  std::function<void(Answer)> takeAnswer)
{
    openBox(
        new QuestionBox(message, parent), receiver,
        [takeAnswer = std::move(takeAnswer)](int response) { takeAnswer(noteResponse(response)); });
}

void dismissQuestions(QWidget *parent)
{
    for (QuestionBox *box : parent->findChildren<QuestionBox *>()) {
        if (box->isVisible()) {
            box->done(QMessageBox::NoButton);
        }
    }
}

} // namespace kavelo

#include "Alert.moc"
