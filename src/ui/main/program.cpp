#include "ui/main/program.hpp"

#include <utility>

#include "start/transfer.hpp"
#include "store/store_files.hpp"

namespace lotmere::ui {

Program::Program(Home home, WindowDesk& desk, Clock& clock, FileSystem& files, HashLimits password_limits)
    : desk_(desk),
      clock_(clock),
      files_(files),
      password_limits_(password_limits),
      start_(std::move(home), desk, files),
      commands_(desk) {}

Program::~Program() { desk_.setWindow(nullptr); }

// The picture of the start stays painted meanwhile.
StartStep Program::onThread(StartStep step) {
  step.run = [this, run = std::move(step.run)] { return desk_.work().run(run); };
  return step;
}

std::vector<StartStep> Program::startOrder() {
  StartStep single = start_.singleInstance();
  single.run = [this, take = std::move(single.run)] {
    // The lock decides; only who doesn't get it is told, where no window comes to the front.
    if (SingleWindow::raiseOther(start_.home().folder, files_wanted_)) return false;
    if (!take()) return false;
    single_window_.listen(start_.home().folder);
    return true;
  };
  return {std::move(single),
          {"splash",
           [this] {
             splash_ = std::make_unique<Splash>();
             splash_->showNow();
             return true;
           }},
          onThread(start_.databasePresence()),
          onThread(start_.compaction()),
          onThread(start_.sizeGuard()),
          onThread(start_.homeFiles()),
          onThread(start_.mainConnection()),
          {"main window",
           [this] {
             session_.emplace(start_.store(), start_.home(), desk_, clock_, commands_, password_limits_);
             window_ = std::make_unique<MainWindow>(*session_);
             QObject::connect(&single_window_, &SingleWindow::raiseWanted, window_.get(),
                              &MainWindow::comeToFront);
             QObject::connect(&single_window_, &SingleWindow::filesWanted, window_.get(),
                              &MainWindow::openFiles);
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
          {"user mode", [this] { return window_->chooseMode(); }},
          {"login", [this] { return window_->logIn(); }},
          {"interval counts",
           [this] {
             commands_.runner().run([this] { window_->recountIntervals(); });
             return true;
           }},
          {"files",
           [this] {
             if (!files_wanted_.isEmpty()) window_->openFiles(files_wanted_);
             return true;
           }},
          {"history", [this] {
             window_->checkHistory();
             return true;
           }}};
}

bool Program::start() {
  const StartOutcome outcome = runSteps(startOrder());
  splash_.reset();
  for (const std::string& message : outcome.messages) desk_.tell(message, Tone::error);
  started_ = outcome.ready;
  // Only the event loop that comes now can be ended by a window that closes.
  if (started_ && desk_.isEnding()) Q_EMIT window_->quietEndWanted();
  return outcome.ready;
}

void Program::end() {
  desk_.beginEnd();
  if (started_) window_->endQuietly();
}

void Program::finish() {
  single_window_.close();                                // who starts now is told that the program still runs
  if (!session_ || restoreWaits(start_.home())) return;  // the store is about to be replaced
  runGuarded(desk_, [this] {
    const bool copied = session_->store.run([this](Store& store) {
      return store.db().getTotalChanges() == 0 ||
             copyDatabase(start_.home().mainDb(), start_.home().backupDb(), files_);
    });
    if (!copied) desk_.tell("备份没有更新：数据文件已损坏。", Tone::warning);
  });
}

}  // namespace lotmere::ui
