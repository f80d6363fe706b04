// How the whole set of conditions would have fared against the last draws, beside what chance gives.
#pragma once

#include <QAbstractTableModel>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "advice/backtest.hpp"
#include "ui/conditions/condition_clicks.hpp"
#include "ui/shell/answer_thread.hpp"
#include "ui/shell/session.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {

// A back-test with the draws that it judged.
struct JudgedDraws {
  BackTest test;
  std::vector<PastDraw> draws;  // as test.draws, from the oldest on
};

// The newest draw on top: period, balls, how many conditions it failed, and which.
class VerdictModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { period_column, first_ball, failed_column = first_ball + 7, names_column, column_count };

  using QAbstractTableModel::QAbstractTableModel;
  void show(std::shared_ptr<const JudgedDraws> judged);
  // The draw of a row.
  [[nodiscard]] const DrawVerdict& verdict(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::shared_ptr<const JudgedDraws> judged_;
};

// A stroke a draw, coloured by how many conditions it failed.
class VerdictStrip : public QWidget {
  Q_OBJECT

 public:
  explicit VerdictStrip(QWidget* parent = nullptr);
  void show(std::shared_ptr<const JudgedDraws> judged);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  [[nodiscard]] double strokeWidth() const;

  std::shared_ptr<const JudgedDraws> judged_;
};

class BackTestView : public QWidget {
  Q_OBJECT

 public:
  BackTestView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // The view comes to the front, or the settings or draws changed while it stands there.
  void open();
  // A command is about to use the store.
  void drop() { answers_.drop(); }

 Q_SIGNALS:
  // A draw was double-clicked, or chosen in its menu: the condition that it failed first, by the name of its
  // step, and its period.
  void drawWanted(const QString& step, int period);

 private:
  void showTest(std::shared_ptr<const JudgedDraws> judged);
  [[nodiscard]] QWidget* makeHead();
  // Opens the condition that the draw of a row failed first.
  void openDraw(const QModelIndex& row);

  Session& session_;
  ConditionClicks& clicks_;
  AnswerThread answers_;
  QComboBox* count_;
  QSpinBox* tolerance_;
  QLabel* sentence_;
  VerdictStrip* strip_;
  VerdictModel* model_;
  RowTable* table_;
  QLabel* figures_;
};

}  // namespace lotmere::ui
