// The thread beside the window on which the engine works: commands, saves, whatever touches the store.
#pragma once

#include <QObject>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace lotmere::ui {

// Work is done one piece behind the other. The window's thread gives it and never waits for a disk: while it
// waits for a piece it repaints, and what the piece shows or asks is done there.
class WorkThread : public QObject {
  Q_OBJECT

 public:
  WorkThread();
  WorkThread(const WorkThread&) = delete;
  WorkThread& operator=(const WorkThread&) = delete;
  // Behind the last piece that was given.
  ~WorkThread() override;

  // On the window's thread: does the work behind what was given before, and comes back when it is done, with
  // what it returned or threw. Clicks and keys wait meanwhile, unless setInput() says otherwise. Throws
  // std::logic_error while the thread waits for an answer of the window, which would wait for ever.
  template <class Work>
  std::invoke_result_t<Work&> run(Work&& work) {
    if constexpr (std::is_void_v<std::invoke_result_t<Work&>>) {
      perform([&] { work(); });
    } else {
      std::optional<std::invoke_result_t<Work&>> result;
      perform([&] { result.emplace(work()); });
      return *std::move(result);
    }
  }

  // Behind a piece of work, on the window's thread: with nothing, or with what the work threw.
  using Then = std::function<void(std::exception_ptr failure)>;
  // On the window's thread: gives work and comes back at once.
  void post(std::function<void()> work, Then then);

  // Does a call on the window's thread and comes back behind it, with what it threw; on that thread itself at
  // once.
  void callWindow(const std::function<void()>& call);
  // The same without waiting; calls keep their order. Such a call doesn't throw.
  void tellWindow(std::function<void()> call);

  // Whether the window takes clicks and keys while run() waits.
  void setInput(bool taken) { input_ = taken; }

 Q_SIGNALS:
  // To the window's thread: a call waits, or a piece is done.
  void attentionWanted();

 private:
  // How something ended that is waited for.
  struct End {
    bool done = false;
    std::exception_ptr failure;
  };
  struct Piece {
    std::function<void()> work;
    Then then;                 // of one that nobody waits for,
    std::shared_ptr<End> end;  // and of the others
  };
  struct Call {
    std::function<void()> call;
    std::shared_ptr<End> end;  // of one that is waited for
  };

  [[nodiscard]] bool onWindow() const;
  void perform(const std::function<void()>& work);
  void give(Piece piece);
  void loop();
  void serveAll();
  // Does the calls that wait. The lock is let go of meanwhile.
  void serve(std::unique_lock<std::mutex>& lock);
  // Makes the window look for calls.
  void wakeWindow();

  std::mutex mutex_;
  std::condition_variable given_;      // work, for the thread
  std::condition_variable attention_;  // a piece is done, or a call waits
  std::condition_variable answered_;   // a call is done
  std::deque<Piece> pieces_;
  std::deque<Call> calls_;
  int serving_ = 0;  // calls under way that the thread waits for
  bool over_ = false;
  bool input_ = false;
  std::thread thread_;  // from the first piece on
};

}  // namespace lotmere::ui
