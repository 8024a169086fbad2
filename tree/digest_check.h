#pragma once

#include <QSet>
#include <QString>

class FenCheck;
class HashJobController;
class MyTreeWidget;
class QTreeWidgetItem;

/// Checks one file against a digest that the user enters: drives a FenCheck and a job over the file
/// that its title line names, whatever becomes of the row meanwhile. GUI thread only.
class DigestCheck final
{
  public:
    DigestCheck(MyTreeWidget& pane, HashJobController& jobs) : pane_(pane), jobs_(jobs) {}

    /// Opens the dialog on the current row's file, and returns when it is closed. Nothing when the
    /// current row is no file.
    void run();

    /// Hashes the file by the algorithm that the entered digest is of.
    void hash();

    /// Hands the result to the dialog.
    void show_result();

    /// These rows die now.
    void forget(const QSet<QTreeWidgetItem*>& dying);
    void forget_all() { row_ = nullptr; }

  private:
    MyTreeWidget& pane_;
    HashJobController& jobs_;
    FenCheck* dialog_ = nullptr; ///< only while run() is on the stack
    QString path_;
    QTreeWidgetItem* row_ = nullptr; ///< that of the file, while it lives
    QString result_;                 ///< what a row of the file would show
};
