// The tests of the window run without a screen.
#include <gtest/gtest.h>

#include <QApplication>

#include "ui/main/application.hpp"

int main(int count, char** arguments) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(count, arguments);
  lotmere::ui::setUpApplication(application);
  testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
