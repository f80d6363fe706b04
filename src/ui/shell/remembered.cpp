#include "ui/shell/remembered.hpp"

#include <QDir>
#include <QFileInfo>

#include "start/home.hpp"

namespace lotmere::ui {
namespace {

constexpr int kSaveBehind = 500;  // milliseconds
constexpr int kWidestColumn = 4000;
const QString kLook = QStringLiteral("window/look");

QString fileIn(const std::filesystem::path& folder) {
  return QString::fromStdString(Home{folder}.windowFile().string());
}

void write(const QString& file, const QVariantMap& values) {
  QSettings settings(file, QSettings::IniFormat);
  for (auto [key, value] : values.asKeyValueRange()) settings.setValue(key, value);
  settings.sync();
}

}  // namespace

Remembered::Remembered(const std::filesystem::path& folder, WorkThread& thread)
    : file_(fileIn(folder)), thread_(thread) {
  const QSettings settings(file_, QSettings::IniFormat);
  for (const QString& key : settings.allKeys()) values_.insert(key, settings.value(key));
  timer_.setSingleShot(true);
  timer_.setInterval(kSaveBehind);
  timer_.callOnTimeout([this] { save(); });
}

Remembered::~Remembered() {
  if (!timer_.isActive()) return;
  // Behind the last piece of work, which may still run.
  thread_.post([file = file_, values = values_] { write(file, values); }, [](const std::exception_ptr&) {});
}

void Remembered::set(const QString& key, const QVariant& value) {
  if (values_.value(key) == value) return;
  values_.insert(key, value);
  timer_.start();
}

void Remembered::save() {
  thread_.post([file = file_, values = values_] { write(file, values); }, [](const std::exception_ptr&) {});
}

std::optional<Appearance> Remembered::look(const std::filesystem::path& folder) {
  const QString look = QSettings(fileIn(folder), QSettings::IniFormat).value(kLook).toString();
  if (look == QStringLiteral("dark")) return Appearance::dark;
  if (look == QStringLiteral("light")) return Appearance::light;
  return std::nullopt;
}

void Remembered::setLook(Appearance look) {
  set(kLook, look == Appearance::dark ? QStringLiteral("dark") : QStringLiteral("light"));
}

QList<int> Remembered::columns(const QString& grid) const {
  QList<int> widths;
  for (const QVariant& width : values_.value(QStringLiteral("columns/") + grid).toList()) {
    const int pixels = width.toInt();
    if (pixels < 0 || pixels > kWidestColumn) return {};
    widths.append(pixels);
  }
  return widths;
}

void Remembered::setColumns(const QString& grid, const QList<int>& widths) {
  set(QStringLiteral("columns/") + grid, QVariantList(widths.begin(), widths.end()));
}

int Remembered::choice(const QString& name, int count) const {
  const int choice = values_.value(QStringLiteral("choice/") + name).toInt();
  return choice > 0 && choice < count ? choice : 0;
}

QString Remembered::folder() const {
  const QString folder = values_.value(QStringLiteral("folder")).toString();
  return !folder.isEmpty() && QFileInfo(folder).isDir() ? folder : QString();
}

}  // namespace lotmere::ui
