#pragma once

class MyTreeWidget;
class QAction;
class QContextMenuEvent;
class QObject;

/// The commands of a pane, in the order in which they are made.
struct PaneActions
{
    QAction* act_md5 = nullptr;
    QAction* act_md5_all = nullptr;
    QAction* act_md5_file = nullptr;
    QAction* act_md5_dir_file = nullptr;
    QAction* act_sha1 = nullptr;
    QAction* act_sha1_all = nullptr;
    QAction* act_sha1_file = nullptr;
    QAction* act_sha1_dir_file = nullptr;
    QAction* act_check = nullptr;
    QAction* act_exclude = nullptr;
    QAction* act_include = nullptr;
    QAction* act_explorer = nullptr;
    QAction* act_autoscroll = nullptr;

    /// Makes the actions as children of `parent`.
    void create_actions(QObject* parent);
};

/// Shows the menu that fits the pane's current row, and returns when it is closed.
void show_context_menu(MyTreeWidget& pane, const QContextMenuEvent& event);
