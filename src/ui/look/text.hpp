// Texts between the engine, which speaks UTF-8 with CR LF, and the widgets.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace lotmere::ui {

// Line ends become single line feeds.
[[nodiscard]] inline QString shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
      .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

[[nodiscard]] inline std::string utf8(const QString& text) { return text.toStdString(); }

}  // namespace lotmere::ui
