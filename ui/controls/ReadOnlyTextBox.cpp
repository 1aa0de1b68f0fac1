#include "ReadOnlyTextBox.h"

#include <QAccessibleWidget>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace kavelo {
namespace {

constexpr int Padding = 4;

/// The accessible interface of the box. The one of QPlainTextEdit lets assistive technology change
/// a text that is read-only.
class AccessibleReadOnlyTextBox : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit AccessibleReadOnlyTextBox(ReadOnlyTextBox *box)
        : QAccessibleWidget(box, QAccessible::EditableText)
        , m_box(*box)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = state.multiLine = state.selectableText = true;
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_box.toPlainText() : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] int characterCount() const override
    {
        return static_cast<int>(m_box.toPlainText().size());
    }
    [[nodiscard]] QString text(int start, int end) const override
    {
        return m_box.toPlainText().mid(start, end - start);
    }
    QString attributes(int /*offset*/, int *start, int *end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }
    [[nodiscard]] int cursorPosition() const override { return m_box.textCursor().position(); }
    void setCursorPosition(int offset) override { m_box.setTextCursor(cursor(offset, offset)); }
    [[nodiscard]] int selectionCount() const override
    {
        return m_box.textCursor().hasSelection() ? 1 : 0;
    }
    void selection(int /*index*/, int *start, int *end) const override
    {
        *start = m_box.textCursor().selectionStart();
        *end = m_box.textCursor().selectionEnd();
    }
    void addSelection(int start, int end) override { m_box.setTextCursor(cursor(start, end)); }
    void setSelection(int /*index*/, int start, int end) override { addSelection(start, end); }
    void removeSelection(int /*index*/) override { setCursorPosition(cursorPosition()); }
    [[nodiscard]] QRect characterRect(int offset) const override
    {
        QRect rect = m_box.cursorRect(cursor(offset, offset));
        const QRect next = m_box.cursorRect(cursor(offset + 1, offset + 1));
        if (next.top() == rect.top()) {
            rect.setRight(next.left());
        }
        return rect.translated(m_box.viewport()->mapToGlobal(QPoint()));
    }
    [[nodiscard]] int offsetAtPoint(const QPoint &point) const override
    {
        return m_box.cursorForPosition(m_box.viewport()->mapFromGlobal(point)).position();
    }
    void scrollToSubstring(int start, int /*end*/) override
    {
        m_box.verticalScrollBar()->setValue(cursor(start, start).block().firstLineNumber());
    }

private:
    [[nodiscard]] QTextCursor cursor(int start, int end) const
    {
        QTextCursor cursor = m_box.textCursor();
        cursor.setPosition(std::clamp(start, 0, characterCount()));
        cursor.setPosition(std::clamp(end, 0, characterCount()), QTextCursor::KeepAnchor);
        return cursor;
    }

    ReadOnlyTextBox &m_box;
};

QAccessibleInterface *createAccessible(const QString & /*className*/, QObject *object)
{
    auto *box = qobject_cast<ReadOnlyTextBox *>(object);
    return box == nullptr ? nullptr : new AccessibleReadOnlyTextBox(box);
}

} // namespace

ReadOnlyTextBox::ReadOnlyTextBox(QWidget *parent)
    : QPlainTextEdit(parent)
{
    QAccessible::installFactory(createAccessible); // further calls have no effect
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The margin of the document would scroll with the text, so that parts of lines would be
    // visible.
    document()->setDocumentMargin(0);
    setViewportMargins(Padding, Padding, Padding, Padding);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

int ReadOnlyTextBox::heightForLines(int lines, int height) const
{
    const int around = 2 * (frameWidth() + Padding);
    const int line = cursorRect().height();
    return around + line * std::max(lines, (height - around) / line);
}

} // namespace kavelo
