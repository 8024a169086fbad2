#pragma once

class MyTreeWidget;
class QDropEvent;

/// Takes what is dropped onto a pane: a single directory is opened and its files hashed; of
/// anything else the files become a list of their own, which is compared with the files of the
/// same names in the other pane. Refused while one of the panes concerned is hashing.
void take_drop(MyTreeWidget& pane, QDropEvent& event);
