#pragma once

#include "app/mainfen.h"
#include "engine/pairing.h"
#include "rows/pane_row.h"
#include "tests/test_dir.h"
#include "tree/mytreewidget.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidgetItem>
#include <QUrl>

#include <memory>

/// A main window in a working directory of its own, so that no settings come from elsewhere.
class WindowFixture
{
  public:
    WindowFixture();
    ~WindowFixture();
    Q_DISABLE_COPY_MOVE(WindowFixture)

    /// Builds the window anew; the settings file of the working directory is read again.
    void rebuild();

    /// The action of the window with this (French) text.
    QAction* action(const QString& text) const;

    /// The radio button of the tool bar with this text.
    QRadioButton* radio(const QString& text) const;

    /// Waits until no pane works and every queued signal has arrived.
    static bool wait_idle(const MyTreeWidget& a, const MyTreeWidget& b);
    bool wait_idle() const { return wait_idle(*first, *second); }

    /// Triggers "Comparer Tout" and waits for its end; answers whether a comparison took place.
    bool compare_all();

    /// Lets a new comparison count although the message of the last one is still shown.
    void clear_message();

    TestDir working_dir;
    std::unique_ptr<MainFen> window;
    MyTreeWidget* first = nullptr;
    MyTreeWidget* second = nullptr;

  private:
    QString old_dir_;
};

/// The top-level row of that name, or the one below a path of names parted by "/"; null if absent.
QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name);

/// The names of the top-level rows, of those with a checksum and of all selected ones, parted by
/// ", ".
QString shown_in(const MyTreeWidget& pane);
QString hashed_in(const MyTreeWidget& pane);
QString selected_in(const MyTreeWidget& pane);

/// The checksum shown for a row; "?" when there is no such row.
QString checksum_at(const MyTreeWidget& pane, const QString& name);

/// The mark of a row, from the brushes of all its columns: "green", "red", "yellow", "white", ""
/// for none; "?" when there is no such row, "mixed" when the columns disagree.
QString mark_at(const MyTreeWidget& pane, const QString& name);

/// MD5 or SHA1 of bytes, lowercase hexadecimal, from an implementation that the program's own
/// digests are checked against.
QString reference_digest(const QByteArray& bytes,
                         QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5);

/// Selects top-level rows by name, in this order, and nothing else.
void select_names(MyTreeWidget& pane, const QStringList& names);

/// Expands a row by its name, see find_row(); its children are listed when this returns.
void expand(MyTreeWidget& pane, const QString& name);

/// Activates a row, see find_row(), as a double click does.
void activate(MyTreeWidget& pane, const QString& name);

/// Drags data onto a pane, and lets go of it there; each answers whether the pane takes it.
bool drag_in(MyTreeWidget& pane, const QMimeData& data);
bool let_go(MyTreeWidget& pane, const QMimeData& data);

/// Drops files onto a pane as a file manager does; answers whether the pane took them.
bool drop_files(MyTreeWidget& pane, const QStringList& paths);
bool drop_urls(MyTreeWidget& pane, const QList<QUrl>& urls);

/// The class's own methods of a kind, by their signatures in the order of the meta-object,
/// parted by blanks.
QString own_methods(const QMetaObject& meta, QMetaMethod::MethodType kind);
