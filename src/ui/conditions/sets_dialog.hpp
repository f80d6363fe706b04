// The sets with names: what each changes, and what can be done with it.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QTableWidget>
#include <vector>

#include "conditions/named_sets.hpp"
#include "ui/shell/session.hpp"

namespace lotmere::ui {

class SetsDialog : public QDialog {
  Q_OBJECT

 public:
  SetsDialog(Session& session, QWidget* parent);

 private:
  // Reads the sets; the one of this name is chosen, or the first.
  void readSets(const std::string& name = {});
  // What the chosen set holds otherwise than the settings, or than the set it is compared with.
  void compare();
  void load(WithPicks with_picks);
  void remove();
  void writeFile();
  // Does it with the chosen set, guarded; nothing where there is none.
  void withChosen(const std::function<void(const NamedSet&)>& work);

  Session& session_;
  std::vector<NamedSet> all_;
  QListWidget* names_;
  QComboBox* other_;
  QTableWidget* lines_;
  QLabel* summary_;
};

}  // namespace lotmere::ui
