#include "PedalRows.h"

#include "MainWindowLayout.h"
#include "Protocol.h"
#include "ReadOnlyTextBox.h"
#include "ui_MainWindowViewController.h"

#include <QFontInfo>

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

namespace kavelo {
namespace {

// Vertical distances between the controls of a row, and their heights.
constexpr int NameGap = 4;
constexpr int ButtonGap = 8;
/// Height of a button beside its title.
constexpr int ButtonFrame = 10;
/// The text boxes show ten lines, or more in a small font.
constexpr int ContentsLines = 10;
constexpr int ContentsHeight = 196;

/// Gives all controls the same font: the desktop's, or a smaller one when a text does not fit.
void fitFont(std::span<QWidget *const> controls)
{
    QFont font;
    qreal size = QFontInfo(font).pointSizeF();
    for (QWidget *control : controls) {
        control->setFont(font);
        while (control->minimumSizeHint().width() > control->width() && size > 1) {
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

PedalRows::PedalRows(const Ui::MainWindowViewController &ui)
    : m_rows(std::to_array<Controls>({
          {ui.labelPedal0Name, ui.textboxPedal0Contents, ui.buttonSetPedal0Standard,
           ui.buttonSetPedal0Advanced},
          {ui.labelPedal1Name, ui.textboxPedal1Contents, ui.buttonSetPedal1Standard,
           ui.buttonSetPedal1Advanced},
          {ui.labelPedal2Name, ui.textboxPedal2Contents, ui.buttonSetPedal2Standard,
           ui.buttonSetPedal2Advanced},
          {ui.labelPedal3Name, ui.textboxPedal3Contents, ui.buttonSetPedal3Standard,
           ui.buttonSetPedal3Advanced},
          {ui.labelPedal4Name, ui.textboxPedal4Contents, ui.buttonSetPedal4Standard,
           ui.buttonSetPedal4Advanced},
      }))
{
}

// State

void PedalRows::darken()
{
    for (const Controls &row : m_rows) {
        row.name->setEnabled(false);
        row.contents->hide();
        row.contents->clear();
        row.standard->setEnabled(false);
        row.standard->setShortcut({});
        row.standard->setToolTip({});
        row.advanced->setEnabled(false);
    }
}

void PedalRows::light(int row)
{
    const Controls &controls = at(row);
    const auto isNotRightOf = [&](const Controls &other) {
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
}

bool PedalRows::isLit(int row) const
{
    return at(row).name->isEnabled();
}

void PedalRows::enableStandardButtons(bool areEnabled) const
{
    for (int row = 0; row < MaxPedals; ++row) {
        at(row).standard->setEnabled(areEnabled && isLit(row));
    }
}

void PedalRows::focusLeftmost() const
{
    const auto left = [](const Controls &row) {
        return row.standard->isEnabled() ? row.standard->x() : std::numeric_limits<int>::max();
    };
    std::ranges::min_element(m_rows, {}, left)->standard->setFocus();
}

// Layout

int PedalRows::stack(int top)
{
    const auto stackControl = [](QWidget *control, int y, int height) {
        control->setGeometry(control->x(), y, control->width(), height);
        return y + height;
    };
    int bottom = top;
    for (const Controls &row : m_rows) {
        const int line = row.name->window()->fontMetrics().height();
        const int button = 2 * line + ButtonFrame;
        const int contents = NameGap + stackControl(row.name, top, line);
        const int standard =
            ButtonGap + stackControl(row.contents, contents,
                                     row.contents->heightForLines(ContentsLines, ContentsHeight));
        const int advanced = ButtonGap + stackControl(row.standard, standard, button);
        bottom = stackControl(row.advanced, advanced, button);
    }
    return bottom;
}

void PedalRows::applyLayout(const MainWindowLayout &layout) const
{
    std::vector<QWidget *> names;
    std::vector<QWidget *> buttons;
    for (int i = 0; i < MaxPedals; ++i) {
        const auto row = static_cast<std::size_t>(i);
        const Controls &controls = at(i);
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
}

} // namespace kavelo
