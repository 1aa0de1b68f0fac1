#pragma once

#include "AlertBox.h"

#include <QString>

#include <functional>

class QObject;
class QWidget;

namespace kavelo {

/// Shows the same notice as alertBox(), but returns at once.
void openNotice(const QString &message);

enum class Answer {
    Ok,     ///< the "OK" button, or Escape
    Cancel, ///< the "Cancel" button, or Return
    None    ///< neither button: the box was closed by its frame, or by the program
};

/// Asks a question with the buttons "OK" (key Escape) and "Cancel" (key Return) and waits for the
/// answer. Logs "others:" and the response code when the answer is neither button. `parent` owns
/// the box, and the event loop runs during the wait, so `parent` may have been deleted when this
/// returns.
[[nodiscard]] Answer askQuestion(const QString &message, QWidget *parent);

/// Asks the same kind of question, but returns at once. `takeAnswer` is called with the answer,
/// unless `receiver` has been deleted.
void openQuestion(const QString &message, QWidget *parent, QObject *receiver,
                  std::function<void(Answer)> takeAnswer);

/// Closes the open questions of `parent`. The answer to each is None.
void dismissQuestions(QWidget *parent);

} // namespace kavelo
