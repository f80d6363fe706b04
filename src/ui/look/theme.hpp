// How the window looks: the one place that knows colours, fonts and the shape of the standard controls.
#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPixmap>

class QApplication;

namespace lotmere::ui {

enum class Appearance { light, dark };

// Colours that mean something; everything else comes from the palette.
struct Colours {
  QColor red_ball;    // of the reds of a draw
  QColor blue_ball;   // of the blue
  QColor tuo;         // a number picked as 拖码
  QColor dan;         // a number picked as 胆码
  QColor plain;       // a number that isn't picked
  QColor low_chance;  // an unpicked number marked as unlikely
  QColor red_text;
  QColor blue_text;
  QColor identity;  // behind period and date of a draw
  QColor faint;     // of secondary texts
  QColor line;      // between areas
  QColor good;      // of a state that is as it should be
  QColor warning;   // of one that isn't
  // Of a set of tickets: what a condition leaves, and what it takes away.
  QColor kept;
  QColor removed;
  QColor chance;  // what chance gives, beside what was seen
  // The gaps of a number in the omission analysis.
  QColor running_gap;
  QColor long_gap;  // the average gap, and a running one that is longer
  QColor largest_gap;
};

// Sets style, palette, font and style sheet of the whole program; may be called again at any time.
void applyAppearance(QApplication& application, Appearance appearance);
[[nodiscard]] Appearance currentAppearance();
[[nodiscard]] const Colours& colours();

// A colour for each of up to 17 groups, from 0 on, that stand beside each other well.
[[nodiscard]] QColor groupColour(int group);

// What the desktop asks for at the start: dark where its windows are darker than their text.
[[nodiscard]] Appearance desktopAppearance(const QApplication& application);

// Two balls, drawn at every size that a desktop asks for.
[[nodiscard]] QIcon programIcon();

// The sign of a message: "i", "!" or "?" on a disc.
enum class Sign { information, warning, error, question };
[[nodiscard]] QPixmap signPicture(Sign sign, int size, double pixel_ratio);

}  // namespace lotmere::ui
