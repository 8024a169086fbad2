#pragma once

#include "tests/support/window_fixture.h"

#include <QHash>
#include <QTimer>

#include <functional>

class FenCheck;

/// A main window over a tree of files, driven and described by lines of text.
///
/// A line is a command with arguments, parted by blanks; double quotes keep blanks together. "L"
/// and "R" name the panes, all other names are paths below the scene's directory. A command waits
/// for the end of what it starts, unless its name or the line ends in "&". It answers what was to
/// be seen: nothing for a plain act, but always the message boxes that came up, which are closed by
/// their only button, and what the verify dialog said.
class Scene : public WindowFixture
{
  public:
    Scene();

    /// Carries out a line and answers what was seen.
    QString run(const QString& line);

    /// What must never be, at a moment when nothing works; empty when all is well.
    QString violation() const;

  private:
    using Arguments = QStringList;
    using Verb = std::function<QString(Scene&, const Arguments&)>;
    static const QHash<QString, Verb>& verbs();

    MyTreeWidget& pane(const Arguments& arguments) const;
    QString rows_of(const QTreeWidgetItem& parent) const;
    QString flags_of(const QTreeWidgetItem& row) const;
    QString digest_name(const QString& hex, const QString& path) const;
    QString told(QString text) const;
    void put(const QString& what);
    QString menu_of(MyTreeWidget& pane);
    void press(MyTreeWidget& pane, const QString& key);
    void look_at_boxes();
    void use(FenCheck& dialog);

    QStringList boxes_;
    QString entry_; ///< for the verify dialog
    QTimer poll_;
};
