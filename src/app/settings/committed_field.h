#pragma once

#include <QLineEdit>

#include <functional>

class RowRemark;

/// A text field that is taken over when editing ends: with Return, or when the focus goes on. What cannot be taken over
/// stays in the field, with the reason in the row's remark; Escape puts back what is saved.
class CommittedField : public QLineEdit {
  Q_OBJECT

 public:
  struct Binding {
    std::function<QString()> saved;
    /// What is wrong with a text; empty: nothing.
    std::function<QString(const QString&)> fault;
    std::function<void(const QString&)> take;
  };

  explicit CommittedField(Binding binding, const QString& placeholder);

  /// Where it says what is wrong; must live as long.
  void setRemark(RowRemark* remark) { remark_ = remark; }
  /// Shows what is saved, unless the user is just writing.
  void follow();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void commit();
  void showFault(const QString& text);

  Binding binding_;
  RowRemark* remark_ = nullptr;
};
