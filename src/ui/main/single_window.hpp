// One window for a home: a second start hands over to the window that is open and ends.
#pragma once

#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QStringList>
#include <filesystem>

namespace lotmere::ui {

class SingleWindow : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Asks the window over the home to come to the front and to open these files, which are named by whole
  // paths. False where none answers.
  [[nodiscard]] static bool raiseOther(const std::filesystem::path& home, const QStringList& files);
  // Takes such calls from now on. To be called by the process that holds the lock of the home; where the
  // system refuses, a second start is only told.
  void listen(const std::filesystem::path& home);
  void close() { server_.close(); }

 Q_SIGNALS:
  void raiseWanted();
  void filesWanted(const QStringList& files);

 private:
  // Reads what a second start has to say, which it ends by going away.
  void answer(QLocalSocket& call);

  QLocalServer server_;
};

}  // namespace lotmere::ui
