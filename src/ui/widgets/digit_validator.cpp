#include "ui/widgets/digit_validator.hpp"

namespace lotmere::ui {

QValidator::State DigitValidator::validate(QString& text, int& place) const {
  QString digits;
  int before = 0;  // digits in front of the cursor
  for (int i = 0; i < text.size(); ++i) {
    if (text[i].isSpace()) continue;
    const bool plain = text[i] >= QLatin1Char('0') && text[i] <= QLatin1Char('9');
    const bool wide = text[i] >= QChar(0xFF10) && text[i] <= QChar(0xFF19);
    if (!plain && !wide) return Invalid;
    digits += QLatin1Char(static_cast<char>('0' + text[i].digitValue()));
    if (i < place) ++before;
  }
  if (digits != text) place = before;
  text = digits;
  return Acceptable;
}

}  // namespace lotmere::ui
