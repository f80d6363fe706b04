// Lets digits through into a box, and nothing else.
#pragma once

#include <QValidator>

namespace lotmere::ui {

// Full-width digits become plain ones and blanks go, in whatever is typed or pasted; any other character is
// refused. How many digits stand there is for the reader of the box to judge: a text that was cut would mean
// something else.
class DigitValidator : public QValidator {
  Q_OBJECT

 public:
  using QValidator::QValidator;
  State validate(QString& text, int& place) const override;
};

}  // namespace lotmere::ui
