#pragma once

class MyTreeWidget;

/// Names the controls of a pane for a screen reader, by texts of the window that say what they are
/// and by the pane's number, which tells it from its neighbour.
void name_controls(MyTreeWidget& pane, int number);

/// Lets Tab go through a pane as it is laid out: selector, path line, buttons, list. From a path
/// that was just typed one Tab reaches the list, whose rows the person is after.
void order_tabs(MyTreeWidget& pane);

/// Makes the current row show that the pane has the focus; the program's style draws no focus
/// rectangle.
void show_current_row(MyTreeWidget& pane);
