// The page "其它": the division of the intervals and texts for reading, one at a time.
#pragma once

#include <QStackedWidget>
#include <QWidget>

#include "ui/conditions/condition_clicks.hpp"
#include "ui/conditions/interval_page.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class OtherPage : public QWidget {
  Q_OBJECT

 public:
  // Registers the commands that show its contents.
  explicit OtherPage(Session& session, QWidget* parent = nullptr);

  // What is in front; empty as long as nothing was asked for.
  [[nodiscard]] const QString& title() const { return title_; }

 Q_SIGNALS:
  // One of its commands asks for this page to stand in front.
  void wanted();
  // The intervals were divided anew.
  void intervalsChanged();

 private:
  void showIntervals();
  void bringForward(QWidget* content, const QString& title);
  // Registers the command that shows a text.
  void addText(const char* action, const QString& caption, const char* name, QString (*text)());

  Session& session_;
  ConditionClicks clicks_;
  IntervalPage* intervals_ = nullptr;  // made when it is first asked for
  QStackedWidget* contents_;
  QString title_;
};

}  // namespace lotmere::ui
