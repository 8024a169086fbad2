#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

/// The names in the sample directories, in the language of the pictures.
struct SampleNames
{
    QString original;      ///< directory of the first pane
    QString copy;          ///< directory of the second pane
    QStringList same;      ///< alike on both sides
    QString changed;       ///< other content in the copy
    QString only_original; ///< missing in the copy
    QString only_copy;     ///< missing in the original
    QString namesake;      ///< in two subdirectories, of different content
    QString unreadable;    ///< cannot be read in the original

    static SampleNames french();
    static SampleNames english();
};

/// Two directories that show everything a comparison can say: files that are alike, changed or
/// missing on either side, the same name in two subdirectories, and a file that cannot be read.
class SampleDirectories
{
  public:
    /// Writes the samples; they are removed with this object.
    explicit SampleDirectories(const SampleNames& names);
    ~SampleDirectories();

    SampleDirectories(const SampleDirectories&) = delete;
    SampleDirectories& operator=(const SampleDirectories&) = delete;

    const SampleNames& names() const { return names_; }
    QString original() const;
    QString copy() const;

    /// Changes one file of the original and deletes another, as a failing disk may.
    void damage_original() const;

  private:
    SampleNames names_;
    QString root_;
    std::unique_ptr<QTemporaryDir> random_root_; ///< only where the short name is taken
};
