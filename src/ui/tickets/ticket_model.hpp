// The tickets as a table: running number, period, seven numbers, hits.
#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "store/periods.hpp"
#include "tickets/ticket_list.hpp"

namespace lotmere::ui {

class TicketModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column {
    seq,
    period,
    first_red,
    blue = first_red + kRedsPerTicket,
    red_hits,
    blue_hits,
    column_count
  };

  using QAbstractTableModel::QAbstractTableModel;

  void showTickets(std::vector<TicketRow> tickets);
  // From now on tickets of the draw's period show the numbers that it drew as balls.
  void markDraw(const StoredDraw& draw);

  [[nodiscard]] const std::vector<TicketRow>& tickets() const { return tickets_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] QVariant ball(const TicketRow& ticket, int column) const;

  std::vector<TicketRow> tickets_;
  std::optional<StoredDraw> draw_;
};

}  // namespace lotmere::ui
