// A window of the Help menu (a HelpWindow in its interface file, promoted from QDialog). It blocks
// nothing, closes by Escape and is deleted then. Besides the properties of NibLoader it reads:
//   "shows"         on a text browser: the file in the resources that it shows
//   "fact"          on a label with "%1" in its text: what stands there, "version" or "libraries"
//   "foundNothing"  on a label: shown when the document does not have what stands in the field
//   "closes"        on a button
//   "ems", "lines"   on the window: its size, so that it grows with the font
#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QTextBrowser;

namespace platform {

class Diagnostics;

class HelpWindow : public QDialog {
 public:
  explicit HelpWindow(QWidget* parent);

  // Once the file's properties are set. Without `diagnostics` the labels that need them are hidden.
  void setUp(const QString& resources, const Diagnostics* diagnostics);

 private:
  void showFact(QLabel& label, const Diagnostics* diagnostics);
  void search(QLineEdit& field, QTextBrowser& document, bool anew);
};

}  // namespace platform
