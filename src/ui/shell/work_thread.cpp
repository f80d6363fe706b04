#include "ui/shell/work_thread.hpp"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <chrono>
#include <stdexcept>

namespace lotmere::ui {
namespace {

// Most work is a read or a small write and over by then, so that nothing happens in the window meanwhile.
constexpr std::chrono::milliseconds kBlink{10};

}  // namespace

WorkThread::WorkThread() {
  connect(this, &WorkThread::attentionWanted, this, &WorkThread::serveAll, Qt::QueuedConnection);
}

WorkThread::~WorkThread() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  given_.notify_one();
  if (thread_.joinable()) thread_.join();
}

bool WorkThread::onWindow() const { return QThread::currentThread() == thread(); }

void WorkThread::give(Piece piece) {
  {
    const std::lock_guard lock(mutex_);
    pieces_.push_back(std::move(piece));
  }
  given_.notify_one();
  if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
}

void WorkThread::post(std::function<void()> work, Then then) { give({std::move(work), std::move(then), {}}); }

void WorkThread::perform(const std::function<void()>& work) {
  if (serving_ > 0) throw std::logic_error("work is given while the thread waits for an answer");
  const auto end = std::make_shared<End>();
  give({work, {}, end});
  const auto until = std::chrono::steady_clock::now() + kBlink;
  std::unique_lock lock(mutex_);
  while (!end->done && attention_.wait_until(lock, until, [&] { return end->done || !calls_.empty(); }))
    serve(lock);
  while (!end->done) {
    lock.unlock();
    const auto input = input_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents;
    QEventLoop().processEvents(input | QEventLoop::WaitForMoreEvents);
    lock.lock();
    serve(lock);
  }
  serve(lock);
  lock.unlock();
  if (end->failure) std::rethrow_exception(end->failure);
}

void WorkThread::callWindow(const std::function<void()>& call) {
  if (onWindow()) return call();
  const auto end = std::make_shared<End>();
  std::unique_lock lock(mutex_);
  calls_.push_back({call, end});
  wakeWindow();
  answered_.wait(lock, [&] { return end->done; });
  lock.unlock();
  if (end->failure) std::rethrow_exception(end->failure);
}

void WorkThread::tellWindow(std::function<void()> call) {
  if (onWindow()) return call();
  const std::lock_guard lock(mutex_);
  calls_.push_back({std::move(call), {}});
  wakeWindow();
}

void WorkThread::wakeWindow() {
  attention_.notify_one();
  Q_EMIT attentionWanted();
}

void WorkThread::serveAll() {
  std::unique_lock lock(mutex_);
  serve(lock);
}

void WorkThread::serve(std::unique_lock<std::mutex>& lock) {
  while (!calls_.empty()) {
    const Call call = std::move(calls_.front());
    calls_.pop_front();
    const bool waits = call.end != nullptr;
    serving_ += waits;
    lock.unlock();
    try {
      call.call();
    } catch (...) {
      if (waits) call.end->failure = std::current_exception();
    }
    lock.lock();
    serving_ -= waits;
    if (!waits) continue;
    call.end->done = true;
    answered_.notify_one();
  }
}

void WorkThread::loop() {
  std::unique_lock lock(mutex_);
  while (true) {
    given_.wait(lock, [this] { return over_ || !pieces_.empty(); });
    if (pieces_.empty()) return;
    const Piece piece = std::move(pieces_.front());
    pieces_.pop_front();
    lock.unlock();
    std::exception_ptr failure;
    try {
      piece.work();
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    if (piece.end != nullptr) {
      piece.end->failure = failure;
      piece.end->done = true;
    } else if (piece.then) {
      calls_.push_back({[then = piece.then, failure] { then(failure); }, {}});
    }
    wakeWindow();
  }
}

}  // namespace lotmere::ui
