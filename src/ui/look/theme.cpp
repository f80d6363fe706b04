#include "ui/look/theme.hpp"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <utility>

#include "ui/look/balls.hpp"
#include "ui/look/flat_style.hpp"

namespace lotmere::ui {
namespace {

struct Look {
  Colours colours;
  QColor window, base, alternate, button, text, disabled, highlight, highlight_text, tip;
};

const Look kLight{{QColor(0xD8392F), QColor(0x2F6FD0), QColor(0x1E9E57), QColor(0xD23B34), QColor(0xFFFFFF),
                   QColor(0xE3E0DA), QColor(0xC22A20), QColor(0x2460BF), QColor(0xFFFFE1), QColor(0x6B7280),
                   QColor(0xDADDE3), QColor(0x1E7F49), QColor(0xB45309), QColor(0x9DBBEF), QColor(0xF0A8A0),
                   QColor(0xC9CED8), QColor(128, 128, 255), QColor(0xF03A30), QColor(0xBCC2CE)},
                  QColor(0xF4F5F7),
                  QColor(0xFFFFFF),
                  QColor(0xF8F9FB),
                  QColor(0xFFFFFF),
                  QColor(0x1F2430),
                  QColor(0x9AA1AD),
                  QColor(0x2F6FD0),
                  QColor(0xFFFFFF),
                  QColor(0xFFFFFF)};

const Look kDark{{QColor(0xE4574D), QColor(0x4C8BEA), QColor(0x2FAF68), QColor(0xE0544C), QColor(0x363B45),
                  QColor(0x2A2D34), QColor(0xFF8A80), QColor(0x86B4FF), QColor(0x3A3A2C), QColor(0x9AA3B2),
                  QColor(0x3A3F4A), QColor(0x5CCB8D), QColor(0xF0A94B), QColor(0x47689F), QColor(0xA8534B),
                  QColor(0x59616F), QColor(128, 128, 255), QColor(0xF5554B), QColor(0x646C7C)},
                 QColor(0x1F2228),
                 QColor(0x262A31),
                 QColor(0x2B2F37),
                 QColor(0x2F343D),
                 QColor(0xE6E9EF),
                 QColor(0x737B89),
                 QColor(0x3D7BE0),
                 QColor(0xFFFFFF),
                 QColor(0x2F343D)};

Appearance g_appearance = Appearance::light;

const Look& look() { return g_appearance == Appearance::light ? kLight : kDark; }

QPalette paletteOf(const Look& look) {
  QPalette palette;
  palette.setColor(QPalette::Window, look.window);
  palette.setColor(QPalette::Base, look.base);
  palette.setColor(QPalette::AlternateBase, look.alternate);
  palette.setColor(QPalette::Button, look.button);
  palette.setColor(QPalette::ToolTipBase, look.tip);
  palette.setColor(QPalette::Highlight, look.highlight);
  palette.setColor(QPalette::HighlightedText, look.highlight_text);
  palette.setColor(QPalette::Link, look.colours.blue_text);
  palette.setColor(QPalette::Mid, look.colours.line);
  palette.setColor(QPalette::PlaceholderText, look.disabled);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, look.text);
    palette.setColor(QPalette::Disabled, role, look.disabled);
  }
  return palette;
}

// So much of one colour over another.
QColor mixed(const QColor& over, const QColor& under, double part) {
  const auto channel = [part](int a, int b) { return static_cast<int>(a * part + b * (1 - part)); };
  return {channel(over.red(), under.red()), channel(over.green(), under.green()),
          channel(over.blue(), under.blue())};
}

// Flat controls with room around their texts; every colour is the palette's or the line colour.
QString styleSheet(const Look& look) {
  return QStringLiteral(R"(
QToolTip { border: 1px solid @line; padding: 4px; }
QPushButton { background: palette(button); border: 1px solid @line; border-radius: 5px; padding: 5px 12px; }
QPushButton:hover { border-color: palette(highlight); }
QPushButton:focus { border-color: palette(highlight); }
QPushButton:pressed, QPushButton:checked { background: palette(highlight); color: palette(highlighted-text); }
QPushButton:default { border-color: palette(highlight); }
QPushButton:disabled { color: @disabled; background: palette(window); }
QLineEdit { background: palette(base); border: 1px solid @line;
  border-radius: 4px; padding: 3px 6px; selection-background-color: palette(highlight); }
QLineEdit:focus { border-color: palette(highlight); }
QLineEdit:disabled { color: @disabled; background: palette(window); }
QComboBox QLineEdit, QDateEdit QLineEdit { border: none; background: transparent; padding: 0; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QPlainTextEdit, QTextEdit, QTableView, QListView, QTreeView { background: palette(base);
  border: 1px solid @line; border-radius: 5px; }
QTableView { gridline-color: @line; }
QTreeView { show-decoration-selected: 1; }
QTreeView::item { padding: 2px 0; }
QTreeView::item:selected, QTreeView::branch:selected { background: @chosen; color: palette(text); }
QHeaderView { background: palette(window); border: none; }
QHeaderView::section { background: palette(window); border: none; border-right: 1px solid @line;
  border-bottom: 1px solid @line; padding: 4px 6px; }
QTableCornerButton::section { background: palette(window); border: none; }
QTabBar { qproperty-drawBase: 0; }
QTabBar::tab { padding: 7px 16px; border: none; border-bottom: 2px solid transparent; color: @faint; }
QTabBar::tab:selected { color: palette(window-text); border-bottom-color: palette(highlight); }
QTabBar::tab:hover { color: palette(window-text); }
QTabBar::tab:disabled { color: @disabled; }
QTabWidget::pane { border: none; border-top: 1px solid @line; }
QMenuBar { background: palette(window); padding: 2px 6px; }
QMenuBar::item { padding: 4px 10px; border-radius: 4px; }
QMenuBar::item:selected { background: palette(highlight); color: palette(highlighted-text); }
QMenu { background: palette(base); border: 1px solid @line; padding: 4px; }
QMenu::item { padding: 5px 24px; border-radius: 4px; }
QMenu::item:selected { background: palette(highlight); color: palette(highlighted-text); }
QMenu::item:disabled { color: @disabled; }
QMenu::separator { height: 1px; background: @line; margin: 4px 8px; }
QStatusBar { border-top: 1px solid @line; }
QStatusBar::item { border: none; }
QProgressBar { background: palette(base); border: 1px solid @line; border-radius: 5px; text-align: center;
min-height: 14px; }
QProgressBar::chunk { background: palette(highlight); border-radius: 4px; }
QScrollBar { background: transparent; margin: 0; }
QScrollBar:vertical { width: 12px; }
QScrollBar:horizontal { height: 12px; }
QScrollBar::handle { background: @handle; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 30px; }
QScrollBar::handle:horizontal { min-width: 30px; }
QScrollBar::handle:hover { background: @faint; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QGroupBox { border: 1px solid @line; border-radius: 6px; margin-top: 10px; padding-top: 6px; }
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; color: @faint; }
)")
      .replace(QStringLiteral("@line"), look.colours.line.name())
      .replace(QStringLiteral("@chosen"), mixed(look.highlight, look.base, 0.18).name())
      .replace(QStringLiteral("@handle"), look.disabled.name())
      .replace(QStringLiteral("@disabled"), look.disabled.name())
      .replace(QStringLiteral("@faint"), look.colours.faint.name());
}

// The Chinese forms of the characters come first: a font that covers them for another language would show its
// own.
QFont programFont(const QApplication& application) {
  QFont font = application.font();
  font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Sans SC"),
                    QStringLiteral("Source Han Sans SC"), QStringLiteral("WenQuanYi Micro Hei"),
                    font.family()});
  font.setPointSizeF(10);
  return font;
}

}  // namespace

void applyAppearance(QApplication& application, Appearance appearance) {
  g_appearance = appearance;
  static bool styled = false;
  if (!std::exchange(styled, true)) {
    auto* style = new FlatStyle;
    style->setParent(&application);
    QApplication::setStyle(style);
  }
  QApplication::setPalette(paletteOf(look()));
  QApplication::setFont(programFont(application));
  application.setStyleSheet(styleSheet(look()));
}

Appearance currentAppearance() { return g_appearance; }

const Colours& colours() { return look().colours; }

QColor groupColour(int group) {
  constexpr QRgb shades[] = {0xFFD9534F, 0xFF3F78C8, 0xFF3F9E5A, 0xFFE08A2E, 0xFF8A5FB5, 0xFF3AA6A0,
                             0xFFC4607F, 0xFF7A8B2A, 0xFF9A6B4B, 0xFF5B6BD6, 0xFFC7A51F, 0xFF5C7C8A,
                             0xFFB04FA6, 0xFF2E8B7A, 0xFFE0727A, 0xFF6F9BD9, 0xFF77797F};
  return QColor(shades[static_cast<std::size_t>(group) % std::size(shades)]);
}

Appearance desktopAppearance(const QApplication& application) {
  const QPalette palette = application.palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness()
             ? Appearance::dark
             : Appearance::light;
}

QIcon programIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const double ball = size * 0.66;
    paintBall(painter, {size - ball, 0, ball, ball}, {}, BallFace::blue);
    paintBall(painter, {0, size - ball, ball, ball}, {}, BallFace::red);
    icon.addPixmap(picture);
  }
  return icon;
}

QPixmap signPicture(Sign sign, int size, double pixel_ratio) {
  struct Shape {
    QColor colour;
    const char* text;
  };
  const Shape shapes[] = {
      {look().highlight, "i"}, {colours().warning, "!"}, {colours().red_ball, "!"}, {look().highlight, "?"}};
  const Shape& shape = shapes[static_cast<std::size_t>(sign)];
  QPixmap picture(QSize(size, size) * pixel_ratio);
  picture.setDevicePixelRatio(pixel_ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(shape.colour);
  painter.drawEllipse(QRectF(1, 1, size - 2, size - 2));
  QFont font = QApplication::font();
  font.setBold(true);
  font.setPixelSize(size * 6 / 10);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QRectF(0, 0, size, size), Qt::AlignCenter, QString::fromUtf8(shape.text));
  return picture;
}

}  // namespace lotmere::ui
