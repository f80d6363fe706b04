// One window for a home: a second start hands over to the window that is open and ends.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <filesystem>

namespace lotmere::ui {

class SingleWindow : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Asks the window over the home to come to the front. False where none answers.
  [[nodiscard]] static bool raiseOther(const std::filesystem::path& home);
  // Takes such calls from now on. To be called by the process that holds the lock of the home; where the
  // system refuses, a second start is only told.
  void listen(const std::filesystem::path& home);
  void close() { server_.close(); }

 Q_SIGNALS:
  void raiseWanted();

 private:
  QLocalServer server_;
};

}  // namespace lotmere::ui
