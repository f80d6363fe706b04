// The ticket page: the tickets of the table, the running text, and the seven steps of the work on them.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QWidget>

#include "files/export.hpp"
#include "files/import.hpp"
#include "ui/shell/answer_thread.hpp"
#include "ui/shell/job_bar.hpp"
#include "ui/shell/session.hpp"
#include "ui/tickets/run_result.hpp"
#include "ui/tickets/ticket_model.hpp"
#include "ui/widgets/row_table.hpp"

namespace lotmere::ui {

class TicketPage : public QWidget {
  Q_OBJECT

 public:
  // Registers its commands.
  explicit TicketPage(Session& session, QWidget* parent = nullptr);

  // Shows the tickets as they are stored.
  void refreshTickets();
  // Adds the tickets of a file, as a dialog says that proposes a format. To be called inside a command.
  void importFrom(const QString& file, ImportFormat proposed);

 Q_SIGNALS:
  // A menu command asks for this page to stand in front.
  void wanted();
  // There is nothing to expand yet: the user needs the number pad.
  void numbersWanted();

 private:
  void addCommands();
  QWidget* makeStrip();
  QWidget* makeGrid();
  QWidget* makeResult();
  // Over the grid: period, number of tickets, what they cost, the set that filtered them.
  void showHead();
  void showSteps();

  void init();
  void run();
  void exportFile();
  void importFile();
  void clear();
  void check();
  void generate();
  void undo();
  void redo();
  // What the tickets that a run left promise, worked out beside the window.
  void countGuarantee(PeriodNo period);

  // Asks for a period; nothing when the user cancels and, told, when what was typed is none.
  [[nodiscard]] std::optional<PeriodNo> askPeriod(std::string_view prompt, PeriodNo proposed);
  // The period of the grid's current row, or the next one.
  [[nodiscard]] PeriodNo currentPeriod() const;
  // Puts the numbers of the chosen tickets on the clipboard, a line a ticket.
  void copyNumbers();
  void showLog(const QString& text);

  Session& session_;
  TicketModel* model_;
  RowTable* grid_ = nullptr;
  QPlainTextEdit* log_ = nullptr;  // runningText
  JobBar* bar_ = nullptr;
  QLabel* head_ = nullptr;
  QTabWidget* results_ = nullptr;  // the result of a run, and the running text
  RunResultView* result_ = nullptr;
  QPushButton* undo_ = nullptr;
  AnswerThread answers_;
  ExportSwitches export_;  // what the dialog shows next time
};

}  // namespace lotmere::ui
