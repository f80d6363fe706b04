// Tells the event loop that the system wants the program to end.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include "base/platform.hpp"

namespace lotmere::ui {

// There may be one at a time, as of EndSignalPipe.
class EndWatch : public QObject {
  Q_OBJECT

 public:
  EndWatch() : notifier_(pipe_.descriptor(), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, [this] {
      pipe_.drain();
      Q_EMIT endAsked();
    });
  }

 Q_SIGNALS:
  // By Ctrl-C, SIGTERM or SIGHUP; out of the event loop, not inside the signal's handler.
  void endAsked();

 private:
  EndSignalPipe pipe_;
  QSocketNotifier notifier_;
};

}  // namespace lotmere::ui
