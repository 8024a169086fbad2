#pragma once

#include "app/mainfen.h"
#include "rows/pane_row.h"
#include "tests/support/test_dir.h"
#include "tree/mytreewidget.h"

#include <QtTest>
#include <QtWidgets>

/// A main window over a tree of files, driven and described by lines of text.
///
/// A line is a command with words, parted by blanks, or several parted by " ; "; double quotes keep
/// blanks together. "L" and "R" name the panes, all other names are paths below the scene's
/// directory. A command waits for the end of what it starts, unless its name or the line ends in
/// "&". It answers what was to be seen: nothing for a plain act, but always the message boxes that
/// came up, which are closed by their first button, and the other dialogs, which are described and
/// closed, unless a line "with" said before what is to be done in the next one.
class Scene
{
  public:
    Scene();
    ~Scene();
    Q_DISABLE_COPY_MOVE(Scene)

    /// Carries out a line and answers what was seen.
    QString run(const QString& line);

    /// What must never be, at a moment when nothing works; empty when all is well.
    QString violation() const;

    /// Builds the window anew; the settings file of the working directory is read again.
    void rebuild();

    /// The window's or a pane's own action, or its button, with this (French) text.
    template<class T>
    T* named(const QObject& owner, const QString& text) const;

    /// Waits until no pane works or lists and every queued signal has arrived.
    bool wait_idle() const;
    bool is_busy() const;

    bool uses_dialogs = true; ///< else they are somebody else's business
    TestDir working_dir;
    std::unique_ptr<MainFen> window;
    MyTreeWidget* first = nullptr;
    MyTreeWidget* second = nullptr;

  private:
    using Verb = std::function<QString(Scene&, MyTreeWidget&, const QStringList&)>;
    static QHash<QString, Verb> verbs();

    QString rows_of(const QTreeWidgetItem& parent) const;
    QString flags_of(const QTreeWidgetItem& row) const;
    QString digest_name(const QString& hex, const QString& path) const;
    QString told(QString text) const;
    void put(const QString& what);
    QString menu_of(MyTreeWidget& pane);
    void press(QWidget& widget, const QString& key);
    bool drop(MyTreeWidget& pane, const QStringList& names);
    void look_at_dialogs();
    void use(QDialog& dialog);

    QString old_dir_ = QDir::currentPath();
    QStringList seen_;
    QStringList steps_; ///< what is to be done in the next dialog
    QDialog* used_ = nullptr;
    QObject watch_; ///< what is connected ends with the scene
};

template<class T>
T* Scene::named(const QObject& owner, const QString& text) const
{
    // A pane's actions are not the window's.
    const auto depth =
        std::is_same_v<T, QAction> ? Qt::FindDirectChildrenOnly : Qt::FindChildrenRecursively;
    for (T* child : owner.findChildren<T*>(QString(), depth)) {
        if (child->text() == text) { return child; }
    }
    qFatal("nothing is called %s", qUtf8Printable(text));
}

/// The top-level row of that name, or the one below a path of names parted by "/"; null if absent.
QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name);

/// MD5 or SHA1 of bytes, lowercase hexadecimal, from an implementation that the program's own
/// digests are checked against.
QString reference_digest(const QByteArray& bytes,
                         QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5);
