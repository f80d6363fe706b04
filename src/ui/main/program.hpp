// The program with its window, from the start of the process to its end.
#pragma once

#include <memory>
#include <optional>

#include "base/platform.hpp"
#include "start/startup.hpp"
#include "ui/main/main_window.hpp"
#include "ui/main/single_window.hpp"
#include "ui/main/splash.hpp"
#include "ui/shell/session.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

class Program {
 public:
  // Nothing happens before start(). `desk`, `clock` and `files` outlive the program.
  Program(Home home, WindowDesk& desk, Clock& clock = realClock(), FileSystem& files = realFiles(),
          HashLimits password_limits = HashLimits::interactive());
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Files that the ready window is to open, by whole paths, or the one that is open already.
  void openBehindStart(const QStringList& files) { files_wanted_ = files; }

  // The whole start order up to the ready window. False: the program ends; a failure has been told, and
  // nothing was changed that a later start would miss.
  [[nodiscard]] bool start();
  // Only after a start that came to its end.
  [[nodiscard]] MainWindow& window() { return *window_; }
  [[nodiscard]] Store& store() { return start_.store(); }
  [[nodiscard]] Commands& commands() { return commands_; }

  // The system wants the program to end: whatever runs stops, settings are saved and the window closes, all
  // without a question. During the start, which goes on as far as it can without an answer, the window closes
  // behind it.
  void end();

  // What a user would miss if the store's file were lost before the next start goes to the backup. Behind
  // the last event of the program; a failure is told.
  void finish();

 private:
  [[nodiscard]] std::vector<StartStep> startOrder();
  [[nodiscard]] StartStep onThread(StartStep step);

  WindowDesk& desk_;
  Clock& clock_;
  FileSystem& files_;
  HashLimits password_limits_;
  ProgramStart start_;
  Commands commands_;
  std::optional<Session> session_;
  SingleWindow single_window_;
  std::unique_ptr<Splash> splash_;
  std::unique_ptr<MainWindow> window_;
  QStringList files_wanted_;
  bool started_ = false;
};

}  // namespace lotmere::ui
