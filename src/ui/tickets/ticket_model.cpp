#include "ui/tickets/ticket_model.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

const char* const kCaptions[] = {"序号",  "期号",  "红球1", "红球2",  "红球3", "红球4",
                                 "红球5", "红球6", "蓝球",  "红球中", "蓝球中"};
static_assert(std::size(kCaptions) == TicketModel::column_count);

bool isNumber(int column) { return column >= TicketModel::first_red && column <= TicketModel::blue; }

int numberIn(const TicketRow& ticket, int column) {
  return column == TicketModel::blue ? ticket.numbers.blue
                                     : ticket.numbers.reds[column - TicketModel::first_red];
}

QVariant textOf(const TicketRow& ticket, int column) {
  switch (column) {
    case TicketModel::seq:
      return ticket.seq;
    case TicketModel::period:
      return ticket.period;
    case TicketModel::red_hits:
      return ticket.red_hits;
    case TicketModel::blue_hits:
      return ticket.blue_hits;
    default:
      return shown(formatBall(numberIn(ticket, column)));
  }
}

}  // namespace

void TicketModel::showTickets(std::vector<TicketRow> tickets) {
  beginResetModel();
  tickets_ = std::move(tickets);
  endResetModel();
}

void TicketModel::markDraw(const StoredDraw& draw) {
  draw_ = draw;
  if (!tickets_.empty()) Q_EMIT dataChanged(index(0, first_red), index(rowCount() - 1, blue), {kBallRole});
}

int TicketModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tickets_.size());
}

int TicketModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : column_count; }

QVariant TicketModel::ball(const TicketRow& ticket, int column) const {
  if (!draw_ || draw_->period != ticket.period) return {};
  const int number = numberIn(ticket, column);
  if (column == blue)
    return number == draw_->numbers.blue ? QVariant(static_cast<int>(BallFace::blue)) : QVariant();
  return std::ranges::count(draw_->numbers.reds, number) > 0 ? QVariant(static_cast<int>(BallFace::red))
                                                             : QVariant();
}

QVariant TicketModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const TicketRow& ticket = tickets_[static_cast<std::size_t>(index.row())];
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return textOf(ticket, column);
    case Qt::TextAlignmentRole:
      return int{Qt::AlignCenter};
    case Qt::ForegroundRole:
      if (!isNumber(column)) return {};
      return column == blue ? colours().blue_text : colours().red_text;
    case kBallRole:
      return isNumber(column) ? ball(ticket, column) : QVariant();
    default:
      return {};
  }
}

QVariant TicketModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return QString::fromUtf8(kCaptions[section]);
}

}  // namespace lotmere::ui
