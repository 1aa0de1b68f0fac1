#include "Alert.h"

#include "Log.h"
#include "ScreenText.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>

namespace kavelo {
namespace {

/// A message box whose window frame answers no button. QMessageBox itself takes closing the frame
/// for its Escape button, and in a question that button is "OK".
class Box : public QMessageBox
{
    Q_OBJECT

    static constexpr int MinimumWidth = 420;

public:
    Box(const QString &title, const QString &message, QWidget *parent)
        : QMessageBox(QMessageBox::Information, QStringLiteral("Kavelo"), title,
                      QMessageBox::NoButton, parent)
    {
        setInformativeText(toScreenText(message));
        // Left to itself, the informative text is wrapped after a few words.
        if (auto *grid = qobject_cast<QGridLayout *>(layout())) {
            grid->addItem(new QSpacerItem(MinimumWidth, 0), grid->rowCount(), 0, 1,
                          grid->columnCount());
        }
    }

    /// The button that Return and Enter press, wherever the focus is.
    void setReturnButton(StandardButton standardButton)
    {
        setDefaultButton(standardButton);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            auto *shortcut = new QShortcut(key, this);
            shortcut->setAutoRepeat(false); // nothing is answered by the key that led here
            connect(shortcut, &QShortcut::activated, button(standardButton),
                    &QAbstractButton::click);
        }
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        event->accept();
        done(NoButton);
    }
};

class QuestionBox : public Box
{
    Q_OBJECT

public:
    using Box::Box;
};

/// Shows the box until it is closed or goes away with its parent; returns the button's code, or
/// NoButton.
int runBox(const QPointer<Box> &box)
{
    const int response = box->exec();
    delete box;
    return response;
}

/// The window that the user is working in. One that has been closed may still be the active one.
QWidget *windowInUse()
{
    QWidget *window = QApplication::activeWindow();
    while (window != nullptr && !window->isVisible()) {
        window = window->parentWidget();
    }
    return window;
}

} // namespace

void alertBox(const QString &Message)
{
    auto *box = new Box({}, Message, windowInUse());
    box->setStandardButtons(QMessageBox::Ok);
    box->setReturnButton(QMessageBox::Ok);
    const int response = runBox(box);
    logLine(response == QMessageBox::Ok ? QStringLiteral("alert_OK_pushed")
                                        : QStringLiteral("others:%1").arg(response));
}

Answer askQuestion(const QString &message, QWidget *parent)
{
    auto *box = new QuestionBox(QStringLiteral("Marvode Kavelo"), message, parent);
    box->setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box->setReturnButton(QMessageBox::Cancel);
    box->setEscapeButton(QMessageBox::Ok);
    for (auto *button : box->findChildren<QPushButton *>()) {
        button->setAutoDefault(false); // the default look stays with Cancel when the focus moves on
        button->setIcon({});           // the style's one for "OK" is a Return key
    }
    switch (const int response = runBox(box)) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        logLine(QStringLiteral("others:%1").arg(response));
        return Answer::None;
    }
}

void dismissQuestions(QWidget *parent)
{
    for (QuestionBox *box : parent->findChildren<QuestionBox *>()) {
        box->done(QMessageBox::NoButton);
    }
}

} // namespace kavelo

#include "Alert.moc"
