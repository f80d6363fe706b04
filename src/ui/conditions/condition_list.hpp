// All conditions in one list: what is on, what it lets through, and what is left behind it.
#pragma once

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QWidget>
#include <vector>

#include "advice/live_count.hpp"
#include "panels/condition_groups.hpp"
#include "ui/conditions/condition_facts.hpp"

namespace lotmere::ui {

// Groups with their rows, between the row of the sheet and that of the summary.
class ConditionListModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Column { name_column, value_column, share_column, left_column, column_count };
  // What a proxy asks for: whether a row is on (bool), what a search looks through (text).
  enum Role { on_role = Qt::UserRole, search_role };

  ConditionListModel(Session& session, ConditionFacts& facts, QObject* parent = nullptr);

  // The settings, the facts or the funnel changed.
  void showFunnel(std::vector<FunnelStep> funnel);
  void refresh();

  // The row of a condition, or nullptr for a group and the two single rows.
  [[nodiscard]] const ConditionRow* rowAt(const QModelIndex& index) const;
  // The tab of the single rows, 0 for any other.
  [[nodiscard]] static int tabAt(const QModelIndex& index);
  // The first row of a tab, or the row of a switch where that isn't 0.
  [[nodiscard]] QModelIndex indexOf(int tab, UsageId usage) const;

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
  // A user ticked a box or unticked it.
  void boxClicked(const ConditionRow& row, bool on);

 private:
  [[nodiscard]] QString cellText(const ConditionRow& row, int column) const;
  [[nodiscard]] QString groupText(const ConditionGroup& group) const;

  Session& session_;
  ConditionFacts& facts_;
  std::vector<FunnelStep> funnel_;
};

class ConditionList : public QWidget {
  Q_OBJECT

 public:
  ConditionList(Session& session, ConditionFacts& facts, QWidget* parent = nullptr);

  void showFunnel(std::vector<FunnelStep> funnel) { model_->showFunnel(std::move(funnel)); }
  void refresh();
  // Marks the row that is in front; nothing is asked for.
  void mark(int tab, UsageId usage);

 Q_SIGNALS:
  // A user chose a row: the page of a tab (0 where it has none), and the condition on it (0 for none).
  void wanted(int tab, int usage);
  void boxClicked(const ConditionRow& row, bool on);

 private:
  void chosen(const QModelIndex& index);
  void filter();

  ConditionListModel* model_;
  QSortFilterProxyModel* shown_;
  QLineEdit* search_;
  QCheckBox* only_on_;
  QTreeView* tree_;
};

}  // namespace lotmere::ui
