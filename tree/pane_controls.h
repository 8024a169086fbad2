#pragma once

class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

/// The small controls around a pane. They have no parent until the window lays them out.
struct PaneControls
{
    /// Makes the controls; the drive selector has an entry for each volume.
    PaneControls();

    QComboBox* drive_combo;
    QLineEdit* path_edit;
    QLabel* status_label;
    QProgressBar* progress;
    QPushButton* stop_button;
    QPushButton* reset_button;
};
