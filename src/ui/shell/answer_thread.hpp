// A thread beside the window that answers one question at a time, always the newest.
#pragma once

#include <QObject>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "base/course.hpp"
#include "ui/shell/store_door.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

// A question works on values of its own: never on the store, nor on what the window may change. A newer
// question, or drop(), stops the one under way, whose answer is never given.
class AnswerThread : public QObject {
  Q_OBJECT

 public:
  // Shows what a question found. Runs on the window's thread; empty where the course was stopped.
  using Answer = std::function<void()>;
  // Runs on the thread beside it, until the course asks it to stop.
  using Question = std::function<Answer(Course&)>;

  // Makes a question on the work thread of what it reads from the store; empty where the course was stopped.
  using Reading = std::function<Question(Store&, Course&)>;

  // A question, or a reading, that fails is told through the desk.
  explicit AnswerThread(WindowDesk& desk, QObject* parent = nullptr);
  AnswerThread(const AnswerThread&) = delete;
  AnswerThread& operator=(const AnswerThread&) = delete;
  // Drops what is under way and waits for its end.
  ~AnswerThread() override;

  void ask(Question question);
  // The same for a question that needs the store first. A newer one drops the reading as well.
  void ask(const StoreDoor& store, Reading reading);
  void drop();
  // Whether an answer is to come.
  [[nodiscard]] bool isBusy() const { return busy_; }

 Q_SIGNALS:
  // From the thread to the window: an answer is there.
  void found();

 private:
  [[nodiscard]] std::uint64_t begin();
  void enqueue(std::uint64_t number, Question question);
  void run();
  void keep(std::uint64_t number, Answer answer);
  void give();

  WindowDesk& desk_;
  bool busy_ = false;
  std::mutex mutex_;
  std::condition_variable asked_;
  Question next_;
  std::uint64_t next_number_ = 0;
  Answer answer_;               // the last one found,
  std::uint64_t answered_ = 0;  // and its question
  bool over_ = false;
  // The question whose answer is wanted; a reading may look at it for longer than this object stands.
  std::shared_ptr<std::atomic<std::uint64_t>> newest_ = std::make_shared<std::atomic<std::uint64_t>>(0);
  std::thread thread_;  // from the first question on
};

}  // namespace lotmere::ui
