#include "Alert.h"

#include "ScreenText.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <cstdio>
#include <memory>

namespace kavelo {
namespace {

constexpr auto QuestionName = "question";

/// Runs a box that may be deleted together with its parent while it is open. `box` is null
/// afterwards when that happened.
int runBox(const QPointer<QMessageBox> &box)
{
    const int response = box->exec();
    if (box) {
        box->deleteLater();
    }
    return response;
}

QMessageBox *createBox(const QString &title, const QString &message, QWidget *parent)
{
    // Closing the box's parent must never delete a box twice: it always lives on the heap and is
    // deleted by its parent or, when it was closed by the user, by the event loop.
    auto *box = new QMessageBox(parent);
    box->setIcon(QMessageBox::Information);
    box->setText(title);
    box->setInformativeText(toScreenText(message));
    return box;
}

} // namespace

void logLine(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

void alertBox(const QString &Message)
{
    const QPointer<QMessageBox> box = createBox({}, Message, QApplication::activeWindow());
    box->setStandardButtons(QMessageBox::Ok);
    const int response = runBox(box);
    logLine(response == QMessageBox::Ok ? QStringLiteral("alert_OK_pushed")
                                        : QStringLiteral("others:%1").arg(response));
}

Answer askQuestion(const QString &message, QWidget *parent)
{
    const QPointer<QMessageBox> box = createBox(QStringLiteral("Marvode Kavelo"), message, parent);
    box->setObjectName(QLatin1String(QuestionName));
    box->setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setEscapeButton(QMessageBox::Ok);
    const int response = runBox(box);
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

void dismissQuestions(QWidget *parent)
{
    const auto boxes = parent->findChildren<QMessageBox *>(QLatin1String(QuestionName));
    for (QMessageBox *box : boxes) {
        box->done(QMessageBox::NoButton);
    }
}

} // namespace kavelo
