#pragma once

#include <QWidget>

#include <functional>

#include "tools/asking/answer_client.h"
#include "tools/asking/ask_exchange.h"

/// A tool's page in the settings: how to ask, and whether the service answers.
class AskSettingsView : public QWidget {
  Q_OBJECT

 protected:
  struct Texts {
    QStringList howItWorks;
    /// The tool's name.
    QString tool;
    /// What the test does.
    QString remark;
  };
  using Ask = std::function<void(const AskQuestion&, const AskCall&)>;

  AskSettingsView(const Texts& texts, const Ask& ask, QWidget* parent);
};
