#pragma once

#include <QString>
#include <QTemporaryDir>

/// Two directories that show everything a comparison can say: files that are alike, changed or
/// missing on either side, the same name in two subdirectories, and a file that cannot be read.
class SampleDirectories
{
  public:
    /// Writes the samples; they are removed with this object.
    SampleDirectories();

    QString original() const { return root_.filePath(QStringLiteral("Photos")); }
    QString copy() const { return root_.filePath(QStringLiteral("Sauvegarde")); }

  private:
    QTemporaryDir root_;
};
