// Texts between the engine, which speaks UTF-8 with CR LF, and the widgets.
#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>
#include <string>
#include <string_view>

namespace lotmere::ui {

// Line ends become single line feeds.
[[nodiscard]] inline QString shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
      .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

[[nodiscard]] inline std::string utf8(const QString& text) { return text.toStdString(); }

// "12,345", as the window writes numbers of its own.
[[nodiscard]] inline QString grouped(std::int64_t number) {
  return QLocale(QLocale::English).toString(static_cast<qlonglong>(number));
}

}  // namespace lotmere::ui
