// The condition page: the number pad, and beside it what is set.
#pragma once

#include <QPlainTextEdit>
#include <QTabWidget>
#include <QWidget>

#include "ui/number_pad.hpp"
#include "ui/session.hpp"

namespace lotmere::ui {

class ConditionsPage : public QWidget {
  Q_OBJECT

 public:
  // Registers its commands.
  explicit ConditionsPage(Session& session, QWidget* parent = nullptr);

  // The page comes to the front: the marks for the coming draw are made, the selection is shown as it is
  // stored.
  void open();
  // Stands the person before the number pad.
  void show_Pad() { tabs_->setCurrentIndex(0); }

 Q_SIGNALS:
  // A menu command asks for this page to stand in front.
  void wanted();
  void defaults_Restored();

 private:
  void add_Commands();
  void show_Summary();
  void restore_Defaults();

  Session& session_;
  NumberPad* pad_;
  QTabWidget* tabs_;         // TabStrip_TiaoJian
  QPlainTextEdit* count_;    // Text_ChoseNumberTip
  QPlainTextEdit* summary_;  // Text_TiaoJianList
};

}  // namespace lotmere::ui
