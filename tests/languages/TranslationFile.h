// The translations into one language as a translator sees them: the messages of a file of Qt
// Linguist, with what is unfinished in it.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

struct Message {
  QString context;
  QString source;
  QString comment;  // for the translator
  QString state;    // empty for a translation that counts
  bool hasPluralForms = false;
  QStringList forms;  // one where there are no plural forms
};

// Fails the test when there is no such file, or it is malformed.
std::vector<Message> readTranslations(const QString& path);

// For messages of a failed test.
std::string describe(const Message& message);
