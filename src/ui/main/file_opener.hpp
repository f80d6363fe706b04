// Opens a file that a person drops on the window, names in its menu or starts the program with: says what it
// holds, asks, and leads to the import for that.
#pragma once

#include <QObject>
#include <QStringList>
#include <QWidget>
#include <functional>

#include "files/file_content.hpp"
#include "ui/shell/session.hpp"

class QDropEvent;

namespace lotmere::ui {

// Where the contents of a file go, by its path.
struct FileWays {
  std::function<void(const QString&)> draws;
  std::function<void(const QString&, ImportFormat)> tickets;
  std::function<void(const QString&)> conditions;
  std::function<void(const QString&)> everything;  // asks by itself
};

class FileOpener : public QObject {
  Q_OBJECT

 public:
  // Registers file.open and takes the drops on a window and whatever stands in it, in the place of fields
  // that would take a path for a text.
  FileOpener(Session& session, QWidget& window, FileWays ways);

  // Reads the file, asks what to do with it, and does that; without an answer nothing changes. Told instead,
  // in a line, are several files, a file that can't be read, and one that holds nothing of these. While
  // another command runs nothing happens but a passing message.
  void open(const QStringList& files);

 Q_SIGNALS:
  void dropped(const QStringList& files);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void takeDrop(QDropEvent& drop);
  void openFile(const QString& file);

  Session& session_;
  QWidget& window_;
  FileWays ways_;
};

}  // namespace lotmere::ui
