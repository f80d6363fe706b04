// The ticket page: the tickets of the table, the running text, and the seven steps of the work on them.
#pragma once

#include <QPlainTextEdit>
#include <QTableView>
#include <QWidget>

#include "files/export.hpp"
#include "ui/job_bar.hpp"
#include "ui/session.hpp"
#include "ui/ticket_model.hpp"

namespace lotmere::ui {

class TicketPage : public QWidget {
  Q_OBJECT

 public:
  // Registers its commands.
  explicit TicketPage(Session& session, QWidget* parent = nullptr);

  // Shows the tickets as they are stored.
  void refresh_Tickets();

 Q_SIGNALS:
  // A menu command asks for this page to stand in front.
  void wanted();
  // There is nothing to expand yet: the person needs the number pad.
  void numbers_Wanted();

 private:
  void add_Commands();
  QWidget* make_Strip();
  QWidget* make_Grid();
  QWidget* make_Log();

  void init();
  void run();
  void export_File();
  void import_File();
  void clear();
  void check();

  // Asks for a period; nothing when the user cancels and, told, when what was typed is none.
  [[nodiscard]] std::optional<PeriodNo> ask_Period(std::string_view prompt, PeriodNo proposed);
  // The period of the grid's current row, or the next one.
  [[nodiscard]] PeriodNo current_Period() const;
  void show_Log(const QString& text);

  Session& session_;
  TicketModel* model_;
  QTableView* grid_ = nullptr;
  QPlainTextEdit* log_ = nullptr;  // TextChaoZuoTip
  JobBar* bar_ = nullptr;
  ExportSwitches export_;  // what the dialog shows next time
};

}  // namespace lotmere::ui
