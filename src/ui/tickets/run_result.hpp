// What a run has come to: the numbers of tickets step by step, and what the tickets that are left promise.
#pragma once

#include <QLabel>
#include <QTableWidget>
#include <QWidget>
#include <vector>

#include "advice/guarantee.hpp"
#include "pipeline/funnel_rows.hpp"

namespace lotmere::ui {

// A row a step: its name, a bar of what stood in front of it with what it took away, what is left, what is
// gone.
class StepRows : public QWidget {
  Q_OBJECT

 public:
  explicit StepRows(QWidget* parent = nullptr);
  // Steps that removed nothing are left out.
  void showFunnel(std::int64_t start, const std::vector<FunnelRow>& funnel);
  [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int rowHeight() const;

  std::vector<FunnelRow> rows_;
};

class RunResultView : public QWidget {
  Q_OBJECT

 public:
  explicit RunResultView(QWidget* parent = nullptr);

  // Of a run that came to its end or was stopped, or of a refusal for too many tickets (`stored` false).
  void showFunnel(const std::vector<FunnelRow>& funnel, double seconds, bool stored);
  // What the tickets promise, where it is known.
  void showGuarantee(const Guarantee& guarantee, const std::string& promise);
  // Tickets came from elsewhere.
  void clear();

 private:
  QLabel* head_;
  StepRows* rows_;
  QLabel* promise_;
  QTableWidget* prizes_;
  QLabel* cost_;
};

}  // namespace lotmere::ui
