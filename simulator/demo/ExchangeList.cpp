#include "ExchangeList.h"

#include "ExchangeText.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QScrollBar>

namespace kavelo {
namespace {

enum Column { Time, CommandName, Request, Reply };

} // namespace

ExchangeList::ExchangeList(QWidget *parent)
    : QTreeWidget(parent)
    , m_tenRows(0, 0)
{
    setHeaderLabels({QStringLiteral("Time"), QStringLiteral("Command"), QStringLiteral("Request"),
                     QStringLiteral("Reply")});
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0); // only visible rows count
    append({.request = {GET_OUTPUT_MODE_AND_DATA}, .outcome = Exchange::Outcome::Answered});
    m_tenRows.setHeight(10 * sizeHintForRow(0));
    for (int column = Time; column <= Reply; ++column) {
        m_tenRows.rwidth() += sizeHintForColumn(column);
    }
    clear();
}

QSize ExchangeList::sizeHint() const
{
    return m_tenRows +
           QSize(verticalScrollBar()->sizeHint().width(), header()->sizeHint().height()) +
           2 * QSize(frameWidth(), frameWidth());
}

void ExchangeList::record(const Exchange &exchange)
{
    if (exchange.number > m_lastNumber) {
        append(exchange);
    } else if (QTreeWidgetItem *row = rowOf(exchange)) {
        row->setText(Reply, replyText(exchange));
    }
}

void ExchangeList::append(const Exchange &exchange)
{
    if (topLevelItemCount() == MaxRows) {
        delete topLevelItem(0);
    }
    auto *row = new QTreeWidgetItem(this, {timeText(exchange), commandText(exchange),
                                           hexText(exchange.request), replyText(exchange)});
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    row->setFont(Request, fixed);
    row->setFont(Reply, fixed);
    m_lastNumber = exchange.number;
    scrollToItem(row);
}

QTreeWidgetItem *ExchangeList::rowOf(const Exchange &exchange) const
{
    const int rowsBehind = m_lastNumber - exchange.number;
    return topLevelItem(topLevelItemCount() - 1 - rowsBehind);
}

} // namespace kavelo
