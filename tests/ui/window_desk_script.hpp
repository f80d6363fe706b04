// The desk of the window with a script of answers in the place of dialogs, and a record of what was said.
// Jobs and their bars are the real ones.
#pragma once

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

class ScriptedWindowDesk : public WindowDesk {
 public:
  // Answers, first to last; a question without one throws std::logic_error, so that no test answers by
  // accident.
  std::deque<bool> answers;                           // of ask()
  std::deque<std::optional<std::size_t>> choices;     // of choose(); nothing stands for Esc or the close box
  std::deque<std::optional<std::string>> texts;       // of askText(); an empty entry stands for cancel
  std::deque<QString> files;                          // of the file dialogs; an empty one stands for cancel
  std::deque<std::function<bool(QDialog&)>> dialogs;  // of runDialog()
  bool opens = true;                                  // what openOutside() answers
  // Called on the window's thread at every look of a job at its course, for instance to press stop in the
  // middle.
  std::function<void()> on_look;
  std::function<void()> on_tell;  // in front of each message

  struct Said {
    std::string text;
    std::string title;
    Tone tone;
  };
  std::vector<Said> told;
  std::vector<std::string> asked;
  std::vector<std::string> proposed;  // with each question for a text
  std::vector<Said> tips;
  std::vector<QUrl> opened;
  std::vector<std::string> places;  // that the file dialogs proposed

  StoppableCourse& course() override { return watched_; }
  bool runDialog(QDialog& dialog) override { return take(dialogs, "a dialog")(dialog); }
  bool openOutside(const QUrl& address) override {
    opened.push_back(address);
    return opens;
  }

 protected:
  QString pickFile(const QString& title, const QString& /*filter*/, const QString& folder) override {
    places.push_back(folder.toStdString());
    return take(files, title.toStdString());
  }
  QString nameFile(const QString& title, const QString& /*filter*/, const QString& path) override {
    places.push_back(path.toStdString());
    return take(files, title.toStdString());
  }
  void showMessage(std::string_view text, Tone tone, std::string_view title) override {
    if (on_tell) on_tell();
    told.push_back({std::string(text), std::string(title), tone});
  }
  bool askUser(std::string_view text, std::string_view /*title*/) override {
    asked.emplace_back(text);
    return take(answers, asked.back());
  }
  std::size_t chooseUser(std::string_view text, std::span<const std::string_view> /*buttons*/,
                         std::size_t cancel, std::string_view /*title*/) override {
    asked.emplace_back(text);
    return take(choices, asked.back()).value_or(cancel);
  }
  std::optional<std::string> askUserText(std::string_view prompt, std::string_view /*title*/,
                                         std::string_view proposal) override {
    asked.emplace_back(prompt);
    proposed.emplace_back(proposal);
    return take(texts, asked.back());
  }
  void showTipDialog(std::string_view text, std::string_view title) override {
    tips.push_back({std::string(text), std::string(title), Tone::information});
  }

 private:
  // The course of the window, watched.
  class WatchedCourse final : public WindowCourse {
   public:
    explicit WatchedCourse(ScriptedWindowDesk& desk)
        : WindowCourse(
              desk.work(), [&desk](std::int64_t total, bool can_stop) { desk.beginJob(total, can_stop); },
              [&desk] { desk.endJob(); }),
          desk_(desk) {}
    bool advance(std::int64_t done) override {
      desk_.work().callWindow([this] {
        if (desk_.on_look) desk_.on_look();
      });
      return WindowCourse::advance(done);
    }

   private:
    ScriptedWindowDesk& desk_;
  };

  template <class T>
  static T take(std::deque<T>& script, const std::string& question) {
    if (script.empty()) throw std::logic_error("no scripted answer to: " + question);
    T answer = std::move(script.front());
    script.pop_front();
    return answer;
  }

  WatchedCourse watched_{*this};
};

}  // namespace lotmere::ui
