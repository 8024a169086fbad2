#pragma once

#include "app/mainfen.h"
#include "rows/pane_row.h"
#include "tests/support/test_dir.h"
#include "tree/mytreewidget.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

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

    /// The action of the window with this (French) text, and the radio button of the tool bar.
    QAction* action(const QString& text) const;
    QRadioButton* radio(const QString& text) const;

    /// Whether a pane works or lists.
    bool is_busy() const;

    /// Waits until no pane works or lists and every queued signal has arrived.
    bool wait_idle() const;

    TestDir working_dir;
    std::unique_ptr<MainFen> window;
    MyTreeWidget* first = nullptr;
    MyTreeWidget* second = nullptr;

  private:
    QString old_dir_;
};

/// The top-level row of that name, or the one below a path of names parted by "/"; null if absent.
QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name);

/// MD5 or SHA1 of bytes, lowercase hexadecimal, from an implementation that the program's own
/// digests are checked against.
QString reference_digest(const QByteArray& bytes,
                         QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5);

/// Drops files onto a pane as a file manager does; answers whether the pane took them.
bool drop_files(MyTreeWidget& pane, const QStringList& paths);
