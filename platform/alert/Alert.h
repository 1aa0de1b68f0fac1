#pragma once

#include "AlertBox.h"

#include <QString>

#include <functional>

class QObject;
class QWidget;

namespace kavelo {

/// Shows the same notice as alertBox(), without waiting.
void openNotice(const QString &message);

enum class Answer {
    Ok,     ///< the "OK" button, or Escape
    Cancel, ///< the "Cancel" button, or Return
    None    ///< neither button: the box was closed by its frame, or taken down with its parent
};

/// Asks a question with the buttons "OK" (key Escape) and "Cancel" (key Return) and waits for the
/// answer. Logs "others:" and the response code for an answer that is neither button.
/// The box belongs to `parent` and goes away with it; the event loop keeps running meanwhile, so
/// `parent` may be gone when this returns.
[[nodiscard]] Answer askQuestion(const QString &message, QWidget *parent);

/// Asks in the same way without waiting. `takeAnswer` is called with the answer, as long as
/// `receiver` is there.
void openQuestion(const QString &message, QWidget *parent, QObject *receiver,
                  std::function<void(Answer)> takeAnswer);

/// Takes down the open questions of `parent`; each is then answered None.
void dismissQuestions(QWidget *parent);

} // namespace kavelo
