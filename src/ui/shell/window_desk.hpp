// The desk of the window: messages, questions and the course of jobs behind widgets. Whatever the program
// asks the desktop or a user goes through here, so that a test can answer ahead of time.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include "base/desk.hpp"
#include "ui/shell/progress_view.hpp"
#include "ui/shell/window_course.hpp"
#include "ui/shell/work_thread.hpp"

class QDialog;

namespace lotmere::ui {

class WindowDesk : public QObject, public Desk {
  Q_OBJECT

 public:
  explicit WindowDesk(QObject* parent = nullptr);

  // The window that dialogs stand over; may be none.
  void setWindow(QWidget* window) { window_ = window; }
  [[nodiscard]] QWidget* window() const { return window_.data(); }

  // What the work says and asks, on either thread: it is shown on the window's, and the work waits for an
  // answer or for the end of a message.
  void tell(std::string_view text, Tone tone = Tone::information, std::string_view title = {}) final;
  bool ask(std::string_view text, std::string_view title = {}) final;
  std::size_t choose(std::string_view text, std::span<const std::string_view> buttons, std::size_t cancel,
                     std::string_view title = {}) final;
  std::optional<std::string> askText(std::string_view prompt, std::string_view title,
                                     std::string_view proposed) final;
  void showTip(std::string_view text, std::string_view title) final;
  void showStatus(std::string_view text) final;
  StoppableCourse& course() override { return course_; }

  // The thread on which the engine works.
  [[nodiscard]] WorkThread& work() { return work_; }

  // A file that the user picks to be read; empty when they cancel. The dialog starts in the last folder.
  QString chooseFile(const QString& title, const QString& filter);
  // A file that the user names to be written; empty when they cancel. `proposed` is a path, or a name in the
  // last folder. Whoever writes asks about one that stands.
  QString chooseNewFile(const QString& title, const QString& filter, const QString& proposed);
  // The folder of the file that was chosen last, or else the user's documents.
  [[nodiscard]] QString folder() const;
  void setFolder(const QString& folder) { folder_ = folder; }
  // Shows a dialog until the user closes it; true when they accepted it.
  virtual bool runDialog(QDialog& dialog);
  // Hands a file or an address to the desktop's program for it; false where there is none.
  virtual bool openOutside(const QUrl& address);

  // The system wants the program to end, and nobody is asked any more: open dialogs close, every question
  // from now on is answered with its cancel, every job is asked to stop, and messages go to standard error.
  void beginEnd();
  [[nodiscard]] bool isEnding() const { return ending_; }

  [[nodiscard]] bool jobRunning() const { return running_; }
  // Where the jobs begun from now on are shown, nowhere with none. Gives the place so far.
  ProgressView* setProgressView(ProgressView* view);
  // Puts a change of the running text on the screen at once.
  void showRunningText();

 Q_SIGNALS:
  void jobBegun(bool can_stop);
  void jobEnded();
  void statusChanged(const QString& text);
  void runningTextChanged(const QString& text);
  void folderChanged(const QString& folder);

 protected:
  // The file dialogs; empty when the user cancels.
  virtual QString pickFile(const QString& title, const QString& filter, const QString& folder);
  virtual QString nameFile(const QString& title, const QString& filter, const QString& proposed);
  // The dialogs behind what the work says and asks, on the window's thread.
  virtual void showMessage(std::string_view text, Tone tone, std::string_view title);
  virtual bool askUser(std::string_view text, std::string_view title);
  virtual std::size_t chooseUser(std::string_view text, std::span<const std::string_view> buttons,
                                 std::size_t cancel, std::string_view title);
  virtual std::optional<std::string> askUserText(std::string_view prompt, std::string_view title,
                                                 std::string_view proposed);
  virtual void showTipDialog(std::string_view text, std::string_view title);

  void beginJob(std::int64_t total, bool can_stop);
  void endJob();

 private:
  void showProgress();
  QString rememberFolder(const QString& file);

  QString folder_;
  QPointer<QWidget> window_;
  ProgressView* view_ = nullptr;
  ProgressView* job_view_ = nullptr;  // of the job that runs
  bool running_ = false;
  bool ending_ = false;
  std::string shown_text_;
  QTimer progress_timer_;
  WindowCourse course_;
  WorkThread work_;  // goes first, behind the last call
};

// Shows the jobs of a command in one place, on every route out of it.
class ProgressPlace {
 public:
  ProgressPlace(WindowDesk& desk, ProgressView& view) : desk_(desk), before_(desk.setProgressView(&view)) {}
  ProgressPlace(const ProgressPlace&) = delete;
  ProgressPlace& operator=(const ProgressPlace&) = delete;
  ~ProgressPlace() { desk_.setProgressView(before_); }

 private:
  WindowDesk& desk_;
  ProgressView* before_;
};

}  // namespace lotmere::ui
