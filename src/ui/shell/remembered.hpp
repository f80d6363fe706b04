// What the window remembers from one start to the next: how it looks and what was used last. It stands in a
// file of the home folder, so that every home has its own.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSettings>
#include <QString>
#include <QTimer>
#include <QVariantMap>
#include <filesystem>
#include <optional>

#include "ui/look/theme.hpp"
#include "ui/shell/work_thread.hpp"

namespace lotmere::ui {

// Nothing that the user would miss: a file that is lost, damaged or can't be written costs the habits of the
// window and is never told. A value that makes no sense counts as none.
class Remembered {
 public:
  // Reads the file at once. What is set is written on the thread a moment later, and at the latest when this
  // ends.
  Remembered(const std::filesystem::path& folder, WorkThread& thread);
  Remembered(const Remembered&) = delete;
  Remembered& operator=(const Remembered&) = delete;
  ~Remembered();

  // The look that the user chose; nothing where the desktop decides. Read before anything else is there.
  [[nodiscard]] static std::optional<Appearance> look(const std::filesystem::path& folder);
  void setLook(Appearance look);

  // Size and place of the main window, as QWidget::saveGeometry() gives them; empty at first.
  [[nodiscard]] QByteArray place() const {
    return values_.value(QStringLiteral("window/place")).toByteArray();
  }
  void setPlace(const QByteArray& place) { set(QStringLiteral("window/place"), place); }

  // The widths of the columns of a grid; empty at first.
  [[nodiscard]] QList<int> columns(const QString& grid) const;
  void setColumns(const QString& grid, const QList<int>& widths);

  // A choice among a few, such as the span of the history; 0 at first, and where it isn't below `count`.
  [[nodiscard]] int choice(const QString& name, int count) const;
  void setChoice(const QString& name, int choice) { set(QStringLiteral("choice/") + name, choice); }

  // Where a file was last read or written; empty at first, and where that folder is gone.
  [[nodiscard]] QString folder() const;
  void setFolder(const QString& folder) { set(QStringLiteral("folder"), folder); }

  // Who logged in last; empty at first.
  [[nodiscard]] QString userName() const { return values_.value(QStringLiteral("user")).toString(); }
  void setUserName(const QString& name) { set(QStringLiteral("user"), name); }

 private:
  void set(const QString& key, const QVariant& value);
  void save();

  QString file_;
  WorkThread& thread_;
  QVariantMap values_;
  QTimer timer_;
};

}  // namespace lotmere::ui
