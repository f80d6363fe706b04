#include "ui/program.hpp"

#include <utility>

#include "core/store_files.hpp"
#include "core/transfer.hpp"

namespace lotmere::ui {

Program::Program(Home home, WindowDesk& desk, Clock& clock, FileSystem& files, HashLimits password_limits)
    : desk_(desk),
      clock_(clock),
      files_(files),
      password_limits_(password_limits),
      start_(std::move(home), desk, files),
      commands_(desk) {}

Program::~Program() { desk_.set_Window(nullptr); }

std::vector<StartStep> Program::start_Order() {
  return {
      start_.single_Instance(),
      {"splash",
       [this] {
         splash_ = std::make_unique<Splash>();
         splash_->show_Now();
         return true;
       }},
      start_.database_Presence(),
      start_.compaction(),
      start_.size_Guard(),
      start_.home_Files(),
      start_.main_Connection(),
      {"main window",
       [this] {
         session_.emplace(Session{start_.store(), start_.home(), desk_, clock_, commands_, password_limits_});
         window_ = std::make_unique<MainWindow>(*session_);
         return true;
       },
       StartAdvice::security},
      {"show",
       [this] {
         splash_->hide();
         window_->show();
         splash_.reset();
         return true;
       }},
      {"user mode", [this] { return window_->choose_Mode(); }},
      {"login", [this] { return window_->log_In(); }},
      {"interval counts",
       [this] {
         commands_.runner().run([this] { window_->recount_Intervals(); });
         return true;
       }},
      {"history", [this] {
         window_->check_History();
         return true;
       }}};
}

bool Program::start() {
  const StartOutcome outcome = run_Steps(start_Order());
  splash_.reset();
  for (const std::string& message : outcome.messages) desk_.tell(message, Tone::error);
  started_ = outcome.ready;
  // Only the event loop that comes now can be ended by a window that closes.
  if (started_ && desk_.is_Ending()) Q_EMIT window_->quiet_EndWanted();
  return outcome.ready;
}

void Program::end() {
  desk_.begin_End();
  if (started_) window_->end_Quietly();
}

void Program::finish() {
  if (!session_ || session_->store.db().getTotalChanges() == 0) return;
  if (restore_Waits(start_.home())) return;  // the store is about to be replaced
  run_Guarded(desk_, [this] {
    if (!copy_Database(start_.home().main_Db(), start_.home().backup_Db(), files_))
      desk_.tell("备份没有更新：数据文件已损坏。", Tone::warning);
  });
}

}  // namespace lotmere::ui
