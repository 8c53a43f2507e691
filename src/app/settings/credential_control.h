#pragma once

#include <QWidget>

#include "services/user_credential.h"

class QLabel;
class QLineEdit;
class QPushButton;
class RowRemark;

/// One credential in the keychain: a field to enter it, and once it is kept, only that it is, with a way to replace or
/// remove it. Looks into the keychain when it is first shown.
class CredentialControl : public QWidget {
  Q_OBJECT

 public:
  /// `name` ("Your credential") is for screen readers.
  CredentialControl(UserCredential& credential, const QString& name);

  /// Where it says what stands in the way; must live as long.
  void setRemark(RowRemark* remark) { remark_ = remark; }

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void look();
  void save();
  void remove();
  void showKept(bool isKept);
  void showField(bool isReplacing);
  bool tookEffect(const std::expected<void, CredentialError>& result);

  UserCredential& credential_;
  QLabel* kept_;
  QPushButton* replace_;
  QPushButton* remove_;
  QLineEdit* field_;
  QPushButton* save_;
  RowRemark* remark_ = nullptr;
  bool isReplacing_ = false;
  Job job_;
};
