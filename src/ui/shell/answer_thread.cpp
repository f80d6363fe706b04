#include "ui/shell/answer_thread.hpp"

#include <QPointer>
#include <exception>
#include <utility>

#include "ui/shell/commands.hpp"

namespace lotmere::ui {
namespace {

// Stopped as soon as another question is the newest.
class AskedCourse final : public Course {
 public:
  AskedCourse(std::shared_ptr<const std::atomic<std::uint64_t>> newest, std::uint64_t number)
      : newest_(std::move(newest)), number_(number) {}

  void begin(std::int64_t /*total*/, Stop /*stop*/) override {}
  bool advance(std::int64_t /*done*/) override { return stopRequested(); }
  void end() override {}
  [[nodiscard]] bool stopRequested() const override { return newest_->load() != number_; }

 private:
  std::shared_ptr<const std::atomic<std::uint64_t>> newest_;
  std::uint64_t number_;
};

}  // namespace

AnswerThread::AnswerThread(WindowDesk& desk, QObject* parent) : QObject(parent), desk_(desk) {
  connect(this, &AnswerThread::found, this, &AnswerThread::give, Qt::QueuedConnection);
}

AnswerThread::~AnswerThread() {
  drop();
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  asked_.notify_one();
  if (thread_.joinable()) thread_.join();
}

std::uint64_t AnswerThread::begin() {
  const std::lock_guard lock(mutex_);
  next_ = {};
  busy_ = true;
  return ++*newest_;
}

void AnswerThread::enqueue(std::uint64_t number, Question question) {
  {
    const std::lock_guard lock(mutex_);
    next_ = std::move(question);
    next_number_ = number;
  }
  if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  asked_.notify_one();
}

void AnswerThread::ask(Question question) { enqueue(begin(), std::move(question)); }

void AnswerThread::ask(const StoreDoor& store, Reading reading) {
  const std::uint64_t number = begin();
  const auto made = std::make_shared<Question>();
  store.post(
      [reading = std::move(reading), newest = newest_, number, made](Store& opened) {
        AskedCourse course(newest, number);
        if (!course.stopRequested()) *made = reading(opened, course);
      },
      [here = QPointer(this), newest = newest_, number, made](const std::exception_ptr& failure) {
        if (here == nullptr || *newest != number) return;
        if (*made) return here->enqueue(number, std::move(*made));
        here->busy_ = false;
        if (failure) runGuarded(here->desk_, [&] { std::rethrow_exception(failure); });
      });
}

void AnswerThread::drop() {
  const std::lock_guard lock(mutex_);
  ++*newest_;
  next_ = {};
  busy_ = false;
}

void AnswerThread::run() {
  while (true) {
    Question question;
    std::uint64_t number = 0;
    {
      std::unique_lock lock(mutex_);
      asked_.wait(lock, [this] { return over_ || next_; });
      if (over_) return;
      question = std::exchange(next_, {});
      number = next_number_;
    }
    try {
      AskedCourse course(newest_, number);
      keep(number, question(course));
    } catch (...) {
      keep(number, [failure = std::current_exception()] { std::rethrow_exception(failure); });
    }
  }
}

void AnswerThread::keep(std::uint64_t number, Answer answer) {
  {
    const std::lock_guard lock(mutex_);
    answer_ = std::move(answer);
    answered_ = number;
  }
  Q_EMIT found();
}

void AnswerThread::give() {
  Answer answer;
  {
    const std::lock_guard lock(mutex_);
    if (answered_ != *newest_ || !busy_) return;
    answer = std::exchange(answer_, {});
  }
  busy_ = false;
  if (answer) runGuarded(desk_, answer);
}

}  // namespace lotmere::ui
