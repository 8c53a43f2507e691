#pragma once

#include <QApplication>
#include <QTemporaryFile>
#include <QTest>

/// Runs a test class on two offscreen displays side by side: 1600 × 900 at the origin, and 1280 × 1024 right of it and
/// lower, at the same scale.
template <class Test>
int runOnTwoScreens(int argc, char** argv) {
  QTemporaryFile config;
  if (!config.open()) return 1;
  config.write(R"({"screens": [
    {"name": "left", "x": 0, "y": 0, "width": 1600, "height": 900, "logicalDpi": 96, "dpr": 1},
    {"name": "right", "x": 1600, "y": 100, "width": 1280, "height": 1024, "logicalDpi": 96, "dpr": 1}]})");
  config.close();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
  QApplication app(argc, argv);
  Test test;
  return QTest::qExec(&test, argc, argv);
}
